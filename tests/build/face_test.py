"""What a program gets with the library: headers, globals, imports, and an interface that only grows."""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

import interface_baseline
import public_interface

SOURCE_DIR = pathlib.Path(os.environ["QOC_SOURCE_DIR"])
INCLUDE_DIR = SOURCE_DIR / "include"
LIBRARY = os.environ["QOC_LIBRARY"]
ARCHIVE = os.environ["QOC_STATIC_LIBRARY"]
IS_INSTRUMENTED = os.environ["QOC_INSTRUMENTED"] == "1"

# The variables that the library may change, and why there are any.
SHARED_VARIABLES = {
    "(anonymous namespace)::mutex": "guards the assertion handler",
    "(anonymous namespace)::current": "the assertion handler; the allocator",
    "qoc::emptyExpression()::empty": "the empty regular expression: made when it is first asked for, then only read",
}
THREAD_VARIABLES = {
    "(anonymous namespace)::attention": "the thread's attention handler",
    "(anonymous namespace)::current": "the thread's print handler",
    "(anonymous namespace)::lastTag": "the thread's last clean-up tag",
    "qoc::shortcuts()::current": "further shortcuts: only comparisons of them change them",
    "qoc::lexiconRoads()::roads": "the ways that a lexicon's match takes: only comparisons of the ways change them",
    "qoc::unitsPerPoll()::units": "the work between two polls of long loops: only tests of interrupts change it",
}
# A compiler's own.
COMPILERS_VARIABLES = re.compile(r"DW\.ref\.|completed\.\d+|__dso_handle|_edata|_end|__bss_start|__TMC_END__|"
                                 r"guard variable for")

# What would end the process, or write past the print handler. Printing to a stream is left to the objects named.
FORBIDDEN_IMPORTS = {"abort", "exit", "_exit", "_Exit", "quick_exit", "at_quick_exit", "atexit", "raise", "kill",
                     "__assert_fail", "perror", "puts", "putchar", "printf", "vprintf", "__printf_chk", "scanf",
                     "signal", "sigaction", "longjmp", "_ZSt4cout", "_ZSt4cerr"}
IMPORTS_OF_OBJECTS = {
    "stdout": {"print.cpp.o"},
    "stderr": {"assert.cpp.o"},
    "fputs": set(),
    "fwrite": {"print.cpp.o", "assert.cpp.o", "swap_char_set_print.cpp.o"},
    "fputc": {"swap_char_set_print.cpp.o"},
    "fprintf": {"assert.cpp.o", "swap_char_set_print.cpp.o"},
}


def run(*command):
    done = subprocess.run(command, capture_output=True, encoding="utf-8", check=False)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(command)} ended with {done.returncode}:\n{done.stderr}")
    return done.stdout


def writable_variables():
    """Pairs of a section and a demangled name, of the sections that stay writable once the library is loaded."""
    names = {}
    for number, name in re.findall(r"^\s*\[\s*(\d+)\]\s+(\S+)", run(os.environ["QOC_READELF"], "-SW", LIBRARY), re.M):
        names[number] = name
    found = set()
    for line in run(os.environ["QOC_READELF"], "-sW", "-C", LIBRARY).splitlines():
        match = re.match(r"\s*\d+:\s+\S+\s+\S+\s+(OBJECT|TLS)\s+\S+\s+\S+\s+(\d+)\s+(.*)$", line)
        if match and names.get(match[2]) in (".data", ".bss", ".tdata", ".tbss"):
            # A compiler may split a variable into its members: "name (.0)", "name (.1)".
            found.add((names[match[2]], re.sub(r"@.*|\s*\[.*\]$|\s*\(\.\d+\)$", "", match[3]).strip()))
    return found


@unittest.skipIf(IS_INSTRUMENTED, "instrumentation brings its own")
class Library(unittest.TestCase):
    def test_its_variables_are_those_of_the_handlers(self):
        found = writable_variables()
        self.assertIn((".tbss", "(anonymous namespace)::attention"), found, "the library's symbols could not be read")
        strays = sorted(
            f"{section} {name}" for section, name in found
            if name not in (THREAD_VARIABLES if section.startswith(".t") else SHARED_VARIABLES)
            and not COMPILERS_VARIABLES.match(name))
        self.assertEqual(strays, [])

    def test_nothing_runs_when_it_is_loaded(self):
        sizes = re.findall(r"\s\.init_array\s+INIT_ARRAY\s+\w+\s+\w+\s+(\w+)",
                           run(os.environ["QOC_READELF"], "-SW", LIBRARY))
        # One entry is the compiler's start-up code, which every shared library has.
        self.assertLessEqual([int(size, 16) for size in sizes], [8])

    def test_it_never_ends_the_process_and_prints_in_its_own_places_only(self):
        strays = []
        imports = re.findall(r":([\w.]+\.o):\s+U (\w+)", run(os.environ["QOC_NM"], "-A", "-u", ARCHIVE))
        self.assertTrue(imports, "the archive's symbols could not be read")
        for member, name in imports:
            if name in FORBIDDEN_IMPORTS or member not in IMPORTS_OF_OBJECTS.get(name, {member}):
                strays.append(f"{member} uses {name}")
        self.assertEqual(strays, [])


