#!/usr/bin/env python3
"""Where the program finds its files, and what it may not read or write there."""

import os
import pathlib
import plistlib
import shutil
import subprocess
import sys
import unittest

import dorvaselin

NOBODY = 65534


@unittest.skipUnless(os.geteuid() == 0, "only the superuser can become somebody else")
class Permissions(dorvaselin.CommandLineTest):
    def setUp(self):
        super().setUp()
        self.write_store({"E1": {"title": "One"}})
        os.chmod(self.folder, 0o755)
        try:
            self.run_as_nobody("--help")
        except PermissionError:
            self.skipTest("the program lies where only the superuser can run it")

    def run_as_nobody(self, *arguments):
        return self.run_command(*arguments, user=NOBODY, group=NOBODY, extra_groups=[])

    def test_a_folder_that_may_not_be_written_keeps_its_store(self):
        before = self.store_path.read_bytes()
        result = self.run_as_nobody("edit", "E1", "--title", "Two")
        self.assertEqual(result.returncode, 1)
        self.assertIn(f"{self.store_path}: not saved: Permission denied".encode(), result.stderr)
        self.assertEqual(self.store_path.read_bytes(), before)
        self.assertEqual([path.name for path in self.data.iterdir()], ["EPGItems.plist"])

    def test_a_store_that_may_not_be_read_is_not_taken_for_an_empty_one(self):
        os.chmod(self.store_path, 0o600)
        os.chmod(self.data, 0o777)
        before = self.store_path.read_bytes()
        for arguments in (("list",), ("edit", "E1", "--title", "Two")):
            result = self.run_as_nobody(*arguments)
            self.assertEqual(result.returncode, 1)
            self.assertEqual(result.stderr.decode(), f"{self.store_path}: Permission denied\n")
        self.assertEqual(self.store_path.read_bytes(), before)

    def test_a_folder_that_may_be_entered_but_not_listed_sends_nothing_to_the_desktop(self):
        folder = self.configure_export()
        os.chmod(folder, 0o777)
        desktop = self.folder / "home/Desktop"
        desktop.mkdir(parents=True)
        os.chmod(desktop, 0o777)
        os.chmod(self.data, 0o711)
        events = self.write("events.plist", plistlib.dumps([]))
        for arguments in (
            ("configurations",),
            ("export", events),
            ("export", events, "--configuration", "Export"),
        ):
            result = self.run_as_nobody(*arguments)
            self.assertEqual((result.returncode, result.stdout), (1, b""))
            self.assertEqual(
                result.stderr.decode(), f"{self.data}: the export configurations cannot be listed: Permission denied\n"
            )
        self.assertEqual(list(desktop.iterdir()) + list(folder.iterdir()), [])

    def test_a_clone_that_may_not_be_written_is_told_in_a_sentence(self):
        clone = self.folder / "clone"
        (clone / "scripts").mkdir(parents=True)
        shutil.copy(dorvaselin.ROOT / "run", clone)
        shutil.copy(dorvaselin.ROOT / "scripts/common.sh", clone / "scripts")
        words = f"run: {clone}/build cannot be written, and this clone is built there; work in one that is your own\n"
        for make in (lambda: None, (clone / "build").mkdir, (clone / "build/lock").touch):
            make()
            result = subprocess.run(
                [clone / "run", "list"],
                capture_output=True,
                env=self.environment(EPG_SKIP_PACKAGES="1"),
                timeout=dorvaselin.LONGEST,
                check=False,
                user=NOBODY,
                group=NOBODY,
                extra_groups=[],
            )
            self.assertEqual((result.returncode, result.stderr.decode(), result.stdout), (1, words, b""))

    def test_reading_needs_no_permission_to_write(self):
        result = self.run_as_nobody("list")
        self.assertEqual((result.returncode, result.stdout), (0, b"E1\tOne\n"))

    def test_an_export_folder_that_may_not_be_written_is_named(self):
        folder = self.configure_export()
        events = self.write("events.plist", plistlib.dumps([{"eventEPGUniqueID": "E1"}]))
        result = self.run_as_nobody("export", events)
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"EPG XML File Write Error", result.stderr)
        self.assertIn(f"{folder}/".encode(), result.stderr)
        self.assertIn(b"Permission denied", result.stderr)
        self.assertEqual(list(folder.iterdir()), [])


class Places(dorvaselin.CommandLineTest):
    def catalogue(self, folder, tag):
        folder.mkdir(parents=True)
        (folder / "Tags.plist").write_bytes(plistlib.dumps({"tags": [tag]}))
        return folder

    def tags_shown(self, command, **changes):
        self.data.mkdir(exist_ok=True)
        result = subprocess.run(
            [command, "--data-folder", self.data, "show", "E1"],
            capture_output=True,
            env=self.environment(**changes),
            timeout=dorvaselin.LONGEST,
            check=False,
        )
        self.assertEqual(result.returncode, 0, result.stderr)
        return [line[4:] for line in result.stdout.decode().splitlines() if line.startswith("[")]

    def test_the_built_program_finds_the_resources_of_its_source(self):
        expected = plistlib.loads((dorvaselin.ROOT / "resources" / "Tags.plist").read_bytes())["tags"]
        self.assertEqual(self.tags_shown(dorvaselin.program()), expected)

    def test_an_installed_program_finds_the_resources_that_were_installed_with_it(self):
        (self.folder / "prefix" / "bin").mkdir(parents=True)
        installed = shutil.copy(dorvaselin.program(), self.folder / "prefix" / "bin")
        self.catalogue(self.folder / "prefix" / "share" / "dorvaselin", "Installed")
        self.assertEqual(self.tags_shown(installed), ["Installed"])

    def test_the_environment_names_other_resources(self):
        folder = self.catalogue(self.folder / "resources", "Named")
        self.assertEqual(self.tags_shown(dorvaselin.program(), DORVASELIN_RESOURCES=str(folder)), ["Named"])

    @unittest.skipUnless(sys.platform.startswith("linux"), "another platform has another folder")
    def test_data_lie_where_the_platform_keeps_them(self):
        for changes, folder in (
            ({}, self.folder / "home/.local/share/EPGDorvaSelin"),
            ({"XDG_DATA_HOME": str(self.folder / "xdg")}, self.folder / "xdg/EPGDorvaSelin"),
        ):
            environment = self.environment(**changes)
            for arguments in (["list"], ["edit", "E1", "--title", "One"], ["list"]):
                result = subprocess.run(
                    [dorvaselin.program(), *arguments],
                    capture_output=True,
                    env=environment,
                    timeout=dorvaselin.LONGEST,
                    check=False,
                )
                self.assertEqual(result.returncode, 0, result.stderr)
            self.assertEqual(result.stdout, b"E1\tOne\n")
            self.assertEqual([path.name for path in folder.iterdir()], ["EPGItems.plist"])

    def test_an_export_without_configurations_goes_to_the_desktop(self):
        self.write_store({})
        desktop = self.folder / "home/Desktop"
        desktop.mkdir(parents=True)
        events = self.write("events.plist", plistlib.dumps([]))
        path = pathlib.Path(self.run_well("export", events)[-1])
        self.assertEqual(path.parent, desktop)
        self.assertTrue(path.is_file())


if __name__ == "__main__":
    dorvaselin.main()
