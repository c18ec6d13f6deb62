#!/usr/bin/env python3
"""Drives the program norva as a person would: test_cli.py NORVA SAMPLES."""

import csv
import hashlib
import json
import os
import re
import signal
import struct
import subprocess
import sys
import time
import unittest
from pathlib import Path

from case import CSV, NORVA, SAMPLES, XYZ, Case


class Import(Case):
    def test_columns_are_named_typed_and_counted(self):
        self.import_xyz("--column", "Mag:type=double,name=Field,units=nanotesla", "--column", "9:type=skip",
                        "--column", "Date:type=date,template=YYYY/MM/DD", "--column", "Remark:type=text,width=4")
        info = json.loads(self.norva("info", "s.nvt", "--json").stdout)
        self.assertEqual([line["name"] for line in info["lines"]], ["1000", "1010", "1020", "1030", "1040"])
        self.assertEqual(sum(line["locations"] for line in info["lines"]), 296)
        channels = {channel["name"]: channel for channel in info["channels"]}
        self.assertEqual(list(channels), ["X", "Y", "Lat", "Lon", "Date", "Time", "Field", "Alt", "Remark"])
        self.assertEqual((channels["Field"]["units"], channels["Field"]["data_type"]), ("nanotesla", 1))
        self.assertEqual((channels["Date"]["display_format"], channels["Date"]["template"]), (3, 0))
        self.assertEqual(channels["Remark"]["array_size"], 4)

    def test_csv_with_a_label_column_gives_the_same_values(self):
        self.import_xyz()
        self.norva("import", CSV, "-o", "c.nvt", "--as-it-stands", "--header-line", 1, "--label-column", "Line",
                   "--quiet")
        lines = json.loads(self.norva("info", "c.nvt", "--json").stdout)["lines"]
        self.assertEqual([line["name"] for line in lines], ["L1000", "L1010", "L1020", "L1030", "L1040"])
        for name in ("X", "Lat", "Time", "Mag", "Remark"):
            values = [[row["values"] for row in self.json_lines("show", store, "--json", "--channel", name)]
                      for store in ("s.nvt", "c.nvt")]
            self.assertEqual(values[0], values[1], name)

    def test_header_delimiters(self):
        (self.folder / "t.txt").write_text("/East m\tNorth m\tMag (nT)\n1 2 3\n")
        self.norva("import", "t.txt", "--as-it-stands", "--header-line", 1, "--delimiters", "\\t", "--quiet")
        channels = json.loads(self.norva("info", "t.nvt", "--json").stdout)["channels"]
        self.assertEqual([(channel["name"], channel["units"]) for channel in channels],
                         [("East m", ""), ("North m", ""), ("Mag", "nT")])

    def test_refusals_name_what_and_why_and_leave_nothing(self):
        for name, content in (("empty.xyz", ""), ("dump.gz", b"\x1f\x8b\x08\0"), ("book.docx", b"PK\3\4\0"),
                              ("book.xls", b"\xd0\xcf\x11\xe0\0"), ("twice.xyz", "/ A B B\n1 2 3\n"),
                              ("late.xyz", "/ by hand\n/ A B C\n/\nTie 19010\n1 2 3\n4 5 6\n")):
            self.write(name, content)
        (self.folder / "folder").mkdir()
        (self.folder / "old.nvt").write_text("old")
        (self.folder / "utf16.csv").write_bytes("Line,X\r\nL1,2\r\n".encode("utf-16"))
        cases = [
            (["missing.xyz", "-o", "n.nvt"], 1, "missing.xyz"),
            (["empty.xyz", "-o", "n.nvt"], 1, "empty"),
            ([str(self.folder), "-o", "n.nvt"], 2, "put {stem}"),
            ([XYZ, "-o", "old.nvt"], 1, "--force"),
            ([XYZ, "-o", "folder"], 1, "is a folder"),
            ([XYZ, "-o", "old"], 1, "old.nvt"),  # what a name without a dot comes to
            ([XYZ, "-o", "no/such/folder/n.nvt"], 1, "No such file"),
            ([XYZ, "-o", "n.nvt", "--column", "Depth:type=double"], 1, "Depth"),
            ([XYZ, "-o", "n.nvt", "--format", "No Such"], 1, "No Such"),
            ([XYZ, "-o", "n.nvt", "--header-line", "1"], 1, "--header-line 1"),
            (["late.xyz", "-o", "n.nvt", "--header-line", "2"], 1,
             '(try --skip 4): Line 2 has 3 names, the data 2 columns; the first row is "Tie 19010"'),
            ([XYZ, "-o", "n.nvt", "--header-line", "90"], 1, "There is no text in line 90, or it is not among the first 40"),
            (["late.xyz", "-o", "n.nvt", "--skip", "100"], 1, "--skip 100: 100 lines cannot be skipped"),
            ([XYZ, "-o", "n.nvt", "--header-line", "2", "--column", "Time:template=YYYY/MM/DD"], 1, "YYYY/MM/DD"),
            ([XYZ, "-o", "n.nvt", "--column", "Mag:template=1"], 1, "Mag"),
            (["twice.xyz", "-o", "n.nvt", "--header-line", "1", "--column", "B:type=skip"], 1,
             "there are 2 columns 'B'; give the number, counted from 1: 2, 3"),
            (["dump.gz", "-o", "n.nvt"], 1, "dump.gz: is cut short"),
            (["book.xls", "-o", "n.nvt"], 1, "save it as CSV"),
            (["book.docx", "-o", "n.nvt"], 1, "a damaged ZIP archive"),
            ([XYZ, "-o", "n.nvt", "--lines", "1"], 2, '--lines has no meaning for the format "ASCII XYZ"'),
            ([XYZ, "-o", "n.nvt", "--record", "A:double"], 2, "--record has no meaning"),
            ([XYZ, "-o", "n.nvt", "--columns", "X"], 2, "--columns has no meaning"),
            ([XYZ, "-o", "n.nvt", "--no-sort"], 2, "--sort has no meaning"),
            ([SAMPLES / "airborne.p01", "-o", "n.nvt", "--skip", "1"], 2, "--skip has no meaning"),
            ([SAMPLES / "survey.gbn", "-o", "n.nvt", "--label-column", "1"], 2, "--label-column has no meaning"),
            ([SAMPLES / "survey.gbn", "-o", "n.nvt", "--lines", "nine"], 1, "there is no line 'nine'"),
            ([SAMPLES / "survey.gbn", "-o", "n.nvt", "--column", "X:type=date"], 1, "cannot be made 'date'"),
            ([SAMPLES / "cg3.dmp", "-o", "n.nvt", "--columns", "GRAV.,GRAV."], 1, "'GRAV.' is named twice"),
            (["utf16.csv", "-o", "n.nvt", "--as-it-stands"], 1, "UTF-16"),
            ([XYZ, "-o", "n.nvt", "--column", "Mag:type=integer"], 2, "integer"),
            ([XYZ, "--nonsense"], 2, "nonsense"),
            ([SAMPLES / "base.bin", "-o", "n.nvt"], 2, "--record"),
            ([SAMPLES / "base.bin", "-o", "n.nvt", "--record", "A:double,B:double,C:double,D:int16"], 1,
             "8400 bytes are no whole number of records of 26 bytes (323 records and 2 bytes more)"),
        ]
        before = sorted(self.folder.iterdir())
        for arguments, status, part in cases:
            with self.subTest(arguments=arguments):
                road = ["--as-it-stands"] if ".xyz" in str(arguments[0]) else []
                done = self.norva("import", *arguments, *road, status=status)
                self.assertIn(part, done.stderr)
                self.assertNotRegex(done.stderr, r"\b[4-5]\d{3}\b|/tmp/norva-")  # no control's number, no scratch file
                self.assertEqual(sorted(self.folder.iterdir()), before)
        self.assertEqual((self.folder / "old.nvt").read_text(), "old")

    def test_mistyped_words_are_answered_with_the_nearest(self):
        for words, said in (("imprt a", "there is no command 'imprt'; did you mean import?"),
                            ("import a --skp 1", "import has no option '--skp'; did you mean --skip?"),
                            ("export a b --channel X", "did you mean --channels?"),
                            ("convert a b --strickt", "did you mean --strict?"),
                            ("zzzzzz", "there is no command 'zzzzzz'\n")):
            self.assertIn(said, self.norva(*words.split(), status=2).stderr)

    def test_formats_go_by_short_names(self):
        self.write("t.txt", "A,B\n1,2 x\n")
        for name, label in (("csv", "ASCII CSV"), ("xyz", "ASCII XYZ"), ("ascii gem", "ASCII GEM"), ("CG5", "Scintrex CG5"),
                            ("2", "ASCII CSV"), ("ipr12", "Scintrex IPR_12"), ("seaspy", "SeaSPY"), ("tarko", "Tarko"),
                            ("ascii", ""), ("vsc", "")):
            done = self.norva("info", "t.txt", "--format", name, "--json", status=None)
            if not label:
                self.assertIn(f"there is no format '{name}'", done.stderr)
            elif done.returncode == 0:
                self.assertIn(label, done.stdout)
            else:
                self.assertNotIn("there is no format", done.stderr)

    def test_flags_that_are_not_given_leave_the_defaults(self):
        def times(*options):
            self.norva("import", "unsorted.dmp", "-o", "n.nvt", "--force", "--quiet", "--columns", "GRAV.,TIME", *options)
            return [row["values"][1] for row in self.json_lines("show", "n.nvt", "--json", "--line", "0")]
        rows = (SAMPLES / "cg3.dmp").read_text().splitlines(keepends=True)
        first = next(i for i, row in enumerate(rows) if re.search(r"\d\d:\d\d:\d\d\s*$", row))
        step = 2 if rows[first + 1].startswith("A:") else 1
        rows[first], rows[first + step] = rows[first + step], rows[first]
        self.write("unsorted.dmp", "".join(rows))
        self.assertEqual(times(), sorted(times()))
        self.assertEqual(times("--sort"), times())
        self.assertNotEqual(times("--no-sort"), times())
        record = ["--record", "Seconds:double,Mag:float,Quality:int16"]
        for options, count in (([], 4), (["--no-fiducial"], 3)):
            self.norva("import", SAMPLES / "base.bin", "-o", "b.nvt", "--force", "--quiet", *record, *options)
            self.assertEqual(len(self.info("b.nvt")["channels"]), count)
        self.import_xyz()
        for options, unit in (([], True), (["--units"], True), (["--no-units"], False)):
            self.norva("export", "s.nvt", "o.xyz", "--force", "--quiet", *options)
            self.assertEqual("nT" in (self.folder / "o.xyz").read_text().partition("\n")[0], unit, options)

    def test_samples_are_described_imported_and_verified(self):
        record = ["--record", "Seconds:double:s,Mag:float>double:nT,Quality:int16"]
        dump = ["--columns", "GRAV.,10", "--date-format", "YY/MM/DD", "--time-format", "HH:MM:SS", "--no-sort"]
        for name, count, options, lines, channels in (
                ("cg3.dmp", ("readings", 32), dump, ["100.", "150."], ["Grav.", "Time", "Date"]),
                ("ipr12.dmp", ("readings", 48), ["--column", "1:name=Line"], ["100N", "150N"], ["Line", "R1Y"]),
                ("seaspy.mag", ("records", 48), ["--format", "seaspy(marine magnetics)"], ["LINE 1"], ["Date", "Time"]),
                ("tracks.gpx", ("points", 40), [], ["Waypoints", "North_loop", "Ridge", "Back"], ["Line", "Latitude"]),
                ("survey.gbn", ("locations", 132), ["--lines", "3:2020", "--channels", "X", "--column", "X:name=East",
                                                    "--no-fiducial"], ["3:2020"], ["East"]),
                ("airborne.p01", ("records", 20), [], ["L2010", "T9010"], ["line", "seconds", "x"]),
                ("base.bin", ("records", 600), [*record, "--points-per-line", 400, "--frequency", 10],
                 ["LINE1", "LINE2"], ["Fid", "Seconds", "Mag", "Quality"])):
            with self.subTest(name=name):
                layout = record if name == "base.bin" else []
                said = json.loads(self.norva("info", SAMPLES / name, *layout, "--json").stdout)
                self.assertEqual(said[count[0]], count[1])
                done = self.norva("import", SAMPLES / name, "-o", f"{name}.nvt", "--report", f"{name}.json", *options)
                self.norva("verify", f"{name}.nvt", f"{name}.json")
                self.assertTrue(json.loads((self.folder / f"{name}.json").read_text())["read"]["accounted"])
                self.assertEqual("interpolated coordinates are left out" in done.stdout, name == "seaspy.mag")
                store = json.loads(self.norva("info", f"{name}.nvt", "--json").stdout)
                self.assertEqual([line["name"] for line in store["lines"]], lines)
                self.assertEqual([channel["name"] for channel in store["channels"]][:len(channels)], channels)
        self.assertEqual(store["lines"][1]["locations"], 200)

    def test_interrupt_leaves_nothing(self):
        with open(self.folder / "big.xyz", "w") as out:
            for i in range(600_000):
                out.write(f"{i} {i * 0.5} {i * 0.25} {i % 97} 1.25 2.5\n")
        self.norva("import", "big.xyz", "-o", "big.nvt", "--quiet")
        before = sorted(path.name for path in self.folder.iterdir())
        for arguments in (["import", "big.xyz", "-o", "new.nvt"], ["export", "big.nvt", "new.xyz"]):
            process = subprocess.Popen([NORVA, *arguments], cwd=self.folder, stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
            while process.poll() is None and len(list(self.folder.iterdir())) == len(before):
                time.sleep(0.001)  # until the file that becomes the output is there
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(60), 130, arguments)
            self.assertEqual(sorted(path.name for path in self.folder.iterdir()), before, arguments)


