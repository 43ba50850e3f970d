"""Runs the code blocks of README and of the documents, and follows their links.

A block is fenced and names its language, or is indented and is known by its look. What follows a program's block as
```text is what it prints.

    console    commands behind "$ ", each with what it prints; in the root of a copy of the project
    sh         commands that take long: they are run by tests of their own, here their words are looked at
    c, cpp     a whole program, compiled against the public headers and the shared library, and run
    python     a program; pycon: an interactive session; those of one document run one after the other
    json       a dictionary file, read by the program; the files that it names exist for the occasion
    ndjson     readings, matched with a dictionary
    cmake      the end of a CMakeLists.txt whose program is `inspection`
    python all the same, with packages that only the whole test installs
    text       the printed text of the block before; elsewhere nothing that could run
"""

import contextlib
import doctest
import io
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest
from typing import NamedTuple

SOURCE_DIR = pathlib.Path(os.environ["QOC_SOURCE_DIR"])
LIBRARY = pathlib.Path(os.environ["QOC_LIBRARY"])
PROGRAM = os.environ.get("QOC_PROGRAM")
PYTHON_MODULE = os.environ.get("QOC_PYTHON_MODULE")
TEST_ALL = os.environ.get("QOC_TEST_ALL") == "1"
DOCUMENTS = sorted([*SOURCE_DIR.glob("*.md"), *(SOURCE_DIR / "docs").rglob("*.md")])


class Block(NamedTuple):
    document: pathlib.Path
    line: int
    language: str
    text: str
    needs_all: bool = False

    def __str__(self):
        return f"{self.document.relative_to(SOURCE_DIR)}:{self.line}"


def language_of_indented(text):
    first = text.lstrip().split("\n", 1)[0]
    if first.startswith("$ "):
        return "console"
    if first.startswith(("{", "[")):
        return "json"
    if first.startswith(("find_package", "add_subdirectory")):
        return "cmake"
    if re.match(r"([A-Z_]+=|tesseract |scripts/|cmake |ctest |qoc |cc |build/|gcovr |pip |npm |node )", first):
        return "sh"
    return "text"


def blocks_of(document):
    lines = document.read_text(encoding="utf-8").split("\n")
    found, i, after_blank = [], 0, True
    while i < len(lines):
        fence = re.match(r"```(\S*)(?: (all))?", lines[i])
        if fence:
            end = next(k for k in range(i + 1, len(lines)) if lines[k].startswith("```"))
            text = "\n".join(lines[i + 1 : end]) + "\n"
            found.append(Block(document, i + 1, fence.group(1), text, fence.group(2) is not None))
            i = end + 1
        elif after_blank and lines[i].startswith("    ") and not re.match(r"\s*([-*]|\d+\.) ", lines[i]):
            end = i
            while end < len(lines) and (lines[end].startswith("    ") or not lines[end].strip()):
                end += 1
            text = "\n".join(line[4:] for line in lines[i:end]).rstrip() + "\n"
            found.append(Block(document, i + 1, language_of_indented(text), text))
            i = end
        else:
            after_blank = not lines[i].strip()
            i += 1
            continue
        after_blank = True
    return found


def outputs(blocks):
    """Each block with what it shall print, or None."""
    for block, following in zip(blocks, [*blocks[1:], None]):
        between = None
        if following is not None and following.language == "text":
            lines = block.document.read_text(encoding="utf-8").split("\n")
            end = block.line + block.text.count("\n") + 1
            between = "".join(lines[end : following.line - 1]).strip()
        yield block, following.text if between == "" else None


