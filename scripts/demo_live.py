#!/usr/bin/env python3
"""Lets Tesseract read the shipped pictures, and shows each line as it was read and as the dictionary has it.

    scripts/demo_live.py PROGRAM DIRECTORY

Every picture is matched with the example dictionary of its kind. DIRECTORY takes what the engine writes, and the same
documents with the corrected text.
"""

import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
DATA = ROOT / "tests" / "data"
# Alternatives for every character, and their boxes.
ENGINE_OPTIONS = ["--psm", "7", "--oem", "1", "--dpi", "300", "-l", "eng", "-c", "lstm_choice_mode=2", "-c",
                  "lstm_rating_coefficient=2.5", "-c", "hocr_char_boxes=1", "hocr"]


def read(picture, directory):
    """Lets the engine read a picture; gives its hOCR file."""
    base = directory / picture.stem
    done = subprocess.run(["tesseract", picture, base, *ENGINE_OPTIONS], capture_output=True, text=True, check=False)
    if done.returncode != 0:
        sys.exit(f"tesseract could not read {picture}:\n{done.stderr}")
    return base.with_suffix(".hocr")


def run(program, *arguments):
    done = subprocess.run([program, *arguments], stdout=subprocess.PIPE, text=True, check=False)
    if done.returncode not in (0, 1):
        sys.exit(f"{program} ended with {done.returncode}")
    return done.stdout


def text_of(answer):
    """The text that the dictionary makes of a reading, or None."""
    return answer.get("resolved", {}).get("text") or (answer["results"][0]["text"] if answer["results"] else None)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    program, directory = sys.argv[1], pathlib.Path(sys.argv[2])
    (directory / "corrected").mkdir(parents=True, exist_ok=True)
    with open(DATA / "readings.ndjson", encoding="utf-8") as file:
        kinds = {reading["id"]: reading for reading in map(json.loads, file)}
    numbers = {"right as read": 0, "right afterwards": 0, "lines": 0}
    for picture in sorted((DATA / "images").glob("*.png")):
        known = kinds[picture.stem]
        document = read(picture, directory)
        common = ["-d", str(ROOT / "examples" / "resolve" / f"{known['kind']}.json"), str(document)]
        answers = [json.loads(line) for line in run(program, "run", "--json", *common).splitlines()]
        run(program, "run", "--to", "hocr", "-o", str(directory / "corrected" / document.name), *common)
        print(f"{picture.name} ({known['kind']}), which shows  {known['truth']}")
        numbers["lines"] += 1
        if not answers:
            print("    read nothing")
        for answer in answers:
            after = text_of(answer)
            outcome = f"  ({answer['resolved']['outcome']})" if after else ""
            print(f"    before  {answer['text']}\n    after   {after or 'no result'}{outcome}")
            numbers["right as read"] += answer["text"] == known["truth"]
            numbers["right afterwards"] += after == known["truth"]
        print()
    print(", ".join(f"{name}: {number}" for name, number in numbers.items()))
    print(f"The engine's documents are in {directory}, the corrected ones in {directory / 'corrected'}.")


if __name__ == "__main__":
    main()
