"""Installs the package as a user does, without a network, and uses it away from the build tree."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

PACKAGE_DIR = pathlib.Path(__file__).resolve().parents[1]

PROGRAM = """
import pathlib, qoc
assert pathlib.Path(qoc.__file__).is_relative_to({directory!r}), qoc.__file__
print(qoc.Dictionary([["Apple"]]).run("Aple", max_edits=1))
"""


class Installation(unittest.TestCase):
    def test_pip_installs_without_a_network(self):
        with tempfile.TemporaryDirectory() as directory:
            subprocess.run(
                [sys.executable, "-m", "pip", "install", "--quiet", "--no-index", "--no-build-isolation", "--no-deps",
                 "--target", directory, PACKAGE_DIR], check=True)  # fmt: skip
            environment = {key: value for key, value in os.environ.items() if key != "PYTHONPATH"}
            done = subprocess.run(
                [sys.executable, "-c", PROGRAM.format(directory=directory)], cwd=directory,
                env=environment | {"PYTHONPATH": directory}, stdout=subprocess.PIPE, encoding="utf-8", check=True)  # fmt: skip
            self.assertEqual(done.stdout, "[<Result 'Apple', 1 edit, lexicon>]\n")
            installed = {path.name for path in (pathlib.Path(directory) / "qoc").iterdir()}
            self.assertLessEqual({"py.typed", "_qoc.pyi", "dask.py"}, installed)
            (module,) = (pathlib.Path(directory) / "qoc").glob("_qoc*.so")
            needed = subprocess.run(["readelf", "-d", module], stdout=subprocess.PIPE, encoding="utf-8", check=True)
            self.assertNotIn("libqoc", needed.stdout)


if __name__ == "__main__":
    unittest.main()