class Reports(Case):
    def test_a_changed_byte_of_source_or_store_is_found(self):
        (self.folder / "s.xyz").write_bytes(XYZ.read_bytes())
        self.norva("import", "s.xyz", "--as-it-stands", "--header-line", 2, "--report", "r.json")
        report = json.loads((self.folder / "r.json").read_text())
        self.assertTrue(report["read"]["accounted"])
        self.assertEqual(report["source"]["sha256"], hashlib.sha256(XYZ.read_bytes()).hexdigest())
        self.norva("verify", "s.nvt", "r.json")
        source, store = XYZ.read_bytes(), (self.folder / "s.nvt").read_bytes()
        value = store.find(struct.pack("<f", 54209.88))
        for name, changed, where in (
            ("s.xyz", source.replace(b"54209.88", b"54209.98"), "line 1000, location 0, Mag"),
            ("s.xyz", source.replace(b"sample data", b"Sample data"), "SHA-256"),
            ("s.xyz", source[:-1], "bytes, the report says"),
            ("s.nvt", store[:value] + bytes([store[value] ^ 1]) + store[value + 1:], "line 1000, location 0, Mag"),
        ):
            (self.folder / "s.xyz").write_bytes(source)
            (self.folder / "s.nvt").write_bytes(store)
            (self.folder / name).write_bytes(changed)
            self.assertIn(where, self.norva("verify", "s.nvt", "r.json", status=5).stderr)

    def test_strict_tells_a_loss_by_its_status_and_place(self):
        for rows, status, said in (("1 2\n3 4\n", 0, ""), ("1 2\n3\n", 4, "line 2, column 1: '3'"),
                                   ("1 2\n3 4x\n", 4, "line 2, column 3: '4x'"), ("1 2\n3 *\n", 0, "")):
            (self.folder / "s.xyz").write_text(rows)
            done = self.norva("import", "s.xyz", "--force", "--strict", "--report", "r.html", "--as-it-stands", "--column",
                              "2:type=float", status=status)
            self.assertIn(said, done.stderr)
            page = (self.folder / "r.html").read_text()
            self.assertEqual("Nothing was lost" in page, status == 0, rows)
        self.norva("import", "s.xyz", "--force", "--report", "r.txt", status=2)


