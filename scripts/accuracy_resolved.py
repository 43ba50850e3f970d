"""How many of the shipped readings come out right, wrong, unsure or without a text when one text is chosen for each.

    scripts/accuracy_resolved.py PROGRAM     prints the last row of the table in docs/accuracy.md

Otherwise used by accuracy_report.py. Every number is computed from the program's output on the dictionaries of
examples/resolve/.
"""

import json
import pathlib
import random
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
READINGS = ROOT / "tests" / "data" / "readings.ndjson"
EXAMPLES = ROOT / "examples" / "resolve"
PICTURE = ROOT / "docs" / "accuracy-margin.svg"
KINDS = ("serial", "date", "lot", "word", "name", "vin", "iban")
NUM_SPLITS = 20
WRONG_RATE = 0.015  # What a margin may let through where it is tuned.


class Column:
    """A way to run the program: a title, and what is taken out of a dictionary for it."""

    def __init__(self, title, *without, arguments=()):
        self.title, self.without, self.arguments = title, without, list(arguments)

    def dictionary(self, kind):
        content = json.loads((EXAMPLES / f"{kind}.json").read_text(encoding="utf-8"))
        for entry in content.get("lexicons", ()):
            entry["file"] = str((EXAMPLES / entry["file"]).resolve())
        if "swaps" in self.without:
            del content["swaps"]
        if "edits" in self.without:
            content["parameters"]["maxEdits"] = 0
        if "checks" in self.without:
            for shape in content.get("shapes", ()):
                del shape["checks"]
        return content


COLUMNS = [
    Column("candidates", "swaps", "edits", "checks"),
    Column("confusions", "edits", "checks"),
    Column("edits", "swaps", "checks"),
    Column("both", "checks"),
    Column("default"),
]


class Answer:
    """What the program made of a reading."""

    def __init__(self, reading, answer):
        resolved = answer["resolved"]
        self.truth, self.outcome = reading["truth"], resolved["outcome"]
        self.text, self.margin = resolved.get("text"), resolved.get("margin")
        # The least margin at which the text would be sure does not matter where it never is.
        self.can_be_sure = self.text is not None and resolved["open"] == 0 and resolved["check"] is not False

    def is_right(self):
        return self.text == self.truth

    def verdict(self, min_margin=None):
        """"right", "wrong", "unsure" or "none"; with another margin than the program's where one is given."""
        if self.text is None:
            return "none"
        is_sure = self.outcome == "sure" if min_margin is None else self.can_be_sure and self.margin >= min_margin
        return "unsure" if not is_sure else "right" if self.is_right() else "wrong"


def run(program, directory, column, kind, readings):
    dictionary = directory / "dictionary.json"
    dictionary.write_text(json.dumps(column.dictionary(kind)), encoding="utf-8")
    lines = "".join(json.dumps(reading, ensure_ascii=False) + "\n" for reading in readings)
    done = subprocess.run([program, "run", "--json", *column.arguments, "--dictionary", dictionary, "-"],
                          input=lines.encode(), stdout=subprocess.PIPE, check=False)
    if done.returncode not in (0, 1):
        sys.exit(f"{program} ended with {done.returncode}")
    answers = [json.loads(line) for line in done.stdout.decode().splitlines()]
    if [answer["id"] for answer in answers] != [reading["id"] for reading in readings]:
        sys.exit(f"{program} did not answer every reading in order")
    return [Answer(reading, answer) for reading, answer in zip(readings, answers)]


def count(verdicts):
    verdicts = list(verdicts)
    return [verdicts.count(name) for name in ("right", "wrong", "unsure", "none")]


def cell(counts):
    return " / ".join(str(n) for n in counts)


def raw_verdict(reading):
    return "none" if not reading["text"] else "right" if reading["text"] == reading["truth"] else "wrong"


def ranked(answers):
    """The answers that can be sure, the greatest margin first."""
    return sorted((answer for answer in answers if answer.can_be_sure), key=lambda answer: -answer.margin)


def tuned_margin(answers):
    """The margin with the most right lines among those with few enough wrong ones."""
    best, right, wrong, margin = 0, 0, 0, float("inf")
    for answer in ranked(answers):
        right, wrong = right + answer.is_right(), wrong + (not answer.is_right())
        if wrong <= WRONG_RATE * len(answers) and right > best:
            best, margin = right, answer.margin
    return margin


