#!/usr/bin/env python3
"""Imports of text by a proposal from the whole file: test_proposal.py NORVA SAMPLES."""

import gzip
import json
import os
import shlex
import subprocess
import sys
import unittest
import zipfile

from case import CSV, NORVA, SAMPLES, XYZ, Case

# File, text, names of the lines of the survey, (channel, first value, last value)...
SHAPES = (
    ("positions.csv", "id,lat,lon,alt,a,b,c,d,,e\n" + "".join(f"{i},45.{i:06d},-75.5,{100 + i}.25,1,2,3,4,,x{i}\n"
                                                              for i in range(20)),
     ["LINE1"], ("lat", 45.0, 45.000019), ("alt", 100.25, 119.25), ("e", "x0", "x19")),
    ("late.txt", "".join(f"About the survey, part {i}\n" for i in range(29)) + "=" * 40 + "\nX\tY\tMag\n" +
     "".join(f"{i}.5\t{i * 2}\t5420{i % 10}.88\n" for i in range(30)),
     ["LINE1"], ("X", 0.5, 29.5), ("Y", 0, 58), ("Mag", 54200.88, 54209.88)),
    ("quoted.csv", '"Line", "East, m", "Mag"\n' + "".join(f"L{i // 10}, {i}.5, {54000 + i}\n" for i in range(30)),
     ["L0", "L1", "L2"], ("East, m", 0.5, 29.5), ("Mag", 54000, 54029)),
    ("comma.csv", "X;Y;Mag\n" + "".join(f"{450000 + i},25;6200000,{i % 10};54{i:03d},5\n" for i in range(20)),
     ["LINE1"], ("X", 450000.25, 450019.25), ("Y", 6200000.0, 6200000.9), ("Mag", 54000.5, 54019.5)),
    ("ties.xyz", "/ X Y Mag\nLINE 1000\n1 2 3.5\n4 5 6.5\nTie 19010\n7 8 9.5\n", ["1000", "19010"],
     ("X", 1, 7), ("Mag", 3.5, 9.5)),
    ("iso.csv", "Time,Mag\n" + "".join(f"2020-07-29T14:37:{i:02d}Z,{i}.5\n" for i in range(20)), ["LINE1"],
     ("Time_time", 14 + 37 / 60, 14 + 37 / 60 + 19 / 3600), ("Mag", 0.5, 19.5)),
    ("dummies.csv", "X,Mag\n" + "".join(f"{i},{-99999 if i % 7 == 0 else 54000.25 + i}\n" for i in range(22)), ["LINE1"],
     ("X", 0, 21), ("Mag", None, None)),
    ("turns.csv", "A,B\n" + "".join(f"{i},{i}\n" for i in range(3000)) + "3000,0.125\n", ["LINE1"],
     ("A", 0, 3000), ("B", 0, 0.125)),
    ("months.csv", "Date,V\n" + "".join(f"{i + 10}-Apr-2016,{i}\n" for i in range(10)), ["LINE1"], ("V", 0, 9)),
    ("jump.csv", "A,B\n" + "1,2\n" * 20 + "52277,2\n", ["LINE1"], ("A", 1, 52277)),
    ("utf16.csv", "Name,V\nÄ,1.5\nb,2.5\n".encode("utf-16"), ["LINE1"], ("Name", "Ä", "b"), ("V", 1.5, 2.5)),
    ("comments.dat", "X Y\n1 2\n# battery changed\n3 4\n", ["LINE1"], ("X", 1, 3)),
)