class Completion(unittest.TestCase):
    def test_bash_is_offered_commands_options_and_choices(self):
        script = SAMPLES.parent / "packaging" / "norva.bash"
        for words, offered in (("im", "import"), ("import --rep", "--report"), ("template s", "show"),
                               ("import --interpolated y", "yes"), ("import --nothing", "")):
            ask = f"""source {script}; COMP_WORDS=(norva {words}); COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1))
                _norva; echo "${{COMPREPLY[*]}}" """
            path = f"{Path(NORVA).parent}:{os.environ['PATH']}"
            done = subprocess.run(["bash", "-c", ask], capture_output=True, text=True, env={**os.environ, "PATH": path})
            self.assertEqual((done.stdout.strip(), done.stderr), (offered, ""), words)


class Templates(Case):
    def test_the_choices_made_once_give_the_same_store_again(self):
        for source, options in (
            (CSV, ("--as-it-stands", "--header-line", 1, "--label-column", "Line", "--column", "Mag:type=double,units=pT,name=Field")),
            (CSV, ("--column", "Mag:type=float,units=pT,name=Field", "--dates", "mdy", "--marker", "STAGE")),
            (XYZ, ("--as-it-stands", "--header-line", 2, "--column", "Date:type=date,template=YYYY/MM/DD", "--column", "Time:type=skip",
                   "--column", "Remark:type=text,width=9")),
            (SAMPLES / "seaspy.mag", ("--interpolated", "no", "--column", "3:type=double,units=nT")),
        ):
            self.norva("import", source, "-o", "a.nvt", "--force", "--save-template", "t.json", *options)
            again = ("--interpolated", "no") if "--interpolated" in options else ()
            self.norva("import", source, "-o", "b.nvt", "--force", "--template", "t.json", *again)
            self.assertEqual((self.folder / "a.nvt").read_bytes(), (self.folder / "b.nvt").read_bytes(), source)

    def test_a_file_that_does_not_fit_is_refused_with_what_differs(self):
        self.norva("import", CSV, "-o", "a.nvt", "--as-it-stands", "--header-line", 1, "--save-template", "t.json")
        rows = [line.split(",") for line in CSV.read_text().splitlines()]
        for change, text in (
            (lambda: [row[:6] for row in rows], "the rows have 6 columns, not 11"),
            (lambda: [[cell.replace("Mag", "Grad") for cell in row] for row in rows], "Grad:nT"),
            (lambda: [row if i != 3 else [*row[:7], "n/a", *row[8:]] for i, row in enumerate(rows)],
             'row 3, column 8 "Mag" holds "n/a", which is no float'),
            (lambda: [[cell.replace("2024/06/14", "14/06/2024") for cell in row] for row in rows], "no date like"),
            (lambda: [["/a"]] * 3 + rows, "1 line cannot be skipped: 3 to"),
        ):
            (self.folder / "bad.csv").write_text("".join(",".join(row) + "\n" for row in change()))
            said = self.norva("import", "bad.csv", "--template", "t.json", status=1).stderr
            self.assertIn(text, said)
            self.assertFalse((self.folder / "bad.nvt").exists(), text)
        for text, why in (("{", "parse error"), ("{}", "does not say so"), ('{"norva": "column template", "version": 1}', "skip"),
                          ('{"norva":"column template","version":1,"skip":0,"columns":[{"type":"x"}]}', 'no type "x"')):
            (self.folder / "t.json").write_text(text)
            self.assertIn(why, self.norva("import", CSV, "-o", "n.nvt", "--template", "t.json", status=1).stderr)

    def test_own_templates_are_known_by_name(self):
        os.environ["XDG_CONFIG_HOME"] = str(self.folder / "config")
        self.norva("import", CSV, "-o", "a.nvt", "--save-template", "towed")
        self.norva("import", CSV, "-o", "b.nvt", "--save-template", "towed", status=1)
        self.assertEqual(self.norva("template", "list").stdout, "towed\n")
        self.assertIn("yours are: towed",
                      self.norva("import", CSV, "-o", "b.nvt", "--template", "flown", status=1).stderr)
        self.norva("template", "remove", "towed")
        self.norva("template", "show", "towed", status=1)


