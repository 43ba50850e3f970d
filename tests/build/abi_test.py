"""The binary interface, as abidiff sees it: what programs were linked with keeps its functions, types and layouts.

A library made of the public headers alone, a function without a body for each that they declare, is described by abidw in
a second, and so can be compared in every build. That the real library exports just these functions is interface_test's;
where it is built with debug information, it is compared itself, too.
"""

import gzip
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

import interface_baseline

SOURCE_DIR = pathlib.Path(os.environ["QOC_SOURCE_DIR"])
INCLUDE_DIR = SOURCE_DIR / "include"
LIBRARY = os.environ["QOC_LIBRARY"]


def is_like_the_stored_one():
    """The stored interface is that of g++ on x86-64."""
    return os.environ["QOC_POINTER_SIZE"] == "8" and os.uname().machine == "x86_64" and os.environ["QOC_INSTRUMENTED"] == "0"


@unittest.skipIf(shutil.which("abidiff") is None, "abidiff is not installed (Debian: abigail-tools)")
@unittest.skipUnless(is_like_the_stored_one(), "the stored interface is that of x86-64")
class BinaryInterface(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = pathlib.Path(directory.name)
        self.stored = self.directory / "interface.abi"
        self.stored.write_bytes(gzip.decompress((interface_baseline.DIRECTORY / "interface.abi.gz").read_bytes()))

    def compare(self, library, *options, stored=None):
        """abidiff's exit code, 0 where nothing but additions is found, and what it says."""
        done = subprocess.run(["abidiff", "--no-added-syms", *options, str(stored or self.stored), str(library)],
                              capture_output=True, encoding="utf-8", check=False)
        self.assertEqual(done.returncode & 3, 0, f"abidiff failed:\n{done.stderr}")
        return done.returncode, done.stdout

    def made_of_headers(self, old="", new="", **options):
        """The library of the headers, in which a text may be replaced."""
        include = self.directory / "include"
        shutil.copytree(INCLUDE_DIR, include, dirs_exist_ok=True)
        num_replaced = 0
        for path in include.rglob("*.h"):
            text = path.read_text(encoding="utf-8")
            if old and old in text:
                num_replaced += 1
                path.write_text(text.replace(old, new), encoding="utf-8")
        self.assertEqual(num_replaced > 0, bool(old))
        library = interface_baseline.library_of_headers("gcc", include, self.directory, **options)
        shutil.rmtree(include)
        return library

    def test_nothing_changes_but_by_additions(self):
        code, said = self.compare(self.made_of_headers())
        self.assertEqual(code, 0, said)

    def test_changes_are_noticed(self):
        for old, new in (("int32_t maxEdits;", "int64_t maxEdits;"),
                         ("qoc_ocrDictionary_getIsEmpty(", "qoc_ocrDictionary_isEmpty("),
                         ("qsys_attention_check(void)", "qsys_attention_check(int32_t how)")):
            with self.subTest(old):
                self.assertNotEqual(self.compare(self.made_of_headers(old, new))[0], 0)

    def test_the_library_itself(self):
        sections = subprocess.run([os.environ["QOC_READELF"], "-SW", LIBRARY], capture_output=True, encoding="utf-8", check=True)
        if ".debug_info" not in sections.stdout:
            self.skipTest("the library has no debug information in this build")
        # As C++, which has a wchar_t of its own, and under the library's name.
        options = ("-xc++", "-std=c++20", f"-Wl,-soname,libqoc.so.{os.environ['QOC_SOVERSION']}")
        for old, new in (("", ""), ("int32_t maxEdits;", "int64_t maxEdits;")):
            with self.subTest(old):
                code, said = self.compare(LIBRARY, "--headers-dir2", str(INCLUDE_DIR), "--drop-private-types",
                                          stored=self.made_of_headers(old, new, options=options))
                self.assertEqual(code != 0, bool(old), said)


if __name__ == "__main__":
    unittest.main()
