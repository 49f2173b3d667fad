"""The completions for bash and PowerShell and the manual page: every command and option is in all three, bash completes
with the one, and man and mandoc find nothing amiss in the other. PowerShell's is only read: there is none here.

usage: manual_test.py TARNWICK.EXE
"""

import os
import pathlib
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

WINE = [] if os.name == "nt" else ["wine"]
TARNWICK = None


def tarnwick(*arguments):
    # Into a file: the end of a pipe would wait for processes that Wine starts on the side, and which stay.
    with tempfile.TemporaryFile() as output:
        subprocess.run([*WINE, TARNWICK, *arguments], stdout=output, check=True, timeout=120)
        output.seek(0)
        return output.read().decode("utf-8")


def section(text, title):
    """The lines of a help text below a title, up to the next blank line."""
    found = re.search(rf"^{title}:\n(.*?)(?:\n\n|\Z)", text, re.M | re.S)
    return found.group(1).splitlines() if found else []


def commands_by_help(words=()):
    """What --help says of each command: its words, options, the words that its argument takes, and its parts."""
    text = tarnwick(*words, "--help")
    options = [name for line in section(text, "Options") if line.startswith("  -")
               for name in line.split()[0].split(",")]
    choices = {}
    for line in [*section(text, "Options"), *section(text, "Positionals")]:
        found = re.match(r"  (\S+) \w+:\{([^}]*)\}", line)
        if found:
            choices[found.group(1).split(",")[-1]] = found.group(2).split(",")
    parts = [re.match(r"  (\S+)", line).group(1) for line in section(text, "Subcommands") if re.match(r"  \S", line)]
    yield " ".join(words), options, choices, parts
    for part in parts:
        yield from commands_by_help((*words, part))


def setUpModule():
    global COMMANDS, BASH, POWERSHELL, MANUAL
    COMMANDS = list(commands_by_help())
    BASH, POWERSHELL, MANUAL = tarnwick("completion", "bash"), tarnwick("completion", "powershell"), tarnwick("manual")


class Bash(unittest.TestCase):
    def completed(self, *words):
        """What the function offers for the last of these words."""
        script = BASH + ('COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMPREPLY=(unset); compopt() { echo no files; }\n'
                         '_tarnwick; printf "%s\\n" "${COMPREPLY[@]}"')
        run = subprocess.run(["bash", "--norc", "-uc", script, "bash", "tarnwick", *words], capture_output=True,
                             text=True, check=True, timeout=30)
        self.assertEqual(run.stderr, "")
        return run.stdout.split("\n")[:-1]

    def test_every_command_and_option_is_offered(self):
        self.assertGreater(len(COMMANDS), 20)
        for words, options, choices, parts in COMMANDS:
            with self.subTest(command=words):
                self.assertIn("--help", options)
                self.assertEqual(sorted(self.completed(*words.split(), "-")), sorted(options))
                if parts:
                    self.assertEqual(self.completed(*words.split(), ""), parts)
                for option, values in choices.items():
                    before = [option] if option.startswith("-") else []
                    self.assertEqual(sorted(self.completed(*words.split(), *before, "")), sorted(values))

    def test_words_are_completed_from_their_beginning(self):
        self.assertEqual(self.completed("ca"), ["catalogue", "capture"])
        self.assertEqual(self.completed("cat"), ["catalogue"])
        self.assertEqual(self.completed("catalogue", "fr"), ["from-csv"])
        self.assertEqual(self.completed("scan", "--no-i"), ["--no-icons"])
        self.assertEqual(self.completed("scan", "--format", "nd"), ["ndjson"])
        self.assertEqual(self.completed("scan", "--format", "=", "nd"), ["ndjson"])
        self.assertEqual(len(self.completed("scan", "--format", "=")), 5)

    def test_an_argument_is_no_command(self):
        self.assertIn("--page-size", self.completed("apps", "--filter", "scan", "--pa"))
        self.assertEqual(self.completed("explain", "catalogue", "ch"), [""])

    def test_a_file_is_left_to_the_shell_and_a_number_to_the_user(self):
        self.assertEqual(self.completed("scan", "-o", ""), [""])
        self.assertEqual(self.completed("scan", ""), [""])
        self.assertEqual(self.completed("watch", "--for", ""), ["no files", ""])

    def test_a_tab_completes_in_a_real_shell(self):
        with tempfile.TemporaryDirectory() as folder:
            rc = pathlib.Path(folder) / "rc"
            rc.write_text(BASH + "PS1='ready> '\nbind 'set bell-style none'\n", encoding="utf-8")
            self.assertIn("catalogue from-csv ", typed(folder, rc, "tarnwick cata\tfr\t"))
            self.assertIn("scan --format ndjson ", typed(folder, rc, "tarnwick scan --form\tnd\t"))
            (pathlib.Path(folder) / "my games.xml").touch()
            self.assertIn("scan my\\ games.xml ", typed(folder, rc, "tarnwick scan my\t"))

    @unittest.skipUnless(shutil.which("shellcheck"), "there is no shellcheck")
    def test_shellcheck_finds_nothing(self):
        run = subprocess.run(["shellcheck", "-s", "bash", "-"], input=BASH, capture_output=True, text=True, check=False)
        self.assertEqual(run.stdout, "")


