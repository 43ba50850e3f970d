#!/usr/bin/env python3
"""Runs the program on the shipped readings of a real OCR engine, and reports what it made of them.

    scripts/demo_report.py PROGRAM

Readings of words are matched with the word list, readings of product names with the list of names. Every number is
computed from this run's output.
"""

import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
READINGS = ROOT / "tests" / "data" / "readings.ndjson"
KINDS = (  # Kind, its dictionary, what it is.
    ("word", ROOT / "examples" / "words.json", "single words"),
    ("name", ROOT / "examples" / "products.json", "product names"),
)
EDITS = (0, 1, 2)
EXAMPLES_PER_CASE = 2
MARKS = {"primary": ".", "primarySwap": "~", "secondary": ":", "secondarySwap": ";", "substituted": "x",
         "substitutedSpace": "_", "noMatch": "!", "inserted": "+", "deleted": "-", "deletedIgnored": ","}


def run(program, dictionary, readings, edits):
    """Matches readings; gives the program's object for each, in order."""
    lines = "".join(json.dumps(reading, ensure_ascii=False) + "\n" for reading in readings)
    done = subprocess.run(
        [program, "run", "--json", "--dictionary", dictionary, "--max-edits", str(edits), "-"],
        input=lines.encode(), stdout=subprocess.PIPE, check=False)
    if done.returncode not in (0, 1):
        sys.exit(f"{program} ended with {done.returncode}")
    answers = [json.loads(line) for line in done.stdout.decode().splitlines()]
    if [answer["id"] for answer in answers] != [reading["id"] for reading in readings]:
        sys.exit(f"{program} did not answer every reading in order")
    return answers


def best(answer):
    """The dictionary text of the best result, or None."""
    return answer["results"][0]["dictionaryString"] if answer["results"] else None


def percent(part, whole):
    return f"{part:4d} of {whole} ({100 * part / whole:5.1f} %)"


def counted(n, one, many):
    return f"{n} {one if n == 1 else many}"


def explain(result):
    """What happened, in words."""
    statuses = result["resultStringStatus"]
    parts = []
    secondary = [index for index, status in enumerate(statuses) if status == "secondary"]
    if secondary:
        taken = "".join(result["dictionaryString"][index] for index in secondary
                        if index < len(result["dictionaryString"]))
        parts.append(f"{counted(len(secondary), 'position takes another candidate', 'positions take other candidates')}"
                     f" than the first ({taken})")
    for status in ("substituted", "substitutedSpace", "inserted"):
        n = statuses.count(status)
        if n:
            parts.append(f"{n} {'substituted' if status != 'inserted' else 'inserted'}")
    n = result["statusWRTInputStringSwapChar"].count("deleted")
    if n:
        parts.append(f"{n} left out")
    return ", ".join(parts) or "as it was read"


def show(reading, answer):
    result = answer["results"][0] if answer["results"] else None
    print(f"  {reading['id']}  read      {reading['text']}")
    if result is None:
        print("         result    none")
        print(f"         truth     {reading['truth']}")
        return
    print("         marks     " + "".join(MARKS.get(status, "?") for status in result["statusWRTInputStringSwapChar"]))
    print(f"         result    {result['dictionaryString']}")
    print("         marks     " + "".join(MARKS.get(status, "?") for status in result["resultStringStatus"]))
    verdict = "right" if best(answer) == reading["truth"] else f"wrong: the truth is {reading['truth']}"
    print(f"         {counted(result['numEdits'], 'edit', 'edits')}: {explain(result)}; {verdict}")


def show_examples(readings, answers):
    """A few of each case: put right by a candidate, by an edit, and wrong or without result."""
    cases = (
        ("Put right without an edit, by another candidate:",
         lambda r, a: r["text"] != r["truth"] and best(a) == r["truth"] and a["results"][0]["numEdits"] == 0),
        ("Put right with an edit:",
         lambda r, a: best(a) == r["truth"] and a["results"][0]["numEdits"] > 0),
        ("Not put right:", lambda r, a: r["text"] and best(a) != r["truth"]),
    )
    for title, belongs in cases:
        chosen = [(r, a) for r, a in zip(readings, answers) if belongs(r, a)][:EXAMPLES_PER_CASE]
        if chosen:
            print(f"\n{title}\n")
        for reading, answer in chosen:
            show(reading, answer)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    program = sys.argv[1]
    with open(READINGS, encoding="utf-8") as file:
        everything = [json.loads(line) for line in file]
    print("Marks: " + "  ".join(f"{mark} {status}" for status, mark in MARKS.items()))
    table = []
    for kind, dictionary, title in KINDS:
        readings = [reading for reading in everything if reading["kind"] == kind]
        before = sum(reading["text"] == reading["truth"] for reading in readings)
        table.append(f"{title}, as read".ljust(30) + percent(before, len(readings)))
        for edits in EDITS:
            answers = run(program, dictionary, readings, edits)
            after = sum(best(answer) == reading["truth"] for reading, answer in zip(readings, answers))
            spoiled = sum(reading["text"] == reading["truth"] != best(answer)
                          for reading, answer in zip(readings, answers))
            none = sum(not answer["results"] for answer in answers)
            table.append(f"  {counted(edits, 'edit', 'edits')} allowed".ljust(30) + percent(after, len(readings)) +
                         f"   {none:3d} without result, {spoiled} right before and not after")
            if edits == 1:
                print(f"\n== {title}, 1 edit allowed ==")
                show_examples(readings, answers)
    print("\n== Lines right ==\n")
    print("\n".join(table))


if __name__ == "__main__":
    main()
