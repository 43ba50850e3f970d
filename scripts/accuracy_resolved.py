"""How many of the shipped readings come out right, wrong, unsure or without a text when one text is chosen for each.

    scripts/accuracy_resolved.py PROGRAM     prints the last row of the table in docs/accuracy.md

Otherwise used by accuracy_report.py. Every number is computed from the program's output on the dictionaries of
examples/resolve/.
"""

import itertools
import json
import pathlib
import random
import subprocess
import sys
import tempfile

import learn_confusions

ROOT = pathlib.Path(__file__).resolve().parent.parent
READINGS = ROOT / "tests" / "data" / "readings.ndjson"
EXAMPLES = ROOT / "examples" / "resolve"
PICTURE = ROOT / "docs" / "accuracy-margin.svg"
KINDS = ("serial", "date", "lot", "word", "name", "vin", "iban")
NUM_SPLITS = 20
WRONG_RATE = 0.015  # What a margin may let through where it is tuned.
LEFT_OUT = "sets left out"
# What is tried for the rules where they are tuned on one half of the lines: first how candidates are weighed and which
# confusions there are, then what a swap and a missing character cost, too. All combinations are.
TUNED = {
    LEFT_OUT: ([], ["ocr-slashed-zeros"]),
    "alternativePenalty": (10, 25, 40),
    "laterPenalty": (10, 20, 30),
}
TUNED_TOO = TUNED | {"swapPenalty": (60, 90), "missingPenalty": (40, 55, 70)}


class Column:
    """A way to run the program: a title, what is taken out of a dictionary for it, and what is set otherwise."""

    def __init__(self, title, *without, rules=None, sets=()):
        self.title, self.without, self.rules, self.sets = title, without, rules or {}, list(sets)

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
        rules = dict(self.rules)
        for name in rules.pop(LEFT_OUT, ()):
            if name in content["swaps"]["sets"]:
                content["swaps"]["sets"].remove(name)
        if rules:
            content["resolving"] = rules
        if self.sets:
            content["swaps"]["sets"] += self.sets
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
    done = subprocess.run([program, "run", "--json", "--dictionary", dictionary, "-"],
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


def by_margin(answers):
    """From the greatest margin down: the margin, and how many lines are right and wrong when all from there are taken."""
    right = wrong = 0
    for margin, equal in itertools.groupby(ranked(answers), key=lambda answer: answer.margin):
        for answer in equal:
            right, wrong = right + answer.is_right(), wrong + (not answer.is_right())
        yield margin, right, wrong


def tuned_margin(answers):
    """The margin with the most right lines among those with few enough wrong ones."""
    allowed = [(right, margin) for margin, right, wrong in by_margin(answers) if wrong <= WRONG_RATE * len(answers)]
    return max(allowed, default=(0, float("inf")))[1]


def merit(answers):
    """How good rules are, whatever the margin: the right lines where no wrong one is allowed, or one, or up to a few more
    than may be, added up. One number alone would follow chance."""
    most = round(WRONG_RATE * len(answers)) + 2
    best = [0] * (most + 1)
    for _, right, wrong in by_margin(answers):
        for k in range(wrong, most + 1):
            best[k] = max(best[k], right)
    return sum(best)


def halves(num_lines):
    """Ways to halve the lines, by their indices: what is tuned on, and what is counted."""
    for seed in range(NUM_SPLITS):
        shuffled = list(range(num_lines))
        random.Random(seed).shuffle(shuffled)
        half = num_lines // 2
        yield shuffled[:half], shuffled[half:]
        yield shuffled[half:], shuffled[:half]


def cross_validated(choices):
    """Right and wrong lines, in per cent, where everything is chosen on one half and applied to the other.

    The mean of many ways to halve them.

    Args:
        choices: the answers to all lines, in one order, once for each way to set the rules.
    """
    num_lines = len(choices[0])
    sums = [0, 0]
    for tuning, testing in halves(num_lines):
        best = max(choices, key=lambda answers: merit([answers[i] for i in tuning]))
        margin = tuned_margin([best[i] for i in tuning])
        right, wrong, *_ = count(best[i].verdict(margin) for i in testing)
        sums = [sums[0] + right, sums[1] + wrong]
    return [100 * n / NUM_SPLITS / num_lines for n in sums]


def rules_tried(tuned):
    """Every way to set the rules."""
    return [dict(zip(tuned, values)) for values in itertools.product(*tuned.values())]


def as_text(tuned):
    return "; ".join(f"`{name}` {', '.join(map(str, values))}" for name, values in tuned.items() if name != LEFT_OUT)


def answers_of(program, directory, everything, every, column):
    """The answers to all lines, kind after kind."""
    return [answer for kind in KINDS
            for answer in run(program, directory, column, kind,
                              [reading for reading in everything if reading["kind"] == kind][::every])]


def curve(answers):
    """By margin: per cent right and per cent wrong of all lines when everything from there on is taken."""
    return [(margin, 100 * right / len(answers), 100 * wrong / len(answers))
            for margin, right, wrong in by_margin(answers)]


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
    for margin in (default, 20, 10, 0):
        taken = [point for point in points if point[0] >= margin]
        if taken:
            x, y = place(taken[-1][1], taken[-1][2])
            parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="4" fill="#06c"/>'
                         f'<text x="{x + 7:.1f}" y="{y + 14:.1f}">margin {margin:g}</text>')
    parts.append(f'<text x="{width / 2}" y="{height - 8}" text-anchor="middle">wrong, per cent of all lines</text>'
                 f'<text x="14" y="{height / 2}" text-anchor="middle" transform="rotate(-90 14 {height / 2})">'
                 'right, per cent of all lines</text></svg>')
    return "\n".join(parts) + "\n"


