#!/usr/bin/env python3
"""What norva says of losses, and that it spoils no file: test_losses.py NORVA SAMPLES."""

import json
import os
import resource
import shutil
import signal
import subprocess
import sys
import time
import unittest

from case import CSV, DATA, NORVA, SAMPLES, XYZ, Case

RECORD = ["--record", "Seconds:double:s,Mag:float>double:nT,Quality:int16"]


class SourcesStay(Case):
    def test_an_input_is_never_the_output(self):
        text = b"1 2\n3 4\n"
        cases = [
            (["import", "raw.xyz", "-o", "raw.xyz", "--force"], "is the input itself"),
            (["import", "raw.xyz", "-o", "link.nvt", "--force"], "is the input itself"),
            (["import", "text.nvt", "--format", "ASCII XYZ", "--force"], "is the input itself"),
            (["import", "raw.xyz", "-o", "n.nvt", "--report", "report.json", "--force"], ""),
            (["import", "report.json", "-o", "n.nvt", "--format", "xyz", "--report", "report.json", "--force"], "itself"),
            (["import", "report.json", "-o", "n.nvt", "--format", "xyz", "--save-template", "report.json", "--force"],
             "itself"),
            (["convert", "raw.xyz", "raw.xyz", "--force"], "is the input itself"),
        ]
        for arguments, said in cases:
            for name in ("raw.xyz", "text.nvt", "report.json"):
                self.write(name, text)
            (self.folder / "link.nvt").unlink(missing_ok=True)
            (self.folder / "link.nvt").symlink_to("raw.xyz")
            with self.subTest(arguments=arguments):
                self.assertIn(said, self.norva(*arguments, status=1 if said else 0).stderr)
                self.assertEqual({(self.folder / name).read_bytes() for name in ("raw.xyz", "text.nvt", "link.nvt")},
                                 {text})

    def test_convert_goes_on_with_the_other_files(self):
        self.write("a.xyz", "1 2\n3 4\n")
        self.write("b.csv", "1,2\n3,4\n")
        self.write("b.xyz", "5 6\n")
        before = {name: (self.folder / name).read_bytes() for name in self.names()}
        done = self.norva("convert", "a.xyz", "b.csv", "b.xyz", ".", "--to", "xyz", "--force", status=1)
        self.assertIn("a.xyz: is the input itself", done.stderr)
        self.assertIn("b.xyz: is one of the inputs", done.stderr)
        self.assertEqual({name: (self.folder / name).read_bytes() for name in self.names()}, before)
        self.norva("convert", "a.xyz", "b.csv", "out", "--to", "txt")
        self.assertEqual(sorted(path.name for path in (self.folder / "out").iterdir()), ["a.txt", "b.txt"])

    def test_a_signal_leaves_nothing_behind(self):
        with open(self.folder / "big.xyz", "w") as out:
            for i in range(300_000):
                out.write(f"{i} {i * 0.5} {i * 0.25} {i % 97} 1.25 2.5\n")
        before = self.names()
        for one in (signal.SIGHUP, signal.SIGTERM):
            process = subprocess.Popen([NORVA, "import", "big.xyz", "-o", "new.nvt", "--quiet"], cwd=self.folder,
                                       stderr=subprocess.DEVNULL)
            while process.poll() is None and self.names() == before:
                time.sleep(0.001)  # until the file that becomes the store is there
            process.send_signal(one)
            self.assertEqual(process.wait(60), 130, one)
            self.assertEqual(self.names(), before, one)
        # A file beyond the size limit is a failure like a full disk.
        limit = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 20, 1 << 20))
        done = subprocess.run([NORVA, "import", "big.xyz", "-o", "new.nvt"], cwd=self.folder, capture_output=True,
                              text=True, preexec_fn=limit)
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertIn("File too large", done.stderr)
        self.assertEqual(self.names(), before)
        # The first Ctrl-C ends a listing, too.
        self.norva("import", "big.xyz", "-o", "big.nvt", "--quiet")
        show = subprocess.Popen([NORVA, "show", "big.nvt"], cwd=self.folder, stdout=subprocess.PIPE,
                                stderr=subprocess.DEVNULL)
        show.stdout.read(1000)
        show.send_signal(signal.SIGINT)
        self.assertLess(len(show.stdout.read()), 2_000_000)
        self.assertEqual(show.wait(60), 130)
        show.stdout.close()



