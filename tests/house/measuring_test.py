"""The figures of the benchmarks: one that was not measured is reported as such, and counts as a miss."""
import contextlib
import io
import sys
import unittest

from house import SOURCE

sys.dont_write_bytecode = True
sys.path.insert(0, str(SOURCE / "bench"))
import measuring  # noqa: E402


class Report(unittest.TestCase):
    def report(self, *figure):
        """(whether it is a miss, the printed line)"""
        out = io.StringIO()
        with contextlib.redirect_stdout(out):
            missed = measuring.report(*figure)
        return missed, out.getvalue()

    def test_a_limit_is_kept_or_missed(self):
        self.assertEqual(self.report("a wait", 99.0, 100, "ms")[0], False)
        missed, line = self.report("a wait", 101.0, 100, "ms")
        self.assertTrue(missed)
        self.assertIn("MISSED", line)
        self.assertEqual(self.report("a wait", 101.0, 100, "ms", False)[0], False)

    def test_nothing_is_no_figure(self):
        for judged in (True, False):
            missed, line = self.report("a wait", 0.0, 100, "ms", judged)
            self.assertTrue(missed)
            self.assertIn("NOT MEASURED", line)


if __name__ == "__main__":
    unittest.main()