def default_rule(name):
    """A number of the library's own rules, in points."""
    source = (ROOT / "src" / "resolve" / "resolver_records.cpp").read_text(encoding="utf-8")
    return int(source.split(f"rules->{name} = ")[1].split(";")[0]) / 100


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
    right, wrong = cross_validated([default])
    tried = [(rules, answers_of(program, directory, everything, every, Column("", rules=rules)))
             for rules in rules_tried(TUNED_TOO)]
    usual = rules_tried({name: (default_rule(name),) for name in TUNED_TOO if name not in TUNED})[0]
    few = [answers for rules, answers in tried if all(rules[name] == value for name, value in usual.items())]
    few_right, few_wrong = cross_validated(few)
    all_right, all_wrong = cross_validated([answers for _, answers in tried])
    margin = default_rule("minMargin")
    if writes_picture:
        PICTURE.write_text(picture(curve(default), margin), encoding="utf-8")
    text = "\n".join(lines) + f"""

Each cell says how many lines are right, wrong, unsure and without a text: right and wrong are those that the program
calls "sure". Raw is the engine's own text, taken as it is. The columns after it take the candidates of every position;
with confusions (the swaps of the ready sets `ocr-look-alikes` and, but for words and names, `ocr-slashed-zeros`); with
edits (one, for words two and for names three); with both; and with the check digits that vehicle and account codes have,
which is what the dictionaries of `examples/resolve/` give as they stand.

The default margin is {margin:g} points. Where the margin is tuned on one half of the lines (the most right lines with at
most {100 * WRONG_RATE:g} % wrong ones) and counted on the other half, and the reverse, {right:.1f} % are right and
{wrong:.1f} % wrong, the mean of {NUM_SPLITS} ways to halve them.

The same where the weight of other candidates and the confusions are chosen on the one half with the margin:
**{few_right:.1f} % are right and {few_wrong:.1f} % wrong.** Tried are all {len(few)} combinations of
{as_text(TUNED)}; with and without the set `ocr-slashed-zeros`.
With what swaps and missing characters cost, too
({as_text({name: values for name, values in TUNED_TOO.items() if name not in TUNED})}),
all {len(tried)} combinations, {all_right:.1f} % are right and {all_wrong:.1f} % wrong: so many choices begin to follow
chance. The other numbers of the rules hardly matter here, or (free text) stay as they were fitted on all lines.

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
    shipped = ["| read | meant | times | of | penalty |", "|---|---|---|---|---|"]
    for c in learn_confusions.learn(program):
        shipped.append(f"| {shown(c['read'])} | {shown(c['meant'])} | {c['times']} | {c['of']} | {c['penalty']:g} |")
    default, with_learnt = (
        cell(count(answer.verdict() for answer in answers_of(program, directory, everything, every, column)))
        for column in (COLUMNS[-1], Column("", sets=["ocr-learnt"])))
    return "\n".join(lines) + """

`qoc learn --threshold 2` on each kind with the dictionary of `examples/resolve/` less its swaps. Lines are right, wrong,
unsure and without a text, each judged with what the other four fifths of its kind teach. Times are those where the truth
was no candidate; where it was one, no swap is needed.

The ready set `ocr-learnt` is what `qoc learn` finds at its own threshold of 3 in the readings of all kinds together
(`scripts/learn_confusions.py` writes it):

""" + "\n".join(shipped) + f"""

With it added to the dictionaries of `examples/resolve/` the lines come out {with_learnt}, and
{default} without it, although it was learnt from these very lines: it gains nothing here. This engine lists
nearly everything that it confuses among its candidates, and most of what is learnt of characters that are not there the
program's own confusions say already. So it is in none of these dictionaries.
"""


def without_scores(reading, has_candidates):
    """The reading as an engine would give it that tells no scores."""
    bare = {"id": reading["id"], "kind": reading["kind"], "truth": reading["truth"]}
    if not has_candidates:
        return bare | {"text": reading["text"]}
    return bare | {"positions": [[[character, 0] for character, _ in position] for position in reading["positions"]]}


def bare_section(program, directory, everything, every):
    """What comes of readings without scores."""
    lines = ["| kind | lines | candidates in their order | text alone |", "|---|---|---|---|"]
    totals = [[0] * 4, [0] * 4]
    for kind in KINDS:
        readings = [reading for reading in everything if reading["kind"] == kind][::every]
        row = [count(answer.verdict() for answer in
                     run(program, directory, COLUMNS[-1], kind,
                         [without_scores(reading, has_candidates) for reading in readings]))
               for has_candidates in (True, False)]
        totals = [[a + b for a, b in zip(total, counts)] for total, counts in zip(totals, row)]
        lines.append(f"| {kind} | {len(readings)} | " + " | ".join(map(cell, row)) + " |")
    lines.append(f"| all | {sum(totals[0])} | " + " | ".join(map(cell, totals)) + " |")
    return "\n".join(lines) + """

The same readings with the default dictionaries and all scores taken away. A text is called sure where no other has as
few differences from the first candidates: a line that was misread into another text of the dictionary is then sure and
wrong, and nothing can show it. Only check digits help.
"""


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    with open(READINGS, encoding="utf-8") as file:
        everything = [json.loads(line) for line in file]
    with tempfile.TemporaryDirectory() as name:
        answers = answers_of(sys.argv[1], pathlib.Path(name), everything, 1, COLUMNS[-1])
    print(f"all kinds, {len(everything)} lines, right / wrong / unsure / none: as read "
          f"{cell(count(map(raw_verdict, everything)))}, default {cell(count(answer.verdict() for answer in answers))}")


if __name__ == "__main__":
    main()
