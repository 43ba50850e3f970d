#!/usr/bin/env python3
"""Counts how many of the shipped readings of a real OCR engine come out right with the dictionaries of examples/.

    scripts/accuracy_report.py PROGRAM [--output FILE] [--every N]

A reading is right when the text of its best result is what stood on the picture, to the character. Every number is
computed from this run's output of the program; --every takes only each N-th reading of a kind, to be quick.
"""

import argparse
import json
import pathlib
import subprocess
import sys
import tempfile

import accuracy_resolved
import learn_confusions

ROOT = pathlib.Path(__file__).resolve().parent.parent
READINGS = ROOT / "tests" / "data" / "readings.ndjson"
EXAMPLES = ROOT / "examples"
LISTS = {"word": "words.json", "name": "products.json"}
LINES = {"serial": "serials.json", "date": "dates.json", "lot": "lots.json", "vin": "vins.json", "iban": "ibans.json"}
NO_SWAPS, DIGITS, DIGITS_LIGATURES = [], ["ocr-digits-letters"], ["ocr-digits-letters", "ocr-ligatures"]


class Column:
    """A way to run the program: a command with its edits, and the parts of an example dictionary that it gets."""

    def __init__(self, title, command, section, swap_sets, edits=None):
        self.title, self.command, self.section, self.swap_sets, self.edits = title, command, section, swap_sets, edits

    def dictionary(self, example):
        """What the program is given of an example; None where the example lacks the section."""
        content = json.loads((EXAMPLES / example).read_text(encoding="utf-8"))
        if self.section not in content:
            return None
        for entry in content.get("lexicons", ()):
            if "file" in entry:
                entry["file"] = str((EXAMPLES / entry["file"]).resolve())
        return {self.section: content[self.section], "swaps": {"sets": self.swap_sets}}

    def arguments(self):
        return [self.command, "--json"] + ([] if self.edits is None else ["--max-edits", str(self.edits)])


def run_columns(section, **swap_choices):
    """Columns for `run`, without and with an edit for each choice of ready sets."""
    return [Column(f"{title.replace('_', ' ')}, {edits} edit{'' if edits == 1 else 's'}", "run", section, swap_sets,
                   edits)
            for title, swap_sets in swap_choices.items() for edits in (0, 1)]


LIST_COLUMNS = run_columns("lexicons", no_swaps=NO_SWAPS, digits_and_letters=DIGITS, ligatures_too=DIGITS_LIGATURES)
LINE_COLUMNS = (run_columns("fieldings", no_swaps=NO_SWAPS, digits_and_letters=DIGITS) +
                [Column("`fit`, no swaps", "fit", "fieldings", NO_SWAPS),
                 Column("`fit`, digits and letters", "fit", "fieldings", DIGITS)])
EXPRESSION_COLUMNS = run_columns("regularExpressions", no_swaps=NO_SWAPS, digits_and_letters=DIGITS)


def run(program, directory, column, example, readings):
    """Runs the program on readings; gives its object for each, in order, or None where there is nothing to run."""
    content = column.dictionary(example)
    if content is None:
        return None
    dictionary = directory / "dictionary.json"
    dictionary.write_text(json.dumps(content), encoding="utf-8")
    lines = "".join(json.dumps(reading, ensure_ascii=False) + "\n" for reading in readings)
    done = subprocess.run([program, *column.arguments(), "--dictionary", dictionary, "-"], input=lines.encode(),
                          stdout=subprocess.PIPE, check=False)
    if done.returncode not in (0, 1):
        sys.exit(f"{program} ended with {done.returncode}")
    answers = [json.loads(line) for line in done.stdout.decode().splitlines()]
    if [answer["id"] for answer in answers] != [reading["id"] for reading in readings]:
        sys.exit(f"{program} did not answer every reading in order")
    return answers


