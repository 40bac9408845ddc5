#!/usr/bin/env python3
"""The manual page says what --help of the built program says: test_manual.py PROGRAM FOLDER RENDERER.

FOLDER holds dorvaselin.1. RENDERER is man, groff or mandoc, which may be missing (status 77), or none: then the page's
source is read."""

import pathlib
import re
import shutil
import subprocess
import sys

import dorvaselin
import help_texts

SKIPPED = 77
COMMANDS = {
    "man": [["man", "--warnings", "-E", "UTF-8", "-l"]],
    "groff": [["groff", "-man", "-Tutf8", "-P-cbou", "-wall"]],
    "mandoc": [["mandoc", "-T", "lint", "-W", "warning"], ["mandoc", "-T", "utf8"]],
}
ESCAPES = {r"\(rs": "\\", r"\-": "-", r"\(ga": "`", r"\(aq": "'", r"\(dq": '"', r"\(ha": "^", r"\(ti": "~", r"\&": ""}
SECTIONS = ["NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "COMMANDS", "LISTINGS AND IDS", "EXIT STATUS", "FILES"]
SECTIONS += ["ENVIRONMENT", "EXAMPLES", "SEE ALSO"]


def read_source(path):
    """The page as a renderer lays it out, without one."""
    lines = []
    for line in path.read_text(encoding="ascii").splitlines():
        if match := re.match(r"\.(SH|SS|TH|BR) (.*)", line):
            line = {"SH": "", "SS": "   "}.get(match[1], " " * 7) + match[2]
        elif line.startswith("."):
            continue
        else:
            line = " " * 7 + line
        line = re.sub(r"\\f[BIP]", "", line)
        lines.append(re.sub(r"\\(?:\(..|.)", lambda escape: ESCAPES[escape[0]], line))
    return "\n".join(lines)


class ManualPage(dorvaselin.CommandLineTest):
    path = None
    renderer = None

    def setUp(self):
        super().setUp()
        self.page = self.rendered()
        self.whole = self.help()
        self.folder_in_help = f"{self.folder}/home/.local/share/EPGDorvaSelin"

    def rendered(self):
        if self.renderer == "none":
            return read_source(self.path)
        output = ""
        for command in COMMANDS[self.renderer]:
            result = subprocess.run(
                [*command, self.path],
                capture_output=True,
                env=self.environment(MANROFFSEQ="", MANWIDTH="80"),
                timeout=600,
                check=False,
            )
            self.assertEqual((result.returncode, result.stderr), (0, b""), result.stdout)
            output += re.sub(".\b", "", result.stdout.decode())
        return output

    def help(self, *command):
        result = subprocess.run(
            [dorvaselin.program(), *command, "--help"],
            capture_output=True,
            env=self.environment(),
            timeout=600,
            check=True,
        )
        return help_texts.parse(result.stdout.decode())

    def sections(self, text, indentation):
        """heading -> text, of the headings with so many spaces in front."""
        parts = re.split(rf"^ {{{indentation}}}(\S.*)$", text, flags=re.MULTILINE)
        return dict(zip(parts[1::2], parts[2::2]))

    def test_it_has_its_sections(self):
        # The lines at the top and the bottom of a page begin at the margin too.
        found = [name for name in self.sections(self.page, 0) if re.fullmatch("[A-Z ]+", name)]
        self.assertEqual(found, SECTIONS)

    def test_it_says_every_text_of_the_help(self):
        page = help_texts.normalised(self.page)
        count = 0
        for text in (text for name in ["", *self.whole.commands()] for text in self.help(*name.split()).texts()):
            text = text.replace(f"default: {self.folder_in_help}", "default: $XDG_DATA_HOME/EPGDorvaSelin, or ")
            self.assertIn(help_texts.normalised(text), page)
            count += 1
        self.assertGreater(count, 50)

    def test_what_several_commands_say_stands_there_once(self):
        page = help_texts.normalised(self.page)
        self.assertEqual(page.count("in IDs and texts a backslash is written"), 1)
        self.assertEqual(page.count("0 done; 1 refused or failed"), 1)

    def test_it_names_the_commands_and_options_of_the_help_and_no_others(self):
        sections = self.sections(self.page, 0)
        general = self.whole.options()
        self.assertIn("--data-folder", general)
        self.assertEqual(set(help_texts.OPTION.findall(sections["OPTIONS"])), general)
        commands = self.sections(sections["COMMANDS"], 3)
        self.assertEqual(list(commands), self.whole.commands())
        for name, text in commands.items():
            own = self.help(name)
            self.assertEqual(set(help_texts.OPTION.findall(text)), own.options() - general, name)
            usage = help_texts.normalised(text)
            self.assertTrue(usage.startswith(f"dorvaselin {name}"), usage)
            for positional, _ in own.entries.get("Positionals", []):
                self.assertIn(f"{positional.split()[0]} ", usage)

    def test_it_is_nobodys_in_particular(self):
        self.assertIn("$XDG_DATA_HOME/EPGDorvaSelin", self.page)
        for path in (pathlib.Path.home(), dorvaselin.ROOT):
            if len(str(path)) > 1:
                self.assertNotIn(str(path), self.page)

    def test_it_is_of_the_version_of_the_program(self):
        version = self.run_well("--version")
        declared = re.search(r"project\(\w+\s+VERSION (\S+)", (dorvaselin.ROOT / "CMakeLists.txt").read_text())
        self.assertEqual(version, [f"dorvaselin {declared[1]}"])
        self.assertIn(version[0], self.page)


if __name__ == "__main__":
    ManualPage.renderer = sys.argv.pop(3)
    ManualPage.path = pathlib.Path(sys.argv.pop(2)) / "dorvaselin.1"
    if ManualPage.renderer != "none" and not shutil.which(ManualPage.renderer):
        print(f"{ManualPage.renderer} is not installed; on Debian it is in man-db, groff or mandoc")
        sys.exit(SKIPPED)
    dorvaselin.main()
