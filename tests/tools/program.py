"""What the tests of the command line program share."""

import json
import os
import pathlib
import subprocess
import tempfile
import unittest

PROGRAM = os.environ.get("QOC_PROGRAM")
ROOT = pathlib.Path(__file__).resolve().parents[2]
DATA = pathlib.Path(os.environ.get("QOC_TEST_DATA") or os.environ.get("QOC_TEST_DATA_DIR") or ROOT / "tests" / "data")


class ProgramTest(unittest.TestCase):
    """A test with a directory of its own, in which the program runs."""

    def setUp(self):
        if not PROGRAM:
            self.fail("QOC_PROGRAM does not name the program")
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = pathlib.Path(directory.name)

    def write(self, name, content):
        """Writes a file; content is bytes, a text, or what becomes JSON."""
        if not isinstance(content, (bytes, str)):
            content = json.dumps(content)
        path = self.directory / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return name

    def dictionary(self, *words, **parameters):
        return self.write("dictionary.json", {"lexicons": [{"words": list(words)}], "parameters": parameters})

    def run_program(self, *arguments, stdin=b"", environment=None, timeout=120):
        """Runs the program. Gives (exit code, standard output, standard error)."""
        done = subprocess.run(
            [PROGRAM, *map(str, arguments)], input=stdin if isinstance(stdin, bytes) else stdin.encode(),
            capture_output=True, cwd=self.directory, timeout=timeout, check=False,
            env={**os.environ, **(environment or {})})
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def run_json(self, *arguments, stdin=b"", expected=0):
        """Runs `run --json`, requires the exit code, and gives the objects."""
        code, out, err = self.run_program("run", "--json", *arguments, stdin=stdin)
        self.assertEqual(code, expected, err)
        return [json.loads(line) for line in out.splitlines()]

    def assert_trouble(self, arguments, *parts, stdin=b"", output=""):
        """Requires exit code 2, a message that holds the parts, and this standard output."""
        code, out, err = self.run_program(*arguments, stdin=stdin)
        self.assertEqual(code, 2, err)
        for part in parts:
            self.assertIn(part, err)
        self.assertEqual(out, output)