def typed(folder, rc, keys):
    """What an interactive bash shows behind its prompt when these keys are typed."""
    process, terminal = pty.fork()
    if process == 0:
        os.chdir(folder)
        os.execvpe("bash", ["bash", "--rcfile", str(rc), "-i"], {**os.environ, "TERM": "dumb", "HOME": folder})
    try:
        until(terminal, b"ready> ")
        os.write(terminal, keys.encode())
        # The comment's end shows that bash is done with what stands before it.
        os.write(terminal, b"#end\n")
        shown = until(terminal, b"#end")
    finally:
        os.close(terminal)
        os.waitpid(process, 0)
    return shown.decode()


def until(terminal, mark):
    shown = b""
    end = time.monotonic() + 30
    while mark not in shown:
        if not select.select([terminal], [], [], max(0, end - time.monotonic()))[0]:
            raise AssertionError(f"bash showed no {mark}, but {shown}")
        shown += os.read(terminal, 4096)
    return shown


class PowerShell(unittest.TestCase):
    """The script as text: what it holds, and that its quotes and braces pair."""

    def table(self, name):
        """A table of the script: for each key the words in it, in their order."""
        body = re.search(rf"^    \${name} = @\{{\n(.*?)^    \}}$", POWERSHELL, re.M | re.S).group(1)
        entries = re.findall(r"^        '([^']*)' = \[ordered\]@\{\n(.*?)^        \}$", body, re.M | re.S)
        self.assertEqual(len(entries), body.count("[ordered]"))
        return {key: re.findall(r"^            '([^']*)' = '(?:[^']|'')+'$", text, re.M) for key, text in entries}

    def test_every_command_and_option_is_offered(self):
        following, values = self.table("following"), self.table("values")
        self.assertEqual(list(following), [words for words, *_ in COMMANDS])
        for words, options, choices, parts in COMMANDS:
            offered = [word for word in following[words] if word.startswith("-")]
            self.assertEqual(sorted(offered), sorted(options), words)
            arguments = [value for option in choices if not option.startswith("-") for value in choices[option]]
            self.assertEqual(sorted(set(following[words]) - set(offered)), sorted([*parts, *arguments]), words)
            for option, its_values in choices.items():
                if option.startswith("-"):
                    self.assertEqual(sorted(values[f"{words} {option}"]), sorted(its_values))
        self.assertEqual(values["scan -o"], [])
        self.assertNotIn("scan --no-icons", values)

    def test_braces_pair_outside_of_texts(self):
        code = re.sub(r"#.*", "", re.sub(r"'(?:[^']|'')*'|\"[^\"]*\"", "", POWERSHELL))
        self.assertNotIn("'", code)
        for opening, closing in ("{}", "()", "[]"):
            self.assertEqual(code.count(opening), code.count(closing))


class ManualPage(unittest.TestCase):
    def rendered(self, *command):
        environment = {**os.environ, "MANWIDTH": "200", "LC_ALL": "C.UTF-8", "MANROFFOPT": "-ww"}
        with tempfile.NamedTemporaryFile("w", suffix=".1", encoding="utf-8") as page:
            page.write(MANUAL)
            page.flush()
            run = subprocess.run([*command, page.name], env=environment, capture_output=True, text=True, check=False)
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        return re.sub(r".\x08", "", run.stdout)

    def test_every_command_and_option_is_there(self):
        text = self.rendered("man", "--warnings", "-l")
        headings = re.split(r"^ {1,3}(?=\S)", text[text.index("\nCOMMANDS"):text.index("\nEXIT STATUS")], flags=re.M)[1:]
        told = {heading.split("\n", 1)[0]: heading for heading in headings}
        told[""] = text[:text.index("\nCOMMANDS")]
        self.assertEqual(sorted(told), sorted(words for words, *_ in COMMANDS))
        for words, options, choices, _ in COMMANDS:
            for option in options:
                self.assertRegex(told[words], rf"(?m)^ +(-\w, )?{option}\b", words)
            for value in (value for values in choices.values() for value in values):
                self.assertRegex(told[words], rf"\b{value}\b")

    def test_groff_warns_of_nothing(self):
        text = self.rendered("groff", "-man", "-Tutf8", "-ww", "-z")
        self.assertEqual(text, "")

    @unittest.skipUnless(shutil.which("mandoc"), "there is no mandoc")
    def test_mandoc_misses_the_date_alone(self):
        """The page is made when it is asked for, so that any date in it would be made up."""
        run = subprocess.run(["mandoc", "-Tlint", "-Wwarning"], input=MANUAL, capture_output=True, text=True, check=False)
        self.assertEqual([line.split(": ", 2)[2] for line in run.stdout.splitlines()], ['WARNING: missing date, using "": TH'])


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    TARNWICK = sys.argv[1]
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