def cross_validated(answers):
    """Right and wrong lines, in per cent, where the margin is tuned on one half and applied to the other.

    The mean of many ways to halve them.
    """
    sums = [0, 0]
    for seed in range(NUM_SPLITS):
        shuffled = list(answers)
        random.Random(seed).shuffle(shuffled)
        half = len(shuffled) // 2
        for tuning, testing in ((shuffled[:half], shuffled[half:]), (shuffled[half:], shuffled[:half])):
            right, wrong, *_ = count(answer.verdict(tuned_margin(tuning)) for answer in testing)
            sums = [sums[0] + right, sums[1] + wrong]
    return [100 * n / NUM_SPLITS / len(answers) for n in sums]


def curve(answers):
    """By margin: per cent right and per cent wrong of all lines when everything from there on is taken."""
    points, right, wrong = [], 0, 0
    for answer in ranked(answers):
        right, wrong = right + answer.is_right(), wrong + (not answer.is_right())
        points.append((answer.margin, 100 * right / len(answers), 100 * wrong / len(answers)))
    return points


def picture(points, default):
    """Right against wrong as the margin falls."""
    width, height, left, bottom, most_wrong, least_right = 640, 400, 60, 350, 6.0, 50.0

    def place(right, wrong):
        return (left + min(wrong, most_wrong) / most_wrong * (width - left - 20),
                bottom - (max(right, least_right) - least_right) / (100 - least_right) * (bottom - 20))

    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" font-family="sans-serif" '
             f'font-size="12">', f'<rect width="{width}" height="{height}" fill="white"/>']
    for wrong in range(0, 7):
        x, y = place(least_right, wrong)
        parts.append(f'<path d="M{x:.1f} 20V{y:.1f}" stroke="#ddd"/>'
                     f'<text x="{x:.1f}" y="{y + 18:.1f}" text-anchor="middle">{wrong}</text>')
    for right in range(50, 101, 10):
        x, y = place(right, 0)
        parts.append(f'<path d="M{x:.1f} {y:.1f}H{width - 20}" stroke="#ddd"/>'
                     f'<text x="{x - 8:.1f}" y="{y + 4:.1f}" text-anchor="end">{right}</text>')
    line = " ".join(f"{x:.1f},{y:.1f}" for x, y in (place(right, wrong) for _, right, wrong in points))
    parts.append(f'<polyline points="{line}" fill="none" stroke="#06c" stroke-width="2"/>')
    for margin in (100, 60, default, 20, 10, 0):
        taken = [point for point in points if point[0] >= margin]
        if taken:
            x, y = place(taken[-1][1], taken[-1][2])
            parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="4" fill="#06c"/>'
                         f'<text x="{x + 7:.1f}" y="{y + 14:.1f}">margin {margin:g}</text>')
    parts.append(f'<text x="{width / 2}" y="{height - 8}" text-anchor="middle">wrong, per cent of all lines</text>'
                 f'<text x="14" y="{height / 2}" text-anchor="middle" transform="rotate(-90 14 {height / 2})">'
                 'right, per cent of all lines</text></svg>')
    return "\n".join(parts) + "\n"


def default_margin():
    """The program's own, in points, as its header says."""
    source = (ROOT / "src" / "resolve" / "resolver_records.cpp").read_text(encoding="utf-8")
    return int(source.split("minMargin = ")[1].split(";")[0]) / 100


