"""The shared library against the public headers: names, macros, soname and needed libraries."""

import os
import pathlib
import re
import subprocess
import unittest

import public_interface

SOURCE_DIR = pathlib.Path(os.environ["QOC_SOURCE_DIR"])
INCLUDE_DIR = SOURCE_DIR / "include"
LIBRARY = os.environ["QOC_LIBRARY"]

def run(*command):
    done = subprocess.run(command, capture_output=True, encoding="utf-8", check=False)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(command)} ended with {done.returncode}:\n{done.stderr}")
    return done.stdout


def preprocess(headers, *options):
    return public_interface.preprocess(os.environ["QOC_C_COMPILER"], INCLUDE_DIR, headers, *options)


def c_headers():
    return public_interface.headers(INCLUDE_DIR)


def declared_names(headers):
    return {function.name for function in public_interface.functions(os.environ["QOC_C_COMPILER"], INCLUDE_DIR, headers)}


def exported_names():
    lines = run(os.environ["QOC_NM"], "-D", "--defined-only", LIBRARY).splitlines()
    return {line.split()[-1].split("@")[0] for line in lines}


def dynamic_entries(kind):
    text = run(os.environ["QOC_READELF"], "-d", "-W", LIBRARY)
    return re.findall(rf"\({kind}\).*\[(.*)\]", text)


class NameTest(unittest.TestCase):
    def expect_none(self, names, what):
        if names:
            self.fail(f"{len(names)} {what}:" + "".join(f"\n  {name}" for name in sorted(names)))


class ExportedNames(NameTest):
    def test_every_declared_function_is_exported(self):
        declared = declared_names(c_headers())
        self.assertTrue(declared, "no function marked QOC_API was found in the public headers")
        missing = declared - exported_names()
        self.expect_none(missing, "declared but not exported")

    def test_nothing_else_is_exported(self):
        surplus = exported_names() - declared_names(c_headers())
        self.expect_none(surplus, "exported but not declared")


class Headers(NameTest):
    def test_the_main_header_declares_everything(self):
        missing = declared_names(c_headers()) - declared_names(["qoc/ocr_dictionary.h"])
        self.expect_none(missing, "not reached from qoc/ocr_dictionary.h")

    def test_macros_carry_a_prefix_of_the_library(self):
        def macros(headers):
            return set(re.findall(r"^#define (\w+)", preprocess(headers, "-dM"), re.MULTILINE))

        standard = ["limits.h", "stdbool.h", "stddef.h", "stdint.h", "stdio.h"]
        own = macros(standard + c_headers()) - macros(standard)
        stray = {name for name in own if not re.match(r"(QOC|QSTD|QSYS|qoc|qstd|qsys)_", name)}
        self.expect_none(stray, "macros without a prefix leave the headers")


class SharedLibrary(NameTest):
    def test_soname_carries_the_interface_version(self):
        self.assertEqual(dynamic_entries("SONAME"), [f"libqoc.so.{os.environ['QOC_SOVERSION']}"])

    @unittest.skipIf(os.environ["QOC_INSTRUMENTED"] == "1", "instrumentation brings libraries of its own")
    def test_needs_only_the_standard_libraries(self):
        standard = re.compile(r"(libstdc\+\+|libc\+\+|libc\+\+abi|libgcc_s|libm|libc|ld-linux[-\w]*)\.so\b")
        needed = dynamic_entries("NEEDED")
        self.assertTrue(needed, "the library's needed libraries could not be read")
        self.expect_none([name for name in needed if not standard.match(name)], "other libraries needed")


if __name__ == "__main__":
    unittest.main()
