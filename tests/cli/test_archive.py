#!/usr/bin/env python3
"""Converts a dozen files by the example workflow: test_archive.py NORVA SOURCE_FOLDER."""

import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

NORVA, SOURCE = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
ARCHIVE = SOURCE / "samples/archive"


class Archive(unittest.TestCase):
    def summary(self, folder):
        out = subprocess.run([sys.executable, ARCHIVE / "summary.py", folder / "source", folder / "made"], check=True,
                             capture_output=True, text=True).stdout
        return [row.split(",") for row in out.splitlines()[1:]]

    def test_a_dozen_files(self):
        with tempfile.TemporaryDirectory() as folder:
            folder = Path(folder)
            subprocess.run([sys.executable, ARCHIVE / "make_files.py", folder / "source", "12"], check=True)
            self.assertEqual({row[3] for row in self.summary(folder)}, {"missing"})
            if not shutil.which("snakemake"):
                self.skipTest("snakemake is not installed")
            for name in ("Snakefile", "config.yaml"):
                shutil.copy(ARCHIVE / name, folder)
            done = subprocess.run(["snakemake", "--profile", ARCHIVE / "local", "--config", f"norva={NORVA}"], cwd=folder,
                                  capture_output=True, text=True)
            self.assertEqual(done.returncode, 1, done.stderr)
            rows = self.summary(folder)
            self.assertEqual([row[0][:10] for row in rows if row[3] == "failed"], ["000/000007"])
            made = {"survey": ("296", "6", "losses"), ".gbn": ("132", "0", "made"), ".gpx": ("42", "0", "made"),
                    ".p01": ("182", "26", "losses"), ".mag": ("48", "0", "made"), ".dmp": ("32", "0", "made")}
            for name, *facts in rows:
                if facts[2] != "failed":
                    self.assertEqual(tuple(facts), made.get(name[10:], made["survey"]), name)
            # One that was stopped on the way says so, whatever norva wrote before.
            stopped = rows[0][0]
            (folder / "made" / f"{stopped}.log").write_text("norva: interrupted\n")
            self.assertEqual(self.summary(folder)[0], [stopped, "", "", "missing"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
