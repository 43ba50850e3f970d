"""What is made from the table of commands: help, manual pages, completions for bash, zsh and fish."""

import re
import shutil
import subprocess
import unittest

from program import ProgramTest


class CommandTableTest(ProgramTest):
    def setUp(self):
        super().setUp()
        code, _, err = self.run_program("generate", "--output", "share")
        self.assertEqual(code, 0, err)
        self.share = self.directory / "share"
        _, out, _ = self.run_program("--help")
        self.commands = re.findall(r"^  ([a-z]+) {2,}", out[out.index("Subcommands"):], re.MULTILINE)

    def helped(self, command):
        """The options that a command's help names."""
        code, out, err = self.run_program(command, "--help")
        self.assertEqual((code, err), (0, ""))
        return set(re.findall(r"^  (?:-[a-z],)?(--[a-z0-9-]+)", out, re.MULTILINE))

    def test_the_commands(self):
        self.assertEqual({"run", "fit", "swaps", "check", "explain", "convert", "report"} - set(self.commands), set())

    def test_every_command_has_a_manual_page_with_its_options(self):
        pages = {path.name for path in (self.share / "man" / "man1").iterdir()}
        self.assertEqual(pages, {"qoc.1"} | {f"qoc-{command}.1" for command in self.commands})
        for command in self.commands:
            with self.subTest(command=command):
                page = (self.share / "man" / "man1" / f"qoc-{command}.1").read_text(encoding="utf-8")
                options = page[page.index(".Sh OPTIONS"):page.index(".Sh EXIT STATUS")]
                named = {"-" + name for name in re.findall(r"^\.It .*Fl (-[a-z0-9-]+)", options, re.MULTILINE)}
                self.assertEqual(named, self.helped(command) - {"--help"})
                self.assertIn(f".Xr qoc-{command} 1",
                              (self.share / "man" / "man1" / "qoc.1").read_text(encoding="utf-8"))

    @unittest.skipUnless(shutil.which("mandoc"), "mandoc is not installed")
    def test_the_manual_pages_are_well_formed(self):
        for page in sorted((self.share / "man" / "man1").iterdir()):
            with self.subTest(page=page.name):
                done = subprocess.run(["mandoc", "-T", "lint", "-W", "warning", page], capture_output=True, text=True,
                                      check=False)
                self.assertEqual(done.stdout + done.stderr, "")

    def bash(self, *words):
        """What bash proposes behind these words, the last of which is being typed."""
        script = (f"source share/bash-completion/completions/qoc; COMP_WORDS=({' '.join(map(repr, words))}); "
                  f"COMP_CWORD={len(words) - 1}; _qoc; printf '%s\\n' \"${{COMPREPLY[@]}}\"")
        done = subprocess.run(["bash", "-c", script], capture_output=True, text=True, cwd=self.directory, check=True)
        return set(done.stdout.split())

    def test_bash(self):
        self.assertEqual(self.bash("qoc", ""), set(self.commands) | {"--help", "--version"})
        self.assertEqual(self.bash("qoc", "ex"), {"explain"})
        for command in self.commands:
            with self.subTest(command=command):
                names = {name for name in self.bash("qoc", command, "-") if name.startswith("--")}
                self.assertEqual(names, self.helped(command))
        self.assertEqual(self.bash("qoc", "run", "--unit", ""), {"line", "word"})
        self.assertEqual(self.bash("qoc", "run", "--from", "h"), {"hocr"})
        self.write("dictionary.json", "{}")
        self.assertEqual(self.bash("qoc", "run", "-d", "dict"), {"dictionary.json"})
        self.assertEqual(self.bash("qoc", "run", "dict"), {"dictionary.json"})

    @unittest.skipUnless(shutil.which("fish"), "fish is not installed")
    def test_fish(self):
        def propose(line):
            done = subprocess.run(
                ["fish", "--no-config", "-c",
                 f"source share/fish/vendor_completions.d/qoc.fish; complete --do-complete '{line}'"],
                capture_output=True, text=True, cwd=self.directory, check=True)
            return {proposal.split("\t")[0] for proposal in done.stdout.splitlines()}

        self.assertEqual(propose("qoc "), set(self.commands))
        for command in self.commands:
            with self.subTest(command=command):
                self.assertEqual(propose(f"qoc {command} --") - {"--help"}, self.helped(command) - {"--help"})
        self.assertEqual(propose("qoc run --unit "), {"line", "word"})

    @unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
    def test_zsh(self):
        # The function runs with stand-ins for the completion system that print what they are given.
        script = ("_arguments() { print -rl -- \"$@\"; }; _describe() { print -rl -- \"${(@P)2}\"; }; compdef() { : }; "
                  "source share/zsh/site-functions/_qoc; words=({}); CURRENT={}; _qoc")

        def propose(*words):
            done = subprocess.run(["zsh", "-f", "-c", script.replace("{}", " ".join(map(repr, words)), 1)
                                   .replace("{}", str(len(words)), 1)],
                                  capture_output=True, text=True, cwd=self.directory, check=True)
            self.assertEqual(done.stderr, "")
            return done.stdout.splitlines()

        named = {line.split(":")[0] for line in propose("qoc", "") if not line.startswith("-")}
        self.assertEqual(named, set(self.commands))
        for command in self.commands:
            with self.subTest(command=command):
                options = {re.match(r"--[a-z0-9-]+", line).group() for line in propose("qoc", command, "-")
                           if line.startswith("--")}
                self.assertEqual(options, self.helped(command))

    def test_an_option_of_another_command_is_refused(self):
        for command in self.commands:
            code, out, err = self.run_program(command, "--no-such-option")
            self.assertEqual((code, out), (2, ""), command)
            self.assertNotEqual(err, "")



if __name__ == "__main__":
    unittest.main()