class Export(Case):
    def test_selection_order_and_options(self):
        self.import_xyz()
        self.norva("export", "s.nvt", "out.xyz", "--lines", "1020,1000", "--channels", "Mag,X", "--no-units",
                   "--label-as-channel", "--point-id")
        rows = (self.folder / "out.xyz").read_bytes().decode().split("\r\n")
        self.assertEqual(rows[0].split(), ["/", "LINE", "POINT_ID", "Mag", "X"])
        self.assertEqual(rows[1].split()[:2], ["1020", "1_1"])
        self.assertEqual(len(rows), 1 + 56 + 60 + 1)

    def test_a_name_that_occurs_twice_means_all_of_them_or_asks(self):
        self.write("t.xyz", "/ X B B\nLINE 7\n1 2 3\nLINE 8\n4 5 6\nLINE 7\n7 8 9\n")
        self.norva("import", "t.xyz", "-o", "t.nvt", "--as-it-stands", "--header-line", 1, "--quiet")
        shown = self.json_lines("show", "t.nvt", "--json", "--line", "7", "--channel", "B")
        self.assertEqual([(row["line"], row["values"]) for row in shown], [(0, [2, 3]), (2, [8, 9])])
        self.norva("export", "t.nvt", "o.xyz", "--lines", "7", "--channels", "B", "--quiet")
        rows = [line.split() for line in (self.folder / "o.xyz").read_text().splitlines()]
        self.assertEqual([[float(v) for v in row] for row in rows if row[0][0].isdigit()], [[2, 3], [8, 9]])
        self.assertIn("there are 2 lines '7'; give the number, counted from 0: 0, 2",
                      self.norva("mark", "t.nvt", "--line", "7", "--flag", "1", status=1).stderr)
        self.norva("mark", "t.nvt", "--line", "2", "--flag", "1")
        self.assertEqual([line["flag"] for line in self.info("t.nvt")["lines"]], [0, 0, 1])

    def test_refusals(self):
        self.import_xyz()
        original = (self.folder / "s.nvt").read_bytes()
        (self.folder / "old.xyz").write_text("old")
        (self.folder / "full.xyz").symlink_to("/dev/full")
        cases = [
            (["s.nvt", "old.xyz"], 1, "--force"),
            (["s.nvt", "out.prn"], 1, "prn"),
            (["s.nvt", "out.xyz", "--lines", "77"], 1, "77"),
            (["missing.nvt", "out.xyz"], 1, "missing.nvt"),
            (["old.xyz", "out.xyz"], 1, "old.xyz"),
            (["s.nvt", "full.xyz", "--force"], 1, "No space left"),
        ]
        for arguments, status, part in cases:
            with self.subTest(arguments=arguments):
                self.assertIn(part, self.norva("export", *arguments, status=status).stderr)
        os.link(self.folder / "s.nvt", self.folder / "same.xyz")
        self.norva("export", "s.nvt", "same.xyz", "--force", status=1)
        self.assertEqual((self.folder / "s.nvt").read_bytes(), original)
        self.assertEqual((self.folder / "old.xyz").read_text(), "old")

    def test_convert_fills_a_folder_and_goes_on_after_a_bad_file(self):
        (self.folder / "bad.xyz").touch()
        done = self.norva("convert", XYZ, "bad.xyz", CSV, "out", "--to", "txt", "--force", status=1)
        self.assertIn("1 of 3", done.stdout)
        for part in ("bad.xyz: the file is empty", "another file became out/survey.txt"):
            self.assertIn(part, done.stderr)
        self.norva("convert", XYZ, "alone.txt")
        self.assertEqual((self.folder / "out" / "survey.txt").read_bytes(), (self.folder / "alone.txt").read_bytes())
        self.norva("convert", SAMPLES / "tracks.gpx", "one", "--to", "xyz")
        self.assertEqual([path.name for path in (self.folder / "one").iterdir()], ["tracks.xyz"])
        self.norva("convert", XYZ, CSV, "bad.xyz", status=2)


