"""./test leaves the sanitized part out only where that part passed with the same files."""
import pathlib
import shutil
import subprocess
import tempfile
import unittest

import house

BUILD = '#!/bin/sh\necho "build $1" >>log\n'
# The sanitized tests fail where a file says so.
CTEST = '#!/bin/sh\necho "ctest $2" >>log\n[ "$2" != sanitize ] || [ ! -e broken ]\n'


class Command(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        shutil.copy(house.SOURCE / "test", self.root)
        self.write("tools/packages", "#!/bin/sh\n")
        self.write("tools/build", BUILD)
        self.write("commands/ctest", CTEST)
        self.write("a.cpp", "one")
        self.write("docs/a.txt", "one")
        self.write("a.md", "one")
        self.write(".gitignore", "/build/\n/log\n")
        self.assertEqual(house.run("git", "init", cwd=self.root).returncode, 0)

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(text)
        path.chmod(0o755)

    def ran(self, *options):
        """(the exit status, which tests ran)"""
        (self.root / "log").unlink(missing_ok=True)
        done = subprocess.run([self.root / "test", *options], capture_output=True, check=False, text=True,
                              env={"PATH": f"{self.root}/commands:/usr/bin:/bin", "HOME": str(self.root)})
        lines = (self.root / "log").read_text().splitlines()
        return done.returncode, sorted(line.split()[1] for line in lines if line.startswith("ctest"))

    def test_what_passed_is_left_out(self):
        both, one = (0, ["release", "sanitize"]), (0, ["release"])
        self.assertEqual(self.ran(), both)
        self.assertEqual(self.ran(), one)
        self.assertEqual(self.ran("--all"), both)
        self.assertEqual(self.ran(), one)
        self.write("a.md", "two")
        self.write("docs/a.txt", "two")
        self.assertEqual(self.ran(), one)
        self.write("a.cpp", "two")
        self.assertEqual(self.ran(), both)
        self.write("new.cpp", "one")
        self.assertEqual(self.ran(), both)
        (self.root / "new.cpp").unlink()
        self.assertEqual(self.ran(), both)
        self.assertEqual(self.ran(), one)

    def test_a_failure_is_not_forgotten(self):
        self.assertEqual(self.ran()[0], 0)
        self.write("broken", "")
        self.assertEqual(self.ran(), (1, ["release", "sanitize"]))
        self.assertEqual(self.ran(), (1, ["release", "sanitize"]))
        (self.root / "broken").unlink()
        self.assertEqual(self.ran(), (0, ["release", "sanitize"]))

    def test_without_git_all_run(self):
        shutil.rmtree(self.root / ".git")
        self.assertEqual(self.ran(), self.ran())
        self.assertEqual(self.ran(), (0, ["release", "sanitize"]))


if __name__ == "__main__":
    unittest.main()