def section(program, directory, everything, every, writes_picture):
    """The section of the report, and its last row."""
    lines = ["| kind | lines | raw | " + " | ".join(column.title for column in COLUMNS) + " |",
             "|" + "---|" * (len(COLUMNS) + 3)]
    totals = [[0] * 4 for _ in range(len(COLUMNS) + 1)]
    default, num_lines = [], 0
    for kind in KINDS:
        readings = [reading for reading in everything if reading["kind"] == kind][::every]
        num_lines += len(readings)
        row = [count(map(raw_verdict, readings))]
        for column in COLUMNS:
            answers = run(program, directory, column, kind, readings)
            row.append(count(answer.verdict() for answer in answers))
            if column is COLUMNS[-1]:
                default += answers
        totals = [[a + b for a, b in zip(total, counts)] for total, counts in zip(totals, row)]
        lines.append(f"| {kind} | {len(readings)} | " + " | ".join(map(cell, row)) + " |")
    last = f"| all | {num_lines} | " + " | ".join(map(cell, totals)) + " |"
    lines.append(last)
    shares = [cell([f"{100 * n / num_lines:.1f}" for n in counts]) for counts in totals]
    lines.append("| per cent | | " + " | ".join(shares) + " |")
    right, wrong = cross_validated(default)
    margin = default_margin()
    if writes_picture:
        PICTURE.write_text(picture(curve(default), margin), encoding="utf-8")
    text = "\n".join(lines) + f"""

Each cell says how many lines are right, wrong, unsure and without a text: right and wrong are those that the program
calls "sure". Raw is the engine's own text, taken as it is. The columns after it take the candidates of every position;
with confusions (the swaps of the ready set `ocr-look-alikes`); with edits (one, for words two and for names three);
with both; and with the check digits that vehicle and account codes have, which is what the dictionaries of
`examples/resolve/` give as they stand.

The default margin is {margin:g} points. Where the margin is tuned on one half of the lines (the most right lines with at
most {100 * WRONG_RATE:g} % wrong ones) and counted on the other half, and the reverse, {right:.1f} % are right and
{wrong:.1f} % wrong, the mean of {NUM_SPLITS} ways to halve them. The dozen numbers of the rules (penalties, free text) were
fitted on all 600 lines and are not part of that.

![Right against wrong lines as the margin falls](accuracy-margin.svg)
"""
    return text, last


def learn(program, directory, kind, readings):
    """What `learn` makes of a kind's readings, without the swaps of its dictionary."""
    dictionary = directory / "dictionary.json"
    dictionary.write_text(json.dumps(Column("", "swaps").dictionary(kind)), encoding="utf-8")
    lines = "".join(json.dumps(reading, ensure_ascii=False) + "\n" for reading in readings)
    done = subprocess.run([program, "learn", "--json", "--threshold", "2", "--dictionary", dictionary, "-"],
                          input=lines.encode(), stdout=subprocess.PIPE, check=False)
    if done.returncode != 0:
        sys.exit(f"{program} learn ended with {done.returncode}")
    return json.loads(done.stdout)


def learnt_section(program, directory, everything, every):
    """What `learn` finds in the readings of each kind, and what comes of it on readings it was not learnt from."""
    def shown(text):
        return f"`{text}`" if text.strip() else "a space" if text else "nothing"

    lines = ["| kind | before | with what was learnt | confusions: read, meant, times, of |", "|---|---|---|---|"]
    for kind in KINDS:
        readings = [reading for reading in everything if reading["kind"] == kind][::every]
        learnt = learn(program, directory, kind, readings)
        checked = learnt["crossValidation"]
        found = "; ".join(f"{shown(c['read'])}, {shown(c['meant'])}, {c['times']}, {c['of']}"
                          for c in learnt["confusions"])
        lines.append(f"| {kind} | {cell(checked['before'].values())} | {cell(checked['after'].values())} | {found} |")
    return "\n".join(lines) + """

`qoc learn --threshold 2` on each kind with the dictionary of `examples/resolve/` less its swaps. Lines are right, wrong,
unsure and without a text, each judged with what the other four fifths of its kind teach. Times are those where the truth
was no candidate; where it was one, no swap is needed.
"""


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    with open(READINGS, encoding="utf-8") as file:
        everything = [json.loads(line) for line in file]
    with tempfile.TemporaryDirectory() as name:
        verdicts = [answer.verdict() for kind in KINDS
                    for answer in run(sys.argv[1], pathlib.Path(name), COLUMNS[-1], kind,
                                      [reading for reading in everything if reading["kind"] == kind])]
    raw, resolved = count(map(raw_verdict, everything)), count(verdicts)
    print("right / wrong / unsure / none of", len(everything), "lines: the engine's text", cell(raw) + ", resolved",
          cell(resolved))


if __name__ == "__main__":
    main()
