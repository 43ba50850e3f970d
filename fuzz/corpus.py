"""Corpora of the fuzzers between a directory of inputs, as a fuzzer has them, and one file of lines, as they are kept.

    python3 fuzz/corpus.py unpack FILE DIRECTORY
    python3 fuzz/corpus.py pack DIRECTORY FILE

A line is an input: printable ASCII as it is but for the backslash, every other byte as \\xHH. Shortest inputs first.
"""

import hashlib
import pathlib
import re
import sys


def line_of(data):
    return "".join(chr(byte) if 0x20 <= byte < 0x7F and byte != 0x5C else f"\\x{byte:02x}" for byte in data)


def input_of(line):
    return re.sub(rb"\\x([0-9a-f]{2})", lambda match: bytes([int(match[1], 16)]), line.encode("ascii"))


def pack(directory, file):
    inputs = {path.read_bytes() for path in directory.iterdir() if path.is_file()}
    file.write_text("".join(line_of(data) + "\n" for data in sorted(inputs, key=lambda data: (len(data), data))),
                    encoding="ascii")


def unpack(file, directory):
    directory.mkdir(parents=True, exist_ok=True)
    for line in file.read_text(encoding="ascii").splitlines():
        data = input_of(line)
        (directory / hashlib.sha1(data).hexdigest()).write_bytes(data)


def main():
    commands = {"pack": pack, "unpack": unpack}
    if len(sys.argv) != 4 or sys.argv[1] not in commands:
        sys.exit(__doc__)
    commands[sys.argv[1]](pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3]))


if __name__ == "__main__":
    main()
