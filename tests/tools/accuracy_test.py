"""The script behind docs/accuracy.md: it runs, and the document has its tables."""

import re
import subprocess
import sys
import unittest

from program import PROGRAM, ProgramTest, ROOT


class AccuracyTest(ProgramTest):
    def report(self, *arguments):
        done = subprocess.run([sys.executable, ROOT / "scripts" / "accuracy_report.py", PROGRAM, "--output", "-",
                               *arguments], capture_output=True, check=False, timeout=600)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return done.stdout.decode()

    @staticmethod
    def tables(text):
        """The rows of all tables as lists of cells, without the rules under the heads."""
        return [[cell.strip() for cell in line.strip("|").split("|")] for line in text.splitlines()
                if line.startswith("|") and not line.startswith("|---")]

    def test_a_part_of_the_readings(self):
        matched, rest = self.report("--every", "10").split("## One text for each line\n")
        rest, learnt = rest.split("## What is learnt of the reader\n")
        resolved, bare = rest.split("## Readings without scores\n")
        self.assertEqual([row[0] for row in self.tables(bare)],
                         ["kind", "serial", "date", "lot", "word", "name", "vin", "iban", "all"])
        by_kind, shipped = learnt.split("The ready set `ocr-learnt`")
        self.assertEqual(len(self.tables(by_kind)), 8)
        self.assertGreater(len(self.tables(shipped)), 3)
        tables = self.tables(matched)
        self.assertEqual([row[0] for row in tables], ["kind", "word", "name", "all"] +
                         2 * ["kind", "serial", "date", "lot", "vin", "iban", "all"])
        for row in tables:
            if row[0] == "kind":
                continue
            numbers = [int(number) for number in re.findall(r"\d+", " ".join(row[1:]))]
            for right, wrong in zip(numbers[2::2], numbers[3::2]):
                self.assertLessEqual(right + wrong, numbers[0])
            self.assertGreater(max(numbers[2::2]), 0)
        rows = self.tables(resolved)
        self.assertEqual([row[0] for row in rows],
                         ["kind", "serial", "date", "lot", "word", "name", "vin", "iban", "all", "per cent"])
        for kind, lines, *cells in rows[1:-1]:
            for cell in cells:  # Right, wrong, unsure and none are all the lines there are.
                self.assertEqual(sum(map(int, cell.split(" / "))), int(lines), kind)

    def test_the_document_has_the_same_tables(self):
        document = (ROOT / "docs" / "accuracy.md").read_text(encoding="utf-8")
        heads = [row for row in self.tables(document) if row[0] == "kind"]
        self.assertEqual(heads, [row for row in self.tables(self.report("--every", "50")) if row[0] == "kind"])

    def test_the_shipped_set_is_what_the_readings_teach(self):
        done = subprocess.run([sys.executable, ROOT / "scripts" / "learn_confusions.py", PROGRAM, "--output", "-"],
                              capture_output=True, check=False, timeout=600)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(done.stdout.decode(),
                         (ROOT / "tools" / "qoc" / "learnt_confusions.inc").read_text(encoding="utf-8"))


if __name__ == "__main__":
    unittest.main()