class Store(Case):
    def test_marks_hide_rows_from_exports_and_can_be_taken_back(self):
        self.import_xyz()
        self.norva("mark", "s.nvt", "--line", "1000", "--rows", "0,3-5", "--delete")
        self.norva("mark", "s.nvt", "--line", "1", "--flag", "1")
        lines = json.loads(self.norva("info", "s.nvt", "--json").stdout)["lines"]
        self.assertEqual([(line["deleted"], line["flag"]) for line in lines[:2]], [(4, 0), (0, 1)])
        deleted = [row["location"] for row in self.json_lines("show", "s.nvt", "--json", "--line", "1000")
                   if row["deleted"]]
        self.assertEqual(deleted, [0, 3, 4, 5])
        self.norva("export", "s.nvt", "out.xyz")
        text = (self.folder / "out.xyz").read_text()
        self.assertEqual(text.count("\n"), 1 + 4 + 296 - 4 - 60)
        self.norva("mark", "s.nvt", "--line", "1000", "--rows", "3-5", "--restore")
        lines = json.loads(self.norva("info", "s.nvt", "--json").stdout)["lines"]
        self.assertEqual(lines[0]["deleted"], 1)
        self.norva("mark", "s.nvt", "--line", "1000", "--rows", "60", "--delete", status=1)

    def test_no_data_is_null(self):
        self.import_xyz()
        values = [row["values"][0] for row in self.json_lines("show", "s.nvt", "--json", "--channel", "Mag")]
        missing = sum(1 for line in XYZ.read_text().splitlines() if line.split()[6:7] == ["*"])
        self.assertEqual(values.count(None), missing)
        self.assertEqual(values[0], 54209.88)


