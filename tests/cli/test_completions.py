#!/usr/bin/env python3
"""The completions in real shells: test_completions.py PROGRAM FOLDER SHELL.

FOLDER holds the completions. Where the shell cannot be tried here the status is 77."""

import pathlib
import plistlib
import subprocess
import sys

import dorvaselin
import help_texts
import shells

SKIPPED = 77


class Completions(dorvaselin.CommandLineTest):
    manual = None
    shell_class = None

    def setUp(self):
        super().setUp()
        (self.folder / "bin").mkdir()
        (self.folder / "bin/dorvaselin").symlink_to(dorvaselin.program())
        (self.folder / "home").mkdir()
        self.place = self.folder / "place"
        self.place.mkdir()
        path = f"{self.folder}/bin:{self.environment()['PATH']}"
        self.shell = self.shell_class(self.manual.resolve(), self.place, self.environment(PATH=path))
        self.addCleanup(self.shell.close)

    def make_data(self, name, *configurations):
        """A data folder in the shell's place."""
        folder = self.place / name
        folder.mkdir(parents=True)
        ids = ["E1", "E2", "crid://example/e=1", "a b", "$HOME", "`id`", "-x", "new\nline", "back\\slash", "é"]
        (folder / "EPGItems.plist").write_bytes(plistlib.dumps({name: {"title": f"Title of {name!r}"} for name in ids}))
        for configuration in configurations:
            (folder / f"{configuration}.epgconf").write_bytes(plistlib.dumps({"exportPath": str(self.folder)}))
        return folder

    def help(self, *command):
        words = [dorvaselin.program(), *command, "--help"]
        result = subprocess.run(words, capture_output=True, timeout=600, check=True)
        return help_texts.parse(result.stdout.decode())

    def assert_offers(self, line, *expected):
        # An equals sign that a shell adds and takes away again is not the option's.
        self.assertEqual(sorted(word.rstrip("=") for word in self.shell.words(line)), sorted(expected), line)

    def test_commands(self):
        commands = self.help().commands()
        self.assertIn("import", commands)
        self.assert_offers("dorvaselin ", *commands)
        self.assert_offers("dorvaselin imp", "import")
        self.assert_offers("dorvaselin --data-folder . e", "export", "edit")
        self.assert_offers("dorvaselin --data-folder=. e", "export", "edit")
        self.assert_offers("dorvaselin zz")

    def test_options_are_those_of_the_help(self):
        general = self.help().options()
        self.assert_offers("dorvaselin -", *general)
        for command in self.help().commands():
            self.assert_offers(f"dorvaselin {command} -", *(general | self.help(command).options()))
        self.assert_offers("dorvaselin edit --untag News E1 --im", "--image-url")
        self.assert_offers("dorvaselin edit --title --dry --d", "--data-folder", "--description", "--dry-run")

    def test_files(self):
        (self.place / "programme guide.xml").touch()
        (self.place / "programme folder").mkdir()
        for command in ("import", "export", "check", "import --replace", "export --configuration E", "check --"):
            words = self.shell.words(f"dorvaselin {command} prog")
            self.assertEqual({word.rstrip("/") for word in words}, {"programme guide.xml", "programme folder"}, command)
        self.assert_offers("dorvaselin import guide.xml prog")
        self.assert_offers("dorvaselin list prog")
        self.assert_offers("dorvaselin prog")

    def test_folders(self):
        (self.place / "data.xml").touch()
        (self.place / "data folder").mkdir()
        for before in ("--data-folder ", "--data-folder=", "import --data-folder ", "edit E1 --data-folder "):
            (word,) = self.shell.words(f"dorvaselin {before}dat")
            self.assertEqual(word.split("=")[-1].rstrip("/"), "data folder", before)

    def test_configurations(self):
        self.make_data("data", "Evening", "Late Night", "It's Late")
        for data in ("--data-folder data", "--data-folder=data", f"--data-folder {self.place}/data"):
            self.assert_offers(f"dorvaselin {data} export --configuration ", "Evening", "Late Night", "It's Late")
            self.assert_offers(f"dorvaselin export {data} guide.xml --configuration L", "Late Night")
        self.assert_offers("dorvaselin --data-folder data export --configuration=E", "--configuration=Evening")
        self.assert_offers("dorvaselin --data-folder data export --configuration Late\\ N", "Late Night")

    def test_a_word_with_an_open_quotation_mark(self):
        self.make_data("data", "Evening", "Late Night")
        for typed in ('"Late N', "'Late N", '"La', "'La", "Late\\ N", "La"):
            word = self.shell.only_word(f"dorvaselin --data-folder data export --configuration {typed}")
            self.assertEqual(word, "Late Night", typed)

    def test_data_folders_with_names_that_need_quoting(self):
        self.make_data("my $HOME: the data", "Evening")
        for typed in ("my\\ \\$HOME:\\ the\\ data", "'my $HOME: the data'", '"my \\$HOME: the data"'):
            self.assert_offers(f"dorvaselin --data-folder {typed} export --configuration E", "Evening")

    def test_entries(self):
        self.make_data("data")
        data = "dorvaselin --data-folder data"
        for command in ("show", "remove", "edit", "edit --dry-run --title T E2", "duplicate", "duplicate E2"):
            self.assert_offers(f"{data} {command} E", "E1", "E2")
        self.assert_offers(f"{data} show ", "E1", "E2", "crid://example/e=1")
        self.assert_offers(f"{data} show c", "crid://example/e=1")
        self.assert_offers(f"{data} show crid://exa", "crid://example/e=1")
        self.assert_offers(f"{data} show -- E", "E1", "E2")
        self.assert_offers(f"{data} duplicate E1 E2 E")
        self.assert_offers(f"{data} list E")

    def test_tags(self):
        self.make_data("data")
        catalogue = plistlib.loads((dorvaselin.ROOT / "resources/Tags.plist").read_bytes())["tags"]
        self.assert_offers("dorvaselin --data-folder data edit E1 --tag ", *catalogue)
        self.assert_offers("dorvaselin edit --tag News --untag Aud", "Audio Described")

    def test_texts_are_left_alone(self):
        self.make_data("data")
        self.assert_offers("dorvaselin --data-folder data edit E1 --title E")
        self.assert_offers("dorvaselin --data-folder data edit E1 --description ")

    def test_the_usual_data_folder(self):
        folder = self.folder / "home/.local/share/EPGDorvaSelin"
        folder.parent.mkdir(parents=True)
        self.make_data("data").rename(folder)
        self.assert_offers("dorvaselin show E", "E1", "E2")
        self.assert_offers("dorvaselin --data-folder ~/.local/share/EPGDorvaSelin show E", "E1", "E2")

    def test_a_program_that_is_not_in_the_path(self):
        self.make_data("data")
        # What bash-completion loads for a path, bash takes only when it is asked again.
        self.assert_offers("dorvaselin imp", "import")
        for program in ("../bin/dorvaselin", f"{self.folder}/bin/dorvaselin"):
            self.assert_offers(f"{program} --data-folder data show E", "E1", "E2")

    def test_what_cannot_be_asked_offers_nothing_and_says_nothing(self):
        (self.place / "broken").mkdir()
        (self.place / "broken/EPGItems.plist").write_text("<plist>")
        for data in ("none", "broken", "broken/EPGItems.plist", "$(touch ran)", "`touch ran`"):
            for rest in ("show E", "edit E --tag N", "export --configuration E"):
                self.assert_offers(f"dorvaselin --data-folder '{data}' {rest}")
        self.assertFalse((self.place / "ran").exists())
        self.assertNotIn(b"no such", self.shell.output)
        self.assertNotIn(b"property list", self.shell.output)


if __name__ == "__main__":
    Completions.shell_class = shells.SHELLS[sys.argv.pop(3)]
    Completions.manual = pathlib.Path(sys.argv.pop(2))
    if reason := Completions.shell_class.reason():
        print(reason)
        sys.exit(SKIPPED)
    dorvaselin.main()
