#!/usr/bin/env python3
"""Runs the examples of the pages, in their order: test_docs.py NORVA SOURCE_FOLDER."""

import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

NORVA, SOURCE = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
PAGES = [SOURCE / "README.md", *sorted((SOURCE / "docs").glob("*.md"))]
FENCE = re.compile(r"^```(\w*)\n(.*?)^```", re.S | re.M)


class Docs(unittest.TestCase):
    def run_page(self, page, folder):
        """The number of examples that ran."""
        shutil.copytree(SOURCE / "samples", folder / "samples")
        for sample in (folder / "samples").iterdir():
            if sample.is_file():
                shutil.copy(sample, folder)
        (folder / "tracks").mkdir()
        environment = {**os.environ, "XDG_CONFIG_HOME": str(folder / "config")}
        count = 0
        for kind, block in FENCE.findall(page.read_text()):
            if kind == "json" and '"operation"' in block:
                (folder / "import.json").write_text(block)
            if kind == "python" and page.name != "python.md" and "import norva" not in block:
                (folder / "read.py").write_text(block)
                subprocess.run([sys.executable, "read.py", "survey.nvt"], cwd=folder, check=True, capture_output=True)
                count += 1
            if kind not in ("", "sh", "console"):
                continue
            for line in block.splitlines():
                command = line.removeprefix("$ ").partition("  #")[0]
                if not command.startswith("norva ") or "[" in command or command.endswith("\\"):
                    continue
                words = shlex.split(command)[1:]
                if words[0] in ("import", "export", "convert"):
                    words.append("--force")  # pages use a name more than once
                words = [str(p) for word in words for p in (sorted(folder.glob(word)) if "*" in word else [word])]
                done = subprocess.run([NORVA, *words], cwd=folder, env=environment, capture_output=True, text=True,
                                      stdin=subprocess.DEVNULL)
                self.assertEqual(done.returncode, 0, f"{page.name}: {command}\n{done.stdout}{done.stderr}")
                count += 1
        return count

    def test_examples_do_what_they_say(self):
        counts = {}
        for page in PAGES:
            with self.subTest(page=page.name), tempfile.TemporaryDirectory() as folder:
                folder = Path(folder)
                subprocess.run([NORVA, "import", SOURCE / "samples/survey.xyz", "-o", folder / "survey.nvt", "--quiet"],
                               check=True)
                counts[page.name] = self.run_page(page, folder)
        self.assertGreater(counts["formats.md"], 10)
        self.assertGreater(counts["README.md"], 3)
        self.assertGreater(counts["store-format.md"], 0)
        for page in ("import-report.md", "templates.md", "automation.md"):
            self.assertGreater(counts[page], 0, page)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