class Manual(Case):
    def test_names_every_command_and_option(self):
        manual = self.norva("--manual").stdout.replace("\\-", "-")
        commands = re.findall(r"^  ([a-z]+) ", self.norva("--help").stdout.partition("Subcommands:")[2], re.M)
        self.assertGreater(len(commands), 10)
        for command in commands:
            section = manual.partition(f".SS norva {command}\n")[2].partition(".SS")[0]
            for option in re.findall(r"^ +(?:-\w,)?(--[a-z-]+)", self.norva(command, "--help").stdout, re.M):
                self.assertIn(option, section, command)


class Play(Case):
    SCRIPT = {
        "operation": "import",
        "answers": [
            {"dialog": 4063, "do": [{"select": "Formats", "row": 0}, {"click": 1}]},
            {"open": "{input}"},
            {"save": "out.nvt"},
            {"dialog": 4003, "do": [{"click": 1}]},
        ],
    }

    def play(self, script, *arguments, status):
        (self.folder / "script.json").write_text(script if isinstance(script, str) else json.dumps(script))
        return self.norva("play", "script.json", *arguments, status=status)

    def test_exit_statuses(self):
        setting = ["--set", f"input={XYZ}"]
        cancelled = {"operation": "import", "answers": [{"dialog": 4063, "do": [{"click": 2}]}]}
        mismatch = {"operation": "import", "answers": [{"message": "Hello", "answer": "ok"}]}
        left_over = dict(self.SCRIPT, answers=self.SCRIPT["answers"] + [{"message": "Hello", "answer": "ok"}])
        self.play(self.SCRIPT, *setting, "--trace", "t.jsonl", status=0)
        trace = [json.loads(line) for line in (self.folder / "t.jsonl").read_text().splitlines()]
        self.assertEqual(trace[-1], {"event": "result", "value": 1, "store": str(self.folder.resolve() / "out.nvt")})
        self.play(cancelled, status=1)
        self.play("{", status=2)
        self.play({"operation": "fly"}, status=2)
        self.play({"operation": "export", "store": "none.nvt"}, status=2)
        self.assertIn("Import Formats", self.play(mismatch, status=3).stderr)
        self.assertIn("Hello", self.play(left_over, *setting, status=3).stderr)
        self.play({"operation": "import", "answers": []}, "--defaults", status=1)



