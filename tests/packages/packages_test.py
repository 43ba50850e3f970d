"""Builds the Debian packages, installs them in a clean Debian that debootstrap makes, and uses them there.

Needs root, debootstrap and the package archive that this system uses.
"""

import os
import pathlib
import re
import shutil
import subprocess
import unittest

SOURCE_DIR = pathlib.Path(__file__).resolve().parents[2]
WORK_DIR = SOURCE_DIR / "build" / "packages-test"
BASE = WORK_DIR / "base"
ROOT = WORK_DIR / "root"
PACKAGES = ("libqoc", "libqoc-dev", "qoc", "python3-qoc")


def run(*command, **options):
    done = subprocess.run(
        [str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8",
        check=False, **options)  # fmt: skip
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


def archive():
    """The address of the package archive that this system's release comes from, and the release."""
    release = dict(
        line.rstrip().replace('"', "").split("=", 1)
        for line in pathlib.Path("/etc/os-release").read_text(encoding="utf-8").splitlines()
        if "=" in line
    )["VERSION_CODENAME"]
    sources = pathlib.Path("/etc/apt/sources.list.d")
    # Others than Debian's have packages of their own, not a whole release of this name with them.
    for file in [pathlib.Path("/etc/apt/sources.list"), *sorted(sources.glob("*.list")), *sorted(sources.glob("*.sources"))]:
        text = file.read_text(encoding="utf-8") if file.is_file() else ""
        for found in re.finditer(r"^deb\s+(?:\[.*?\]\s+)?(\S+)\s+(\S+)", text, re.MULTILINE):
            if found.group(2) == release:
                return found.group(1), release
        for stanza in re.split(r"\n\s*\n", text):
            fields = dict(re.findall(r"^(\w+):\s*(.*)$", stanza, re.MULTILINE))
            if release in fields.get("Suites", "").split() and fields.get("Enabled", "yes") != "no":
                return fields["URIs"].split()[0], release
    raise AssertionError("no package archive is named under /etc/apt")


def in_root(*command, **options):
    # Nothing of this system's environment helps.
    environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C.UTF-8", "DEBIAN_FRONTEND": "noninteractive"}
    return run("chroot", ROOT, *command, env=environment, **options)


def install(*packages):
    return in_root("apt-get", "install", "--yes", "--no-install-recommends", *packages)


class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        run(SOURCE_DIR / "scripts" / "packages")
        shutil.rmtree(ROOT, ignore_errors=True)
        if not (BASE / "complete").exists():
            shutil.rmtree(BASE, ignore_errors=True)
            BASE.mkdir(parents=True)
            address, release = archive()
            run("debootstrap", "--variant=minbase", release, BASE, address)
            (BASE / "complete").touch()
        run("cp", "-a", BASE, ROOT)
        shutil.copy("/etc/resolv.conf", ROOT / "etc" / "resolv.conf")
        for settings in pathlib.Path("/etc/apt/apt.conf.d").glob("*proxy*"):
            shutil.copy(settings, ROOT / "etc" / "apt" / "apt.conf.d")
        in_root("apt-get", "update")
        (ROOT / "packages").mkdir()
        cls.files = {}
        for file in (SOURCE_DIR / "build" / "packages").glob("*.deb"):
            shutil.copy(file, ROOT / "packages")
            cls.files[file.name.split("_")[0]] = f"/packages/{file.name}"
        for name in PACKAGES:
            if name not in cls.files:
                raise AssertionError(f"there is no package {name}, only {sorted(cls.files)}")
        cls.log = install(*(cls.files[name] for name in PACKAGES))

    def test_a_clean_system_has_nothing_of_it(self):
        self.assertFalse(list(BASE.rglob("libqoc*")))

    def test_all_are_installed(self):
        listed = in_root("dpkg-query", "--show", "--showformat=${Package} ${db:Status-Status}\n", *PACKAGES)
        self.assertEqual(sorted(listed.split("\n")[:-1]), sorted(f"{name} installed" for name in PACKAGES))

    def test_the_program_runs(self):
        words = '{"lexicons": [{"words": ["Apple", "Pear"]}], "parameters": {"maxEdits": 1}}'
        (ROOT / "tmp" / "words.json").write_text(words, encoding="utf-8")
        self.assertIn("Apple", in_root("qoc", "run", "--dictionary", "/tmp/words.json", "-", input="Aple\n"))

    def test_the_module_runs(self):
        program = "import qoc; print(qoc.Dictionary([['Apple']]).run('Aple', max_edits=1))"
        self.assertEqual(in_root("python3", "-c", program).strip(), "[<Result 'Apple', 1 edit, lexicon>]")

    def test_programs_are_built_against_the_development_package(self):
        install("g++", "pkg-config")
        consumer = SOURCE_DIR / "tests" / "build" / "consumer"
        for source in ("main.c", "main.cpp", "main_hpp.cpp"):
            shutil.copy(consumer / source, ROOT / "tmp")
        for compiler, source in (("gcc -std=c11", "main.c"), ("g++ -std=c++17", "main.cpp"),
                                 ("g++ -std=c++20", "main_hpp.cpp")):
            in_root("sh", "-c", f"{compiler} /tmp/{source} -o /tmp/consumer $(pkg-config --cflags --libs qoc)")
            self.assertEqual(in_root("/tmp/consumer").strip(), "A")
            in_root("sh", "-c", f"{compiler} /tmp/{source} -o /tmp/consumer $(pkg-config --cflags qoc) -l:libqoc.a "
                    "$(pkg-config --static --libs-only-other qoc) -lstdc++ -lm")
            self.assertEqual(in_root("/tmp/consumer").strip(), "A")

    def test_removal_leaves_nothing(self):
        """Runs on a copy, since the tests come in any order."""
        copy = ROOT.with_name("root-removal")
        shutil.rmtree(copy, ignore_errors=True)
        run("cp", "-a", ROOT, copy)
        try:
            run("chroot", copy, "dpkg", "--purge", *PACKAGES, env={"PATH": "/usr/sbin:/usr/bin:/sbin:/bin"})
            left = [path for path in (copy / "usr").rglob("*qoc*")]
            self.assertEqual(left, [])
        finally:
            shutil.rmtree(copy, ignore_errors=True)


if __name__ == "__main__":
    if os.geteuid() != 0:
        raise SystemExit("packages_test.py: run as root, for debootstrap and chroot")
    unittest.main()
