"""What the tests of the command line share: case.py's Case runs norva in a folder of its own."""

import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

NORVA, SAMPLES = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
DATA = SAMPLES.parent / "tests" / "data"
XYZ, CSV = SAMPLES / "survey.xyz", SAMPLES / "survey.csv"


class Case(unittest.TestCase):
    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory()
        self.folder = Path(self.scratch.name)

    def tearDown(self):
        self.scratch.cleanup()

    def norva(self, *arguments, status=0):
        done = subprocess.run([NORVA, *map(str, arguments)], cwd=self.folder, capture_output=True, text=True,
                              stdin=subprocess.DEVNULL)
        if status is not None:
            self.assertEqual(done.returncode, status, f"{arguments}\n{done.stdout}{done.stderr}")
        return done

    def names(self):
        return sorted(path.name for path in self.folder.iterdir())

    def write(self, name, content):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path

    def info(self, store):
        return json.loads(self.norva("info", store, "--json").stdout)

    def json_lines(self, *arguments):
        return [json.loads(line) for line in self.norva(*arguments).stdout.splitlines()]

    def import_xyz(self, *options):
        self.norva("import", XYZ, "-o", "s.nvt", "--as-it-stands", "--header-line", 2, "--quiet", *options)