class Reports(Case):
    def test_every_kind_of_row_is_named(self):
        self.write("in.csv", "1,2,3\n4,,6\n7,8,9,10\n")
        done = self.norva("import", "in.csv", "-o", "out.nvt", "--format", "csv", "--as-it-stands",
                          "--report", "report.json")
        self.norva("import", "in.csv", "-o", "out.nvt", "--format", "csv", "--as-it-stands", "--force",
                   "--report", "report.html")
        report = json.loads((self.folder / "report.json").read_text())
        page = (self.folder / "report.html").read_text()
        for kind, text, line in (("skipped_rows", "rows skipped that read as data", 1),
                                 ("shifted", "rows with an empty cell, values behind it shifted", 2),
                                 ("rows_with_more_values", "rows with more values than columns", 3)):
            self.assertEqual([place["line"] for place in report[kind]["places"]], [line], kind)
            self.assertIn(f"{text}: 1, first at line {line}", done.stdout)
            self.assertIn(f"<td>{text}</td><td class=\"n bad\">1</td>", page)


class Losses(Case):
    ROWS = "1 2\n3 4x\n5 6\n"

    def test_they_are_told_wherever_an_import_runs(self):
        self.write("s.xyz", self.ROWS)
        self.write("t.xyz", "1 2\n3 4\n")
        typed = ["--as-it-stands", "--column", "2:type=float"]
        for arguments, status, out, err in (
            (["import", "s.xyz", "-o", "n.nvt", *typed], 0, "1 loss", ""),
            (["import", "s.xyz", "-o", "n.nvt", *typed, "--quiet"], 0, "", "s.xyz: 3 lines read: data rows 3; 1 loss\n"),
            (["import", "t.xyz", "-o", "n.nvt", *typed, "--quiet"], 0, "", ""),
            (["convert", "s.xyz", "o.txt", *typed], 0, "1 loss", ""),
            (["convert", "s.xyz", "o.txt", *typed, "--quiet"], 0, "", "1 loss\n"),
            (["convert", "s.xyz", "o.txt", *typed, "--strict"], 4, "", "line 2, column 3: '4x'"),
            (["convert", "s.xyz", "t.xyz", "o", *typed, "--strict"], 4, "s.xyz           1           6           1           0  converted",
             ""),
            (["convert", "t.xyz", "o", "--to", "txt", "--strict"], 0, "nothing lost", ""),
        ):
            with self.subTest(arguments=arguments):
                done = self.norva(*arguments, "--force", status=status)
                self.assertIn(out, done.stdout)
                self.assertIn(err, done.stderr) if err else self.assertEqual(done.stderr.count("loss"), int(status == 4))

    def test_a_first_row_that_is_too_short_is_told_with_what_mends_it(self):
        dump = (SAMPLES / "ipr12.dmp").read_text().replace("P-Line:", "X-Line:")
        for name, content, skip in (("no_line.dmp", dump, "3"), ("late.xyz", "Tie\n1 2 3\n4 5 6\n7 8 9\n", "1")):
            self.write(name, content)
            done = self.norva("import", name, "-o", "n.nvt", "--as-it-stands", "--force", "--quiet")
            self.assertIn(f"most rows have more values than the first one; try --skip {skip}\n", done.stderr)
            done = self.norva("import", name, "-o", "n.nvt", "--as-it-stands", "--force", "--skip", skip)
            self.assertIn("nothing lost", done.stdout)
            self.assertNotIn("try", done.stderr)

    def test_convert_sums_up_and_keeps_reports(self):
        self.write("s.xyz", self.ROWS)
        self.write("empty.xyz", "")
        done = self.norva("convert", "s.xyz", "empty.xyz", "o", "--report", "r", "--json", "--as-it-stands", "--column",
                          "2:type=float", status=1)
        table = json.loads(done.stdout)
        self.assertEqual([(one["file"], one["output"], one["lines"], one["values"], one["losses"], one["status"])
                          for one in table],
                         [("s.xyz", "o/s.xyz", 1, 6, 1, "converted"), ("empty.xyz", "o/empty.xyz", 0, 0, 0, "failed")])
        self.assertIn("the file is empty", table[1]["message"])
        report = json.loads((self.folder / "r" / "s.json").read_text())
        self.assertEqual((report["losses"], report["channels"][1]["with_rest"]["places"][0]["text"]), (1, "4x"))


    def test_as_many_places_as_asked_for_are_named(self):
        self.write("s.xyz", "".join(f"{i} {i}x\n" for i in range(12)))
        for asked, count in (((), 5), (("--places", "0"), 0), (("--places", "7"), 7), (("--places", "all"), 12)):
            self.norva("import", "s.xyz", "-o", "n.nvt", "--report", "r.json", "--force", "--as-it-stands",
                       "--column", "2:type=float", *asked)
            finding = json.loads((self.folder / "r.json").read_text())["channels"][1]["with_rest"]
            self.assertEqual((finding["count"], len(finding["places"])), (12, count))
        self.norva("import", "s.xyz", "--places", "some", status=2)


    def test_exports_say_what_the_output_does_not_hold(self):
        self.write("s.xyz", "7134550 0.123456789\n7134551 0.5\n")
        self.norva("import", "s.xyz", "-o", "s.nvt", "--as-it-stands", "--column", "1:type=double", "--column",
                   "2:type=double")
        for options, status, losses in (([], 0, True), (["--strict"], 4, True), (["--full-digits", "--strict"], 0, False)):
            done = self.norva("export", "s.nvt", "o.xyz", "--force", *options, status=status)
            said = done.stdout + done.stderr
            self.assertEqual("nothing lost" not in said, losses, said)
            written = [float(row.split()[1]) for row in (self.folder / "o.xyz").read_text().splitlines()[2:]]
            self.assertEqual(written == [0.123456789, 0.5], not losses)
        quiet = self.norva("export", "s.nvt", "o.xyz", "--force", "--quiet")
        self.assertEqual((quiet.stdout, quiet.stderr.count("\n")), ("", 1))
        cells = [self.norva("show", "s.nvt", *digits).stdout.splitlines()[2].split()[1]
                 for digits in ([], ["--full-digits"])]
        self.assertEqual((float(cells[0]) == 0.123456789, float(cells[1])), (False, 0.123456789))
        self.assertNotIn("0.123456789", cells[0])


