"""What bench/run and bench/window-run share: their arguments, their collections, their lines."""
import argparse
import os
import shutil
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def arguments(description, *flags):
    """The command line, with the two folders absolute; `flags` are further ones, left out of the help."""
    ap = argparse.ArgumentParser(description=description, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("--build", default=os.path.join(ROOT, "build", "release"))
    ap.add_argument("--libraries", default=os.path.join(ROOT, "build", "bench"))
    ap.add_argument("--runs", type=int, default=5)
    ap.add_argument("--tiny", action="store_true")
    for flag in flags:
        ap.add_argument(flag, action="store_true", help=argparse.SUPPRESS)
    args = ap.parse_args()
    args.build, args.libraries = os.path.abspath(args.build), os.path.abspath(args.libraries)
    os.makedirs(args.libraries, exist_ok=True)
    return args


TAG_KINDS = ("2.3", "2.3-utf16", "2.4-utf16", "2.4-utf8")


def library(libraries, count, tags=TAG_KINDS[0]):
    """The folder of a collection of `count` songs with tags of that kind, made where it is missing."""
    folder = os.path.join(libraries, str(count) if tags == TAG_KINDS[0] else "%d-%s" % (count, tags))
    if not os.path.isdir(folder):
        making = folder + ".making"
        shutil.rmtree(making, ignore_errors=True)
        subprocess.run([sys.executable, os.path.join(ROOT, "tools", "makelib.py"), making, str(count),
                        "--seed", "1", "--audio-kb", "16", "--tags", tags], check=True, stdout=subprocess.DEVNULL)
        os.rename(making, folder)
    return folder


def wait_until_settled(folder):
    """Waits until a collection that library has just made is a minute old: each regeneration reads newer
    songs again (CanBeKnown in catalogue/regeneration/knownsongs.h)."""
    left = 61 - (time.time() - os.stat(folder).st_ctime)
    if left > 0:
        time.sleep(left)


def report(what, value, limit, unit, judged=True):
    """Prints a figure beside its limit; whether the limit was missed. A figure that is 0 was not measured,
    which is a miss also where the times are not judged."""
    word = "  NOT MEASURED" if value == 0 else "  MISSED" if judged and value > limit else ""
    print("%-52s %9.3f %-4s limit %7.3f%s" % (what, value, unit, limit, word), flush=True)
    return word != ""