class Statistics(Case):
    def setUp(self):
        super().setUp()
        rows = ["Line,X [m],Y [m],Time,Mag [nT],Note"]
        for n in range(20):
            still, back = n == 7, n == 9
            rows.append(f"L{n // 12},{500 + n - still},{900 + 2 * (n - still)},12:00:{n - 2 * back:02},"
                        f"{'' if n == 3 else 54000.1 + n},{'a;b' if n % 2 else ''}")
        self.write("s.csv", "\n".join(rows) + "\n")
        self.norva("import", "s.csv", "--quiet")
        self.norva("mark", "s.nvt", "--line", "L1", "--rows", "7", "--delete")

    def test_stats(self):
        rows = {(row["line"], row["channel"]): row for row in json.loads(self.norva("stats", "s.nvt", "--json").stdout)}
        self.assertEqual(len(rows), 12)
        mag = rows["L0", "Mag"]
        values = [54000.1 + n for n in range(12) if n != 3]
        mean = sum(values) / 11
        self.assertEqual((mag["values"], mag["no_data"], mag["minimum"], mag["maximum"]), (11, 1, 54000.1, 54011.1))
        self.assertAlmostEqual(mag["mean"], mean, 2)
        self.assertAlmostEqual(mag["deviation"], (sum((value - mean) ** 2 for value in values) / 11) ** 0.5, 2)
        self.assertEqual((rows["L1", "Mag"]["deleted"], rows["L1", "Mag"]["maximum"]), (1, 54018.1))
        self.assertEqual([rows["L0", name]["duplicates"] for name in ("X", "Y", "Time", "Mag")], [1, 1, 0, None])
        self.assertEqual([rows[line, "Time"]["reversals"] for line in ("L0", "L1")], [1, 0])
        self.assertEqual((rows["L0", "Note"]["no_data"], rows["L0", "Note"]["mean"]), (6, None))
        named = json.loads(self.norva("stats", "s.nvt", "--json", "--x", "X", "--y", "Mag").stdout)
        self.assertEqual([row["duplicates"] for row in named if row["channel"] == "Y"], [None, None])
        table = self.norva("stats", "s.nvt").stdout.splitlines()
        self.assertEqual(len(table), 13)
        self.assertEqual(table[0].split()[:4], ["line", "channel", "values", "no"])
        self.assertIn("go together", self.norva("stats", "s.nvt", "--x", "X", status=2).stderr)

    def test_show_as_csv(self):
        shown = self.norva("show", "s.nvt", "--csv", "--line", "L1", "--channel", "Mag", "--channel", "Note").stdout
        rows = list(csv.reader(shown.splitlines()))
        self.assertEqual(rows[0], ["Line", "Location", "Deleted", "Mag [nT]", "Note"])
        self.assertEqual(rows[2], ["L1", "1", "0", "54013.1", "a;b"])
        self.assertEqual([row[2] for row in rows[1:]], ["0"] * 7 + ["1"])
        self.assertEqual(rows[1][4], "")
        self.assertIn("exclude", self.norva("show", "s.nvt", "--csv", "--json", status=2).stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=1)
