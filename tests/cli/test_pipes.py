#!/usr/bin/env python3
"""Pipes, and many files in one command: test_pipes.py NORVA SAMPLES."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

from case import CSV, NORVA, SAMPLES, XYZ, Case


class Pipes(Case):
    def setUp(self):
        super().setUp()
        self.temporary = tempfile.TemporaryDirectory()
        self.addCleanup(self.temporary.cleanup)

    def piped(self, *arguments, given=b"", status=0):
        done = subprocess.run([NORVA, *map(str, arguments)], cwd=self.folder, input=given, capture_output=True,
                              env=dict(os.environ, TMPDIR=self.temporary.name))
        self.assertEqual(done.returncode, status, f"{arguments}\n{done.stderr}")
        self.assertEqual(os.listdir(self.temporary.name), [])
        return done

    def test_streams_give_what_files_give(self):
        self.norva("import", CSV, "-o", "file.nvt", "--quiet")
        done = self.piped("import", "-", "-o", "stream.nvt", given=CSV.read_bytes())
        self.assertIn(b"standard input: read as ASCII", done.stdout)
        self.assertEqual((self.folder / "stream.nvt").read_bytes(), (self.folder / "file.nvt").read_bytes())
        for extension in ("csv", "xyz", "gbn", "nvt"):
            self.norva("export", "file.nvt", f"out.{extension}", "--quiet")
            done = self.piped("export", "file.nvt", "-", "--to", extension)
            self.assertEqual(done.stdout, (self.folder / f"out.{extension}").read_bytes(), extension)
            self.assertEqual(self.piped("convert", "-", "-", "--to", extension, given=CSV.read_bytes()).stdout,
                             done.stdout)
        self.assertEqual(done.stderr, b"")
        told = self.piped("info", "-", given=(SAMPLES / "survey.gbn").read_bytes()).stdout
        self.assertEqual(told, self.piped("info", SAMPLES / "survey.gbn").stdout)
        self.piped("import", "-", "--into", "made", given=XYZ.read_bytes())
        self.assertEqual(os.listdir(self.folder / "made"), ["stdin.nvt"])

    def test_what_streams_cannot_do_is_said(self):
        self.norva("import", CSV, "-o", "s.nvt", "--quiet")
        for arguments, status, said in [
            (["import", "-"], 2, b"needs -o"),
            (["import", "-", "-o", "n.nvt"], 1, b"standard input: the file is empty"),
            (["info", "-"], 1, b"standard input"),
            (["convert", "-", "out.xyz"], 1, b"standard input"),
            (["import", "-", "-", "--into", "made"], 2, b"read once"),
            (["convert", CSV, XYZ, "-"], 2, b"one input"),
            (["convert", CSV, "-", "--json"], 2, b"--json"),
            (["export", "s.nvt", "-", "--to", "pdf"], 1, b"cannot be written"),
            (["export", "s.nvt", "out.xyz", "--to", "csv"], 2, b"goes with -"),
        ]:
            with self.subTest(arguments=arguments):
                done = self.piped(*arguments, status=status)
                self.assertIn(said, done.stderr)
                self.assertNotIn(b"/norva-", done.stderr)
                self.assertEqual(done.stdout, b"")

    def test_a_reader_that_leaves_ends_it_quietly(self):
        self.write("big.xyz", "".join(f"{i} {i * 0.5} {i % 97}\n" for i in range(60_000)))
        self.norva("import", "big.xyz", "--quiet")
        for arguments in (["show", "big.nvt"], ["export", "big.nvt", "-", "--to", "csv"], ["convert", "big.xyz", "-"]):
            process = subprocess.Popen([NORVA, *arguments], cwd=self.folder, stdout=subprocess.PIPE,
                                       stderr=subprocess.PIPE, env=dict(os.environ, TMPDIR=self.temporary.name))
            process.stdout.read(10)
            process.stdout.close()
            self.assertEqual((process.stderr.read(), process.wait()), (b"", 141), arguments)
            process.stderr.close()
            self.assertEqual(os.listdir(self.temporary.name), [])


class ManyFiles(Case):
    def setUp(self):
        super().setUp()
        (self.folder / "in").mkdir()
        for name in ("survey.csv", "cg3.dmp", "airborne.p01", "tracks.gpx", "seaspy.mag"):
            shutil.copy(SAMPLES / name, self.folder / "in")
        self.write("in/bad.gbn", "OASIS BINARY DATA")
        self.write("in/.hidden.xyz", "1 2\n")
        self.write("in/old.nvt", "no input")

    def test_jobs_change_nothing_but_the_time(self):
        texts, stores = [], []
        for jobs in (1, 4):
            done = self.norva("import", "in", XYZ, "--into", "stores", "--report", "{stem}.json", "--jobs", jobs,
                              "--force", status=1)
            self.assertIn("5 of 7 files imported", done.stdout)
            self.assertIn(f"{XYZ}: another file became stores/survey.nvt", done.stderr)
            self.assertIn("bad.gbn", done.stderr)
            texts.append((done.stdout, [line for line in done.stderr.splitlines() if line.startswith("norva:")]))
            stores.append({path.name: path.read_bytes() for path in (self.folder / "stores").iterdir()})
        self.assertEqual(texts[0], texts[1])
        self.assertEqual(stores[0], stores[1])
        self.assertEqual(sorted(stores[0]), ["airborne.nvt", "cg3.nvt", "seaspy.nvt", "survey.nvt", "tracks.nvt"])
        for name in stores[0]:
            self.norva("import", next((self.folder / "in").glob(name[:-3] + "*")), "-o", "one.nvt", "--force", "--quiet",
                       status=None)
            self.assertEqual((self.folder / "one.nvt").read_bytes(), stores[0][name], name)
            self.assertTrue((self.folder / name).with_suffix(".json").exists())
        tables = [self.norva("convert", "in", "out", "--to", "csv", "--force", "--quiet", "--json", "--jobs", jobs,
                             status=1).stdout for jobs in (1, 4)]
        self.assertEqual(tables[0], tables[1])

    def test_outputs_for_many(self):
        self.norva("import", "in/survey.csv", "in/tracks.gpx", "-o", "a_{stem}_b.nvt", "--quiet")
        self.norva("import", "in/survey.csv", "in/tracks.gpx")  # beside the inputs
        for name in ("a_survey_b.nvt", "a_tracks_b.nvt", "in/survey.nvt", "in/tracks.nvt"):
            self.assertTrue((self.folder / name).exists(), name)
        (self.folder / "empty").mkdir()
        for arguments, said in [(["in", "-o", "one.nvt"], "put {stem}"), (["in", "--report", "r.json"], "put {stem}"),
                                (["in", "--save-template", "t"], "one input"), (["empty"], "no file"),
                                (["in", "--into", "x", "-o", "{stem}.nvt"], "exclude"), (["in", "--jobs", "0"], "jobs")]:
            self.assertIn(said, self.norva("import", *arguments, status=None).stderr, arguments)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
