#!/usr/bin/env python3
"""Writes the ready set of swaps `ocr-learnt`: what `qoc learn` finds in the shipped readings.

    scripts/learn_confusions.py PROGRAM [--output FILE]

All kinds of readings teach together. The program is to be built again afterwards.
"""

import argparse
import json
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
READINGS = ROOT / "tests" / "data" / "readings.ndjson"
SHIPPED = ROOT / "tools" / "qoc" / "learnt_confusions.inc"
# What is counted does not depend on the dictionary, only what it would change.
DICTIONARY = {"regularExpressions": [".*"]}


def learn(program):
    """The confusions with one character on either side, as `qoc learn --json` gives them."""
    with tempfile.TemporaryDirectory() as directory:
        dictionary = pathlib.Path(directory) / "dictionary.json"
        dictionary.write_text(json.dumps(DICTIONARY), encoding="utf-8")
        done = subprocess.run([program, "learn", "--json", "--dictionary", dictionary, READINGS],
                              stdout=subprocess.PIPE, check=False)
    if done.returncode != 0:
        sys.exit(f"{program} learn ended with {done.returncode}")
    return [c for c in json.loads(done.stdout)["confusions"] if len(c["read"]) == 1 and len(c["meant"]) <= 1]


def code(text):
    return f"0x{ord(text):04X}" if text else "QOC_CHAR_EMPTY"


def source(confusions):
    lines = ["// Written by scripts/learn_confusions.py from tests/data/readings.ndjson: what was read, what was meant, the "
             "penalty."]
    lines += [f"{{{code(c['read'])}, {code(c['meant'])}, {round(100 * c['penalty'])}}}," for c in confusions]
    return "\n".join(lines) + "\n"


def write(text, output):
    """Writes a file, or standard output where it is called "-"."""
    if output == "-":
        sys.stdout.write(text)
    else:
        pathlib.Path(output).write_text(text, encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program")
    parser.add_argument("--output", default=SHIPPED, help="- is standard output")
    arguments = parser.parse_args()
    write(source(learn(arguments.program)), arguments.output)


if __name__ == "__main__":
    main()
