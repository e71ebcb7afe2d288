"""Several processes on one catalogue, and kills in the middle: nothing lost, nothing twice."""
import os
import random
import signal
import sys
import time
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from program import REPORT, ProgramTest, wait_for  # noqa: E402


class SideBySide(ProgramTest):
    def finish(self, process):
        out, err = process.communicate(timeout=300)
        self.assertEqual(process.returncode, 0, (out + err).decode(errors="replace"))
        self.assertNotIn(b"lock", err.lower())

    def assert_each_once(self, paths):
        found = [path for (path,) in self.query("SELECT Path FROM MP3s")]
        self.assertEqual(len(found), len(set(found)), "a row is there twice")
        self.assertEqual(set(found), set(paths))
        self.assert_whole()

    def test_four_batches(self):
        lists = [self.songs("list%d" % number, 500) for number in range(4)]
        batches = [self.start(*paths) for paths in lists]
        for batch in batches:
            self.finish(batch)
        self.assert_alone()
        self.assert_each_once([path for paths in lists for path in paths])
        summary = self.read("Solution.txt")
        self.assertEqual(summary.count(b"These MP3s were added correctly:"), 4)
        self.assertNotIn(b"couldn't", summary)

    def test_four_batches_of_the_same_files(self):
        paths = self.songs("same", 300)
        batches = [self.start(*paths) for _ in range(4)]
        for batch in batches:
            self.finish(batch)
        self.assert_each_once(paths)
        self.assertNotIn(b"couldn't", self.read("Solution.txt"))

    def test_batch_beside_a_regeneration(self):
        inside = self.songs("inside", 1500)
        outside = [path.replace(b"/music/", b"/other/") for path in self.songs("x", 300)]
        os.rename(os.path.join(self.music, "x"), os.path.join(self.scratch, "x"))
        os.makedirs(os.path.join(self.scratch, "other"))
        os.rename(os.path.join(self.scratch, "x"), os.path.join(self.scratch, "other", "x"))
        run = self.start("--regenerate", self.music)
        batch = self.start(*outside)
        self.finish(batch)
        self.finish(run)
        self.assert_each_once(inside + outside)
        self.assertNotIn(b"couldn't", self.read("Solution.txt"))

    def test_single_add_beside_a_regeneration_does_not_wait(self):
        inside = self.songs("inside", 6000)
        single = [path.replace(b"/music/", b"/") for path in self.songs("one", 5)]
        os.rename(os.path.join(self.music, "one"), os.path.join(self.scratch, "one"))
        run = self.start("--regenerate", self.music)
        self.assertTrue(wait_for(lambda: os.path.exists(os.path.join(self.home, REPORT))))
        times = []
        for path in single:
            start = time.monotonic()
            self.finish(self.start(path))
            times.append(time.monotonic() - start)
            if run.poll() is not None:
                break
        beside = len(times) - (run.poll() is not None)
        self.assertGreater(beside, 0, "the regeneration was over before the first add")
        self.assertLess(max(times), 0.5, "seconds of a whole process beside the regeneration")
        self.finish(run)
        print("adds beside a regeneration: %s ms" % ", ".join("%.0f" % (t * 1e3) for t in times))
        added = single[:len(times)]
        self.assert_each_once(inside + added)

    def test_kill_in_the_middle_of_a_regeneration(self):
        paths = self.songs("many", 3000)
        rng = random.Random(7)
        before = 0
        for attempt in range(6):
            run = self.start("--regenerate", self.music)
            if attempt % 2:  # the kill must come at different moments
                time.sleep(rng.uniform(0.03, 0.25))
            else:
                wait_for(lambda: run.poll() is not None or self.row_count() > before, 10)
            run.send_signal(signal.SIGKILL)
            run.communicate()
            self.assert_whole()
            found = self.paths()
            self.assertEqual(len(found), len(set(found)), "a row is there twice")
            self.assertGreaterEqual(len(found), before, "a row that was there is gone")
            before = len(found)
        self.assertGreater(before, 0)
        self.finish(self.start("--regenerate", self.music))
        self.assert_each_once(paths)

    def row_count(self):
        return self.query("SELECT count(*) FROM MP3s")[0][0]


if __name__ == "__main__":
    unittest.main()
