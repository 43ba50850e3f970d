"""Installs the built tree, moves it, and uses it from other projects in every way that the README names."""

import os
import pathlib
import shlex
import shutil
import subprocess
import unittest

SOURCE_DIR = pathlib.Path(os.environ["QOC_SOURCE_DIR"])
BINARY_DIR = pathlib.Path(os.environ["QOC_BINARY_DIR"])
CONSUMER_DIR = pathlib.Path(__file__).resolve().parent / "consumer"
WORK_DIR = BINARY_DIR / "tests" / "build" / "install"
PREFIX = WORK_DIR / "installed"
CMAKE = os.environ["QOC_CMAKE"]


def run(*command, **environment):
    # What the caller's shell says about libraries must not help.
    variables = {key: value for key, value in os.environ.items() if key not in ("LD_LIBRARY_PATH", "PKG_CONFIG_PATH")}
    variables.update(environment)
    done = subprocess.run(
        [str(word) for word in command],
        env=variables,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        encoding="utf-8",
        check=False,
    )
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(WORK_DIR, ignore_errors=True)
        run(CMAKE, "--install", BINARY_DIR, "--prefix", WORK_DIR / "first place")
        # Everything below also shows that an installed tree can be moved.
        (WORK_DIR / "first place").rename(PREFIX)

    def check_greeting(self, program, **environment):
        self.assertEqual(run(program, **environment).strip(), "A")

    def build_with_cmake(self, name, *options):
        build_dir = WORK_DIR / name
        run(
            CMAKE, "-S", CONSUMER_DIR, "-B", build_dir, "-G", os.environ["QOC_GENERATOR"],
            f"-DCMAKE_C_COMPILER={os.environ['QOC_C_COMPILER']}",
            f"-DCMAKE_CXX_COMPILER={os.environ['QOC_CXX_COMPILER']}",
            *options,
        )  # fmt: skip
        run(CMAKE, "--build", build_dir, "--parallel", "2")
        for program in ("consumer_c", "consumer_cpp", "consumer_hpp", "consumer_static"):
            with self.subTest(program=program):
                self.check_greeting(build_dir / program)

    def test_find_package(self):
        self.build_with_cmake(
            "find_package", f"-DCMAKE_PREFIX_PATH={PREFIX}", f"-DCONSUMER_QOC_VERSION={os.environ['QOC_VERSION']}"
        )

    def test_add_subdirectory(self):
        self.build_with_cmake("add_subdirectory", f"-DCONSUMER_QOC_SOURCE_DIR={SOURCE_DIR}")

    def pkg_config(self, *options):
        directories = [path.parent for path in PREFIX.rglob("qoc.pc")]
        self.assertEqual(len(directories), 1, "an installation holds one qoc.pc")
        # As a shell reads it: blanks of the path are escaped.
        return shlex.split(run("pkg-config", *options, "qoc", PKG_CONFIG_PATH=str(directories[0])))

    def test_pkg_config(self):
        self.assertEqual(self.pkg_config("--modversion"), [os.environ["QOC_VERSION"]])
        libdir = self.pkg_config("--variable=libdir")[0]
        program = WORK_DIR / "pkg_config_shared"
        run(
            os.environ["QOC_C_COMPILER"], "-std=c11", CONSUMER_DIR / "main.c", "-o", program,
            *self.pkg_config("--cflags", "--libs"),
        )  # fmt: skip
        self.check_greeting(program, LD_LIBRARY_PATH=libdir)

    def test_pkg_config_static(self):
        libdir = pathlib.Path(self.pkg_config("--variable=libdir")[0])
        flags = self.pkg_config("--static", "--cflags", "--libs")
        self.assertIn("-lqoc", flags)
        # The linker prefers the shared library where both stand side by side, so the archive is named.
        flags = [str(libdir / "libqoc.a") if flag == "-lqoc" else flag for flag in flags]
        program = WORK_DIR / "pkg_config_static"
        run(os.environ["QOC_C_COMPILER"], "-std=c11", CONSUMER_DIR / "main.c", "-o", program, *flags)
        self.check_greeting(program)

    def test_every_public_header_is_installed(self):
        def headers(directory):
            return sorted(path.relative_to(directory).as_posix() for path in directory.rglob("*.h*"))

        self.assertEqual(headers(PREFIX / "include"), headers(SOURCE_DIR / "include"))

    @unittest.skipUnless(os.environ["QOC_HAS_PROGRAM"] == "1", "the program is not built")
    def test_installed_program_finds_its_library(self):
        self.assertIn(os.environ["QOC_VERSION"], run(PREFIX / "bin" / "qoc", "--version"))


if __name__ == "__main__":
    unittest.main()