class Verify(Case):
    def test_every_fresh_import_agrees(self):
        rows = "".join(f"{i} {i}.5 L{i // 3} 12:00:{i:02d} n/a{i}\n" for i in range(40))
        for name, text, options in (
            ("mixed.xyz", rows, ["--as-it-stands", "--column", "5:type=float", "--column", "4:type=date", "--column",
                                 "3:type=short"]),
            ("spaced.csv", rows.replace(" ", ", "), ["--as-it-stands", "--skip", "3", "--label-column", "3"]),
            ("named.xyz", "/ A B A\n1 2 3\n4 5 6\n", ["--header-line", "1"]),
            ("markers.xyz", "LINE 1\n1 2\nline of data 3\n3 4\n", []),
        ):
            with self.subTest(name=name):
                self.write(name, text)
                self.norva("import", name, "-o", "n.nvt", "--report", "r.json", "--force", *options)
                self.norva("verify", "n.nvt", "r.json")

    def test_every_seed_that_imports_agrees(self):
        corpus = SAMPLES.parent / "fuzz" / "corpus"
        agreed = 0
        for seed in sorted(path for name in ("text", "seaspy", "gpx", "cg3", "ipr12", "gbn", "tki")
                           for path in (corpus / name).iterdir()):
            with self.subTest(seed=seed.name):
                made = self.norva("import", seed, "-o", "n.nvt", "--report", "r.json", "--force", status=None)
                if made.returncode != 0:
                    continue
                self.norva("verify", "n.nvt", "r.json")
                agreed += 1
        self.assertGreaterEqual(agreed, 20)

    def test_nothing_is_written_beside_the_source(self):
        for name, options in (("cg3.dmp", []), ("base.bin", RECORD), ("survey.gbn", [])):
            folder = self.folder / "source"
            shutil.rmtree(folder, ignore_errors=True)
            folder.mkdir()
            shutil.copy(SAMPLES / name, folder)
            self.norva("import", folder / name, "-o", "n.nvt", "--report", "r.json", "--force", *options)
            for own in ("s.0", "s.1", "s.2", "fiducial"):
                (folder / own).write_text("the user's")
                (self.folder / own).write_text("the user's")
            self.norva("verify", "n.nvt", "r.json")
            for own in ("s.0", "s.1", "s.2", "fiducial"):
                self.assertEqual(((folder / own).read_text(), (self.folder / own).read_text()), ("the user's",) * 2)
            self.assertEqual(len(list(folder.iterdir())), 5)

    def test_reports_and_templates_of_the_first_version_are_read(self):
        old = DATA / "first_version"
        dump = ["--columns", "GRAV.,10", "--date-format", "YY/MM/DD", "--time-format", "HH:MM:SS", "--no-sort"]
        for report, name, options in (
            ("survey_csv", "survey.csv", ["--template", old / "survey_csv_template.json"]),
            ("seaspy", "seaspy.mag", ["--interpolated", "yes", "--column", "3:type=double"]),
            ("gbn", "survey.gbn", ["--lines", "3:2020", "--channels", "X", "--column", "X:name=East", "--no-fiducial"]),
            ("cg3", "cg3.dmp", dump),
            ("base", "base.bin", [*RECORD, "--points-per-line", "400", "--frequency", "10"]),
        ):
            with self.subTest(report=report):
                self.norva("import", SAMPLES / name, "-o", "n.nvt", "--force", *options)
                self.norva("verify", "n.nvt", old / f"{report}.json", "--source", SAMPLES / name)
        # And they tell other settings apart.
        self.norva("import", SAMPLES / "base.bin", "-o", "n.nvt", "--force", *RECORD, "--frequency", "10")
        self.norva("verify", "n.nvt", old / "base.json", "--source", SAMPLES / "base.bin", status=5)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=1)