class Headers(unittest.TestCase):
    def test_guards_carry_the_files_name(self):
        for path in INCLUDE_DIR.rglob("*.h"):
            guard = "QOC_" + path.stem.upper() + "_H"
            code = re.sub(r"/\*.*?\*/", "", path.read_text(encoding="utf-8"), flags=re.S).strip()
            with self.subTest(path.name):
                self.assertTrue(code.startswith(f"#ifndef {guard}\n#define {guard}\n"))
                self.assertTrue(code.endswith("#endif"))

    def test_order_of_inclusion_does_not_matter(self):
        names = public_interface.headers(INCLUDE_DIR)
        for order in (names, names[::-1]):
            text = "".join(f'#include "{name}"\n' for name in order) + "extern int qoc_headerTest;\n"
            compile_c(self, text, "-Werror")


def compile_c(test, text, *options, language="c", standard="c11", compiler="QOC_C_COMPILER"):
    """Checks that a text compiles."""
    done = try_to_compile(text, *options, language=language, standard=standard, compiler=compiler)
    test.assertEqual(done.returncode, 0, done.stderr)


def try_to_compile(text, *options, language, standard, compiler):
    return subprocess.run(
        [os.environ[compiler], "-x", language, f"-std={standard}", "-fsyntax-only", "-Wall", "-Wextra", "-pedantic",
         f"-I{INCLUDE_DIR}", *options, "-"],
        input=text, capture_output=True, encoding="utf-8", check=False)


class Types(unittest.TestCase):
    """A vector takes elements of its own type only: the wrong one must not compile, the right one must."""

    TEXT = """
        #include <qoc/ocr_dictionary.h>
        qsys_status add(qstd_vector_qoc_ocrDictionaryString *, const @ *);
        qsys_status add(qstd_vector_qoc_ocrDictionaryString *vector, const @ *element) {
          return qstd_vector_qoc_ocrDictionaryString_pushBack(vector, element);
        }
    """
    LANGUAGES = (("c", "c11", "QOC_C_COMPILER", ["-Werror=incompatible-pointer-types"]),
                 ("c++", "c++17", "QOC_CXX_COMPILER", []))

    def try_element(self, name, language, standard, compiler, options):
        return try_to_compile(self.TEXT.replace("@", name), *options, language=language, standard=standard,
                              compiler=compiler)

    def test_right_elements_compile(self):
        for language in self.LANGUAGES:
            done = self.try_element("qoc_ocrDictionaryString", *language)
            self.assertEqual(done.returncode, 0, done.stderr)

    def test_wrong_elements_do_not(self):
        for language in self.LANGUAGES:
            for wrong in ("qoc_ocrDictionaryStringMulti", "qstd_string", "int32_t"):
                done = self.try_element(wrong, *language)
                self.assertNotEqual(done.returncode, 0, f"{wrong} as {language[1]}")


class Baseline(unittest.TestCase):
    """What programs were built with stays as it was; new functions and records are added behind."""

    def test_no_function_vanishes_or_changes(self):
        declared = set(interface_baseline.functions(os.environ["QOC_C_COMPILER"], INCLUDE_DIR))
        known = interface_baseline.read("functions.txt")
        self.assertGreater(len(known), 1000)
        self.assertEqual([line for line in known if line not in declared], [])

    @unittest.skipIf(os.environ["QOC_POINTER_SIZE"] != "8", "the stored layout is that of 64 bits")
    def test_no_record_changes_its_layout(self):
        with tempfile.TemporaryDirectory() as directory:
            present = set(interface_baseline.records(os.environ["QOC_C_COMPILER"], INCLUDE_DIR, directory))
        known = interface_baseline.read("records.txt")
        self.assertGreater(len(known), 10)
        self.assertEqual([line for line in known if line not in present], [])


if __name__ == "__main__":
    unittest.main()