class Proposal(Case):
    def values(self, store, channel):
        return [row["values"][0] for row in self.json_lines("show", store, "--json", "--channel", channel)]

    def command_of(self, name, *format):
        return json.loads(self.norva("info", name, "--json", *format).stdout)["proposal"]["command"]

    def test_files_as_people_write_them_are_right_without_options(self):
        for name, text, lines, *channels in SHAPES:
            with self.subTest(name=name):
                self.write(name, text)
                done = self.norva("import", name, "-o", "n.nvt", "--force", "--report", "r.json")
                self.assertIn("nothing lost", done.stdout)
                self.assertEqual([line["name"] for line in self.info("n.nvt")["lines"]], lines)
                for channel, first, last in channels:
                    found = self.values("n.nvt", channel)
                    for value, wanted in ((found[0], first), (found[-1], last)):
                        if isinstance(wanted, float):
                            self.assertAlmostEqual(value, wanted, 9, channel)
                        else:
                            self.assertEqual(value, wanted, channel)
                self.norva("verify", "n.nvt", "r.json")
                # What info prints, and what a template keeps, give the same store.
                words = shlex.split(self.command_of(name))
                self.norva(*words[1:], "-o", "again.nvt", "--force", "--quiet")
                self.norva("import", name, "-o", "kept.nvt", "--force", "--save-template", "t.json")
                self.norva("import", name, "-o", "by.nvt", "--force", "--template", "t.json", "--report", "r.json")
                self.norva("verify", "by.nvt", "r.json")
                made = (self.folder / "n.nvt").read_bytes()
                for other in ("again.nvt", "kept.nvt", "by.nvt"):
                    self.assertEqual((self.folder / other).read_bytes(), made, other)

    def test_the_samples_need_no_option(self):
        for source, lines in ((XYZ, ["1000", "1010", "1020", "1030", "1040"]),
                              (CSV, ["L1000", "L1010", "L1020", "L1030", "L1040"])):
            done = self.norva("import", source, "-o", "n.nvt", "--force", "--strict")
            self.assertIn("header line   " + ("2" if source == XYZ else "1"), done.stdout)
            self.assertEqual([line["name"] for line in self.info("n.nvt")["lines"]], lines)
            self.assertEqual((self.values("n.nvt", "Mag")[0], self.values("n.nvt", "Alt")[0]), (54209.88, 2.01))

    def test_options_settle_one_choice_and_leave_the_others(self):
        self.write("s.csv", "note\n\nA,B,C,Date\n" + "".join(
            f"{i // 10},{i}.5,{-5 if i % 9 == 0 else i},0{i % 9 + 1}/02/2021\n" for i in range(30)))
        for options, wanted in (
            ([], {"A": 5, "B": 0, "C": 5, "Date": 1}),
            (["--column", "B:type=double,name=Field,units=nT"], {"A": 5, "Field": 1, "C": 5, "Date": 1}),
            (["--column", "A,3:type=double"], {"A": 1, "B": 0, "C": 1, "Date": 1}),
            (["--column", "*:type=skip", "--column", "2:type=float"], {"B": 0}),
            (["--column", "C:type=text", "--column", "4:name=Day"],
             {"A": 5, "B": 0, "C": 4, "Day": 1}),
            (["--header-line", 0], {"Ch1": 5, "Ch2": 0, "Ch3": 5, "Ch4": 1}),
        ):
            with self.subTest(options=options):
                self.norva("import", "s.csv", "-o", "n.nvt", "--force", "--quiet", *options)
                found = {one["name"]: one["data_type"] for one in self.info("n.nvt")["channels"]}
                self.assertEqual(found, wanted)
        self.norva("import", "s.csv", "-o", "n.nvt", "--force", "--no-data", -5, "--label-column", "A", "--dates", "dmy")
        self.assertEqual(self.values("n.nvt", "C")[:2], [None, 1])
        self.assertEqual([line["name"] for line in self.info("n.nvt")["lines"]], ["0", "1", "2"])

    def test_a_doubt_is_told_and_ends_strict_imports_until_an_option_settles_it(self):
        self.write("d.csv", "Date,V\n" + "".join(f"0{i % 3 + 1}/0{i % 2 + 4}/2021,{i}.5\n" for i in range(12)))
        done = self.norva("import", "d.csv", "-o", "n.nvt", "--strict", status=4)
        self.assertIn("--dates", done.stderr)
        self.assertTrue((self.folder / "n.nvt").exists())
        self.norva("convert", "d.csv", "o.txt", "--strict", status=4)
        self.assertIn("1 doubt", self.norva("import", "d.csv", "-o", "n.nvt", "--force", "--quiet").stderr)
        for options in (["--dates", "mdy"], ["--column", "Date:type=date,template=MM/DD/YYYY"]):
            self.norva("import", "d.csv", "-o", "n.nvt", "--force", "--strict", *options)
            self.assertAlmostEqual(self.values("n.nvt", "Date")[0], 2021 + 4 / 365)

    def test_the_first_rows_alone_are_as_they_were(self):
        self.write("n.csv", "A,B\n1,2\n3,4.5\n")
        self.norva("import", "n.csv", "--as-it-stands", "--quiet")
        self.assertEqual([one["name"] for one in self.info("n.nvt")["channels"]], ["Ch1", "Ch2"])
        self.norva("import", "n.csv", "-o", "t.nvt", "--as-it-stands", "--header-line", 1, "--save-template", "t.json")
        self.norva("import", "n.csv", "-o", "u.nvt", "--template", "t.json", "--quiet")
        self.assertEqual((self.folder / "t.nvt").read_bytes(), (self.folder / "u.nvt").read_bytes())

    def test_packed_files_are_read_as_what_they_hold(self):
        text = "Fid,X,Mag\n1,450000.25,48000.5\n2,450001.50,48001.5\n"
        self.write("plain.csv", text)
        (self.folder / "survey.csv.gz").write_bytes(gzip.compress(text.encode()))
        with zipfile.ZipFile(self.folder / "survey.zip", "w", zipfile.ZIP_DEFLATED) as packed:
            packed.writestr("inner/data.csv", text)
        self.norva("import", "plain.csv", "--quiet")
        for name in ("survey.csv.gz", "survey.zip"):
            with self.subTest(name=name):
                self.norva("import", name, "--force", "--quiet", "--report", "r.json")
                self.assertEqual((self.folder / "survey.nvt").read_bytes(), (self.folder / "plain.nvt").read_bytes())
                self.norva("verify", "survey.nvt", "r.json")
                self.assertIn(f"norva import {name} ", self.norva("info", name).stdout)
                self.norva("convert", name, "o.xyz", "--force", "--quiet")
                (self.folder / name).write_bytes((self.folder / name).read_bytes()[:-9])
                done = self.norva("import", name, "-o", "n.nvt", status=1)
                self.assertIn(name, done.stderr)
                self.assertFalse((self.folder / "n.nvt").exists())

    def test_doubts_are_asked_at_a_terminal(self):
        self.write("d.csv", "Day,G\n06/05/2024,1.5\n06/05/2024,1.6\n")
        self.assertIn("needs a terminal", self.norva("import", "d.csv", "--ask", status=2).stderr)
        # May 6th is day 127, June 5th day 157 of 366.
        for answers, day in (("\n", 127), ("mdy\n", 157), ("nonsense\nmdy\n", 157), ("dmy\n", 127)):
            with self.subTest(answers=answers):
                ours, theirs = os.openpty()
                os.write(ours, answers.encode())
                done = subprocess.run([NORVA, "import", "d.csv", "--ask", "--force", "--report", "r.json"],
                                      cwd=self.folder, stdin=theirs, stderr=theirs, stdout=subprocess.DEVNULL, timeout=60)
                os.close(theirs)
                said = os.read(ours, 100000).decode()
                os.close(ours)
                self.assertEqual(done.returncode, 0, said)
                self.assertIn("--dates dmy|mdy", said)
                self.assertAlmostEqual(self.values("d.nvt", "Day")[0], 2024 + day / 366)
                self.norva("verify", "d.nvt", "r.json")

    def test_info_speaks_of_the_whole_file(self):
        (self.folder / "wide.csv").write_bytes("a;b\r\n1;2\r\n3;4\r\n".encode("utf-16"))
        said = self.norva("info", "wide.csv").stdout
        self.assertNotIn("problem", said)
        self.assertIn("UTF-16", said)
        self.write("two.csv", "a;b\n\n1;2\n3;4\n5;6\nthe end\n")
        told = json.loads(self.norva("info", "two.csv", "--json").stdout)
        self.assertEqual(told["rows"], 3)
        self.assertEqual([line["number"] for line in told["first_lines"]], [1, 3, 4, 5, 6])

    def test_refusals(self):
        self.write("s.csv", "A,B\n1,2\n3,4\n")
        self.write("other.csv", "A,C\n1,2\n3,4\n")
        self.write("wide.csv", "A,B,C\n1,2,3\n3,4,5\n")
        self.write("prose.txt", "This is a letter of some words\nand it has no table in it\nat all.\n")
        self.norva("import", "s.csv", "--save-template", "t.json")
        for arguments, status, said in (
            (["s.csv", "--skip", "1"], 2, "--as-it-stands"),
            (["s.csv", "--delimiters", ";"], 2, "--as-it-stands"),
            (["s.csv", "--as-it-stands", "--dates", "dmy"], 2, "--dates belongs to a proposal"),
            ([SAMPLES / "airborne.p01", "--dates", "dmy"], 2, "no meaning"),
            ([SAMPLES / "tracks.gpx", "--header-line", 2], 2, "--header-line has no meaning here"),
            (["s.csv", "--header-line", 2], 1, "it holds numbers"),
            (["s.csv", "--header-line", 90], 1, "not among the first"),
            (["s.csv", "--column", "D:type=float"], 1, "there is no column 'D'"),
            (["s.csv", "--column", "9:type=float"], 1, "there is no column 9; the file has 2"),
            (["s.csv", "--column", "A:width=3"], 1, "a width goes with the type text"),
            (["s.csv", "--column", "A:template=YYYY/MM/DD"], 1, "a template goes with"),
            (["prose.txt"], 1, "does not read as a table"),
            (["other.csv", "--template", "t.json"], 1, 'line 1 is "A,C", not "A,B"'),
            (["wide.csv", "--template", "t.json"], 1, "the rows have 3 columns, not 2"),
        ):
            with self.subTest(arguments=arguments):
                done = self.norva("import", *arguments, "-o", "n.nvt", status=status)
                self.assertIn(said, done.stderr)
                self.assertFalse((self.folder / "n.nvt").exists())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=1)
