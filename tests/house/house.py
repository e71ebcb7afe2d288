"""What the checks of the house share: where the sources and the build are, and their files."""
import os
import pathlib
import subprocess

SOURCE = pathlib.Path(os.environ.get("QUENLIN_SOURCE", pathlib.Path(__file__).resolve().parents[2]))
BUILD = pathlib.Path(os.environ.get("QUENLIN_BUILD", SOURCE / "build" / "release"))
ID = os.environ.get("QUENLIN_ID", "example.quenlin.Quenlin")


def sources(*suffixes):
    """All files of the repository with one of the suffixes, as paths relative to its root."""
    found = []
    for folder, folders, names in os.walk(SOURCE):
        folders[:] = [f for f in folders if f not in ("build", ".git", "__pycache__")]
        found += [(pathlib.Path(folder) / name).relative_to(SOURCE) for name in names
                  if name != ".git" and (not suffixes or name.endswith(suffixes))]
    return sorted(found)


def run(*command, **options):
    """The finished command with its output as text."""
    return subprocess.run([str(part) for part in command], capture_output=True, text=True,
                          check=False, **options)
