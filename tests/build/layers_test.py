"""The includes of the library and the program: no circles, and no layer reaches where it must not."""

import os
import pathlib
import re
import unittest

ROOT = pathlib.Path(os.environ["QOC_SOURCE_DIR"])
PLATFORM = pathlib.PurePath("src/platform")


def source_files(*directories):
    suffixes = {".h", ".hpp", ".cpp", ".inc"}
    return sorted(
        path for directory in directories for path in (ROOT / directory).rglob("*") if path.suffix in suffixes
    )


def includes_of(path):
    """The project's own files that a file includes, each relative to the root."""
    found = []
    for name in re.findall(r'^\s*#\s*include\s*["<]([^">]+)[">]', path.read_text(encoding="utf-8"), re.MULTILINE):
        for directory in (path.parent, ROOT / "src", ROOT / "include"):
            target = (directory / name).resolve()
            if target.is_file() and target.is_relative_to(ROOT.resolve()):
                found.append(target.relative_to(ROOT.resolve()))
                break
    return found


def graph(*directories):
    return {path.relative_to(ROOT): includes_of(path) for path in source_files(*directories)}


def first_circle(edges):
    """Walks depth first; a file that is met again while it is still open closes a circle."""
    done = set()

    def walk(file, trail):
        if file in trail:
            return [*trail[trail.index(file) :], file]
        if file in done:
            return None
        for target in edges.get(file, []):
            circle = walk(target, [*trail, file])
            if circle:
                return circle
        done.add(file)
        return None

    for file in edges:
        circle = walk(file, [])
        if circle:
            return circle
    return None


class Includes(unittest.TestCase):
    def test_never_run_in_a_circle(self):
        edges = graph("include", "src")
        self.assertTrue(any(edges.values()), "no include was found at all")
        circle = first_circle(edges)
        if circle:
            self.fail(" -> ".join(file.as_posix() for file in circle))

    def test_platform_knows_nothing_of_the_rest(self):
        strays = [
            f"{file.as_posix()} includes {target.as_posix()}"
            for file, targets in graph(PLATFORM).items()
            for target in targets
            if target.parts[0] == "src" and not target.is_relative_to(PLATFORM)
        ]
        if strays:
            self.fail("\n  ".join(["the platform reaches upwards:", *strays]))

    def test_program_uses_only_the_public_headers(self):
        strays = [
            f"{file.as_posix()} includes {target.as_posix()}"
            for file, targets in graph("tools").items()
            for target in targets
            if target.parts[0] == "src"
        ]
        if strays:
            self.fail("\n  ".join(["the program reaches into the library:", *strays]))


if __name__ == "__main__":
    unittest.main()