def count(answers, readings):
    """How many lines are right, and how many have a text that is wrong, as a cell of the table."""
    if answers is None:
        return "", 0, 0
    texts = [answer["results"][0]["text"] if answer["results"] else None for answer in answers]
    right = sum(text == reading["truth"] for text, reading in zip(texts, readings))
    wrong = sum(text is not None and text != reading["truth"] for text, reading in zip(texts, readings))
    return f"{right} ({wrong})", right, wrong


def table(program, directory, everything, every, kinds, columns):
    """A Markdown table with a row for each kind and one for all of them."""
    lines = ["| kind | lines | as read | " + " | ".join(column.title for column in columns) + " |",
             "|" + "---|" * (len(columns) + 3)]
    sums = [0] * (2 + 2 * len(columns))
    for kind, example in kinds.items():
        readings = [reading for reading in everything if reading["kind"] == kind][::every]
        before = sum(reading["text"] == reading["truth"] for reading in readings)
        cells, row_sums = [], [len(readings), before]
        for column in columns:
            cell, right, wrong = count(run(program, directory, column, example, readings), readings)
            cells.append(cell)
            row_sums += [right, wrong]
        lines.append(f"| {kind} | {len(readings)} | {before} | " + " | ".join(cells) + " |")
        sums = [a + b for a, b in zip(sums, row_sums)]
    lines.append(f"| all | {sums[0]} | {sums[1]} | " +
                 " | ".join(f"{right} ({wrong})" for right, wrong in zip(sums[2::2], sums[3::2])) + " |")
    return "\n".join(lines)


def report(program, every, writes_picture=False):
    with open(READINGS, encoding="utf-8") as file:
        everything = [json.loads(line) for line in file]
    note = "" if every == 1 else f"\nOf each kind only every {every}. reading was taken.\n"
    with tempfile.TemporaryDirectory() as name:
        directory = pathlib.Path(name)
        lists = table(program, directory, everything, every, LISTS, LIST_COLUMNS)
        lines = table(program, directory, everything, every, LINES, LINE_COLUMNS)
        sections = [("Word lists", lists), ("Lines of a fixed shape", lines)]
        if all("regularExpressions" in (EXAMPLES / example).read_text(encoding="utf-8") for example in LINES.values()):
            sections.append(("Regular expressions",
                             table(program, directory, everything, every, LINES, EXPRESSION_COLUMNS)))
        resolved, _ = accuracy_resolved.section(program, directory, everything, every, writes_picture)
        sections.append(("One text for each line", resolved))
        sections.append(("Readings without scores",
                         accuracy_resolved.bare_section(program, directory, everything, every)))
        learnt = accuracy_resolved.learnt_section(program, directory, everything, every)
        sections.append(("What is learnt of the reader", learnt))
    return f"""# How many lines come out right

`tests/data/readings.ndjson` holds {len(everything)} lines that a real OCR engine read, with its candidates for every
character and what stood on the picture. Here they are run with the dictionaries of `examples/`. A line is right when it
is what stood there, to the character. Each cell says how many lines are right and, in brackets, how many have a text
that is wrong; the others have no result, or one in which a character stays open.

`scripts/accuracy` writes this file anew.
{note}
""" + "\n\n".join(f"## {title}\n\n{text}" for title, text in sections) + """

As read means the engine's first candidates. "Digits and letters" stands for the ready set of swaps
`ocr-digits-letters`, "ligatures" for `ocr-ligatures`. The columns with edits are those of `qoc run`, which matches all
candidates with the dictionary, and of which the best result counts; `qoc fit` forces them into the line instead.
"""


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program")
    parser.add_argument("--output", default=ROOT / "docs" / "accuracy.md", help="- is standard output")
    parser.add_argument("--every", type=int, default=1)
    arguments = parser.parse_args()
    text = report(arguments.program, arguments.every, arguments.output != "-" and arguments.every == 1)
    learn_confusions.write(text, arguments.output)


if __name__ == "__main__":
    main()