class Documents(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.directory = tempfile.TemporaryDirectory()
        cls.root = pathlib.Path(cls.directory.name) / "qoc"
        cls.root.mkdir()
        for name in ("examples", "tests", "docs", "scripts"):
            (cls.root / name).symlink_to(SOURCE_DIR / name)
        cls.bin = cls.root / "build" / "release" / "tools" / "qoc"
        cls.bin.mkdir(parents=True)
        if PROGRAM:
            (cls.bin / "qoc").symlink_to(PROGRAM)
        cls.environment = os.environ | {
            "PATH": f"{cls.bin}{os.pathsep}{os.environ['PATH']}",
            "LD_LIBRARY_PATH": str(LIBRARY.parent),
            "PYTHONPATH": PYTHON_MODULE or "",
            "PYTHONDONTWRITEBYTECODE": "1",
            "NO_COLOR": "1",
        }

    @classmethod
    def tearDownClass(cls):
        cls.directory.cleanup()

    def run_command(self, command, directory=None, text=None, codes=(0,)):
        done = subprocess.run(
            command, cwd=directory or self.root, env=self.environment, input=text, encoding="utf-8",
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)  # fmt: skip
        if codes is not None and done.returncode not in codes:
            self.fail(f"{command} ended with {done.returncode}:\n{done.stdout}")
        return done.stdout

    def each(self, *languages):
        for document in DOCUMENTS:
            for block, printed in outputs(blocks_of(document)):
                if block.language in languages:
                    with self.subTest(block=str(block)):
                        yield block, printed

    def test_every_block_has_a_language_that_is_run(self):
        known = {"console", "sh", "c", "cpp", "python", "pycon", "json", "ndjson", "cmake", "text"}
        for document in DOCUMENTS:
            for block in blocks_of(document):
                self.assertIn(block.language, known, str(block))

    @unittest.skipUnless(PROGRAM, "the program is not built")
    def test_console(self):
        for block, _ in self.each("console"):
            for part in re.split(r"^\$ ", block.text, flags=re.MULTILINE)[1:]:
                command, _, expected = part.partition("\n")
                while command.endswith("\\"):
                    more, _, expected = expected.partition("\n")
                    command = command[:-1] + more
                printed = self.run_command(["bash", "-c", command], codes=None)
                self.assertEqual(printed.rstrip(), expected.rstrip(), command)

    def test_sh(self):
        """Commands that take long exist: scripts of the project with the options that they name, and tools."""
        for block, _ in self.each("sh"):
            self.run_command(["bash", "-n", "-c", block.text])
            for line in block.text.splitlines():
                words = shlex.split(line, comments=True)
                if not words or words[0].startswith("["):
                    continue
                if words[0].startswith("scripts/"):
                    script = (SOURCE_DIR / words[0]).read_text(encoding="utf-8")
                    for option in (word for word in words[1:] if word.startswith("--")):
                        self.assertIn(option.split("=")[0], script, line)

    def compile_and_run(self, block, printed, compiler, *options):
        with tempfile.TemporaryDirectory() as directory:
            source = pathlib.Path(directory) / f"program.{block.language}"
            source.write_text(block.text, encoding="utf-8")
            target = source.with_suffix("")
            self.run_command(
                [compiler, *options, "-Wall", "-Wextra", "-Wpedantic", "-Werror", f"-I{SOURCE_DIR}/include", source,
                 "-o", target, LIBRARY, "-pthread"])  # fmt: skip
            self.assertEqual(self.run_command([target]), printed or "")

    def test_c(self):
        for block, printed in self.each("c"):
            self.compile_and_run(block, printed, os.environ["QOC_C_COMPILER"], "-std=c11")

    def test_cpp(self):
        for block, printed in self.each("cpp"):
            self.compile_and_run(block, printed, os.environ["QOC_CXX_COMPILER"], "-std=c++20")

    @unittest.skipUnless(PYTHON_MODULE, "the Python module is not built")
    def test_python(self):
        for document in DOCUMENTS:
            blocks = [(block, printed) for block, printed in outputs(blocks_of(document))
                      if block.language in ("python", "pycon") and (TEST_ALL or not block.needs_all)]  # fmt: skip
            if blocks:
                with self.subTest(document=document.name):
                    content = json.dumps(
                        [[block.language, block.text, printed, str(block)] for block, printed in blocks])  # fmt: skip
                    printed = self.run_command([sys.executable, __file__, "--python"], text=content)
                    self.assertEqual(printed, "")

    @unittest.skipUnless(PROGRAM, "the program is not built")
    def test_json(self):
        for block, _ in self.each("json"):
            content = json.loads(block.text)
            if not isinstance(content, dict) or not {"lexicons", "fieldings", "regularExpressions"} & set(content):
                continue
            with tempfile.TemporaryDirectory() as directory:
                for lexicon in content.get("lexicons", []):
                    if "file" in lexicon:
                        (pathlib.Path(directory) / lexicon["file"]).write_text("word\n", encoding="utf-8")
                path = pathlib.Path(directory) / "dictionary.json"
                path.write_text(block.text, encoding="utf-8")
                self.run_command(["qoc", "run", "--dictionary", path, "-"], text="word\n", codes=(0, 1))

    @unittest.skipUnless(PROGRAM, "the program is not built")
    def test_ndjson(self):
        for block, _ in self.each("ndjson"):
            command = ["qoc", "run", "--json", "--dictionary", "examples/words.json", "-"]
            lines = self.run_command(command, text=block.text, codes=(0, 1)).splitlines()
            self.assertEqual(len(lines), sum(bool(line.strip()) for line in block.text.splitlines()))

    def test_cmake(self):
        blocks = list(self.each("cmake"))
        if not blocks:
            return
        with tempfile.TemporaryDirectory() as directory:
            prefix = pathlib.Path(directory) / "installed"
            for component in ("runtime", "development"):
                self.run_command([os.environ["QOC_CMAKE"], "--install", os.environ["QOC_BINARY_DIR"],
                                  "--prefix", prefix, "--component", component])  # fmt: skip
            for i, (block, _) in enumerate(blocks):
                project = pathlib.Path(directory) / f"project{i}"
                project.mkdir()
                shutil.copy(SOURCE_DIR / "tests" / "build" / "consumer" / "main.cpp", project)
                (project / "CMakeLists.txt").write_text(
                    "cmake_minimum_required(VERSION 3.25)\nproject(inspection LANGUAGES C CXX)\n"
                    "add_executable(inspection main.cpp)\n" + block.text, encoding="utf-8")  # fmt: skip
                self.run_command([os.environ["QOC_CMAKE"], "-S", project, "-B", project / "build",
                                  f"-DCMAKE_PREFIX_PATH={prefix}"])  # fmt: skip
                self.run_command([os.environ["QOC_CMAKE"], "--build", project / "build"])
                self.assertEqual(self.run_command([project / "build" / "inspection"]), "A\n")


class Links(unittest.TestCase):
    def test_lead_somewhere(self):
        for document in DOCUMENTS:
            text = re.sub(r"^```.*?^```", "", document.read_text(encoding="utf-8"), flags=re.DOTALL | re.MULTILINE)
            for target in re.findall(r"\]\(([^)\s]+)\)", re.sub(r"`[^`\n]*`", "", text)):
                with self.subTest(document=document.name, target=target):
                    if re.match(r"https?://", target):
                        continue
                    path, _, anchor = target.partition("#")
                    file = (document.parent / path).resolve() if path else document
                    self.assertTrue(file.exists(), "the file does not exist")
                    self.assertTrue(file.is_relative_to(SOURCE_DIR.resolve()), "the link leaves the project")
                    if anchor:
                        self.assertIn(anchor, anchors(file), "there is no such heading")

    def test_every_guide_is_reached_from_the_index(self):
        index = SOURCE_DIR / "docs" / "index.md"
        linked = set(re.findall(r"\]\(([^)#\s]+)", index.read_text(encoding="utf-8")))
        present = {path.relative_to(index.parent).as_posix() for path in index.parent.rglob("*.md")} - {"index.md"}
        self.assertEqual(present - linked, set())

    def test_named_files_exist(self):
        """What the documents name in code marks as a path of the project is there."""
        directories = [path.name for path in SOURCE_DIR.iterdir() if path.is_dir() and path.name[0] != "."]
        top = "|".join(re.escape(name) for name in sorted(directories))
        for document in DOCUMENTS:
            if document.name == "CHANGELOG.md":
                continue
            for name in re.findall(rf"`((?:{top})/[\w./-]*)`", document.read_text(encoding="utf-8")):
                with self.subTest(document=document.name, name=name):
                    if name.split("/")[0] != "build":
                        self.assertTrue((SOURCE_DIR / name).exists() or "*" in name)


def anchors(document):
    headings = re.findall(r"^#+ +(.*)$", document.read_text(encoding="utf-8"), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).strip().replace(" ", "-") for heading in headings}


def run_python(blocks):
    """Runs the blocks of a document one after the other; prints what is wrong."""
    names = {"__name__": "__main__"}
    for language, text, expected, where in blocks:
        if language == "pycon":
            test = doctest.DocTestParser().get_doctest(text, names, where, where, 0)
            runner = doctest.DocTestRunner(verbose=False, optionflags=doctest.ELLIPSIS)
            runner.run(test, clear_globs=False)
            names.update(test.globs)
        else:
            printed = io.StringIO()
            with contextlib.redirect_stdout(printed):
                exec(compile(text, where, "exec"), names)
            if expected is not None and printed.getvalue() != expected:
                print(f"{where}: expected\n{expected}printed\n{printed.getvalue()}")


if __name__ == "__main__":
    if sys.argv[1:] == ["--python"]:
        run_python(json.load(sys.stdin))
    else:
        unittest.main()
