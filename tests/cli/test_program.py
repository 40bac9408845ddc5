#!/usr/bin/env python3
"""The program among others: pipes, locks, signals, stores that it cannot use."""

import datetime
import fcntl
import os
import pathlib
import plistlib
import pty
import re
import resource
import select
import shutil
import signal
import subprocess
import sys
import unittest

import dorvaselin


class Pipes(dorvaselin.CommandLineTest):
    def setUp(self):
        super().setUp()
        self.run_well("import", dorvaselin.SAMPLES / "guide.xml")

    def shell(self, line):
        environment = self.environment(D=str(dorvaselin.program()), DATA=str(self.data))
        return subprocess.run(
            ["bash", "-c", f"set -o pipefail; d() {{ \"$D\" --data-folder \"$DATA\" \"$@\"; }}; {line}"],
            capture_output=True,
            env=environment,
            timeout=dorvaselin.LONGEST,
            check=False,
        )

    def test_a_listing_becomes_the_selection_of_an_edit(self):
        before = self.store()
        result = self.shell("d list | grep News | cut -f1 | d edit - --tag Repeat")
        self.assertEqual(result.returncode, 0, result.stderr)
        edited = 0
        for key, item in self.store().items():
            tags = before[key].get("tags", [])
            if "News" in item["title"] and "Repeat" not in tags:
                self.assertEqual(item["tags"], [*tags, "Repeat"])
                edited += 1
            else:
                self.assertEqual(item.get("tags", []), tags)
        self.assertGreater(edited, 2)

    def test_a_selection_of_nothing_is_refused(self):
        before = self.store_path.read_bytes()
        result = self.shell("(d list | grep 'no such title' || true) | cut -f1 | d edit - --tag Live")
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr.decode(), "standard input: no EPG unique ID\n")
        self.assertEqual(self.store_path.read_bytes(), before)

    def test_a_reader_that_leaves_early_ends_what_only_reads_without_a_word(self):
        guide = dorvaselin.SAMPLES / "guide.xml"
        for arguments in (
            ("list",),
            ("configurations",),
            ("show", "E1"),
            ("check", guide),
            ("--help",),
            ("list", "--help"),
        ):
            read, write = os.pipe()
            os.close(read)
            result = self.run_command(*arguments, stdout=write)
            os.close(write)
            words = b"E1: no such entry; the editor shows it empty\n" if arguments[0] == "show" else b""
            self.assertEqual((result.returncode, result.stderr), (-signal.SIGPIPE, words), arguments)

    def test_who_starts_the_program_with_sigpipe_ignored_hears_of_it(self):
        read, write = os.pipe()
        os.close(read)
        result = self.run_command(
            "list",
            stdout=write,
            restore_signals=False,
            preexec_fn=lambda: signal.signal(signal.SIGPIPE, signal.SIG_IGN),
        )
        os.close(write)
        self.assertEqual((result.returncode, result.stderr), (1, b"standard output: cannot be written\n"))

    def test_a_listing_whose_ids_were_not_cut_off_makes_no_entries(self):
        before = self.store_path.read_bytes()
        result = self.shell("d list | grep News | d edit - --tag Live")
        self.assertEqual(result.returncode, 1)
        self.assertEqual(
            result.stderr.decode(), "standard input: line 1: holds a tab; only the ID belongs here (cut -f1)\n"
        )
        self.assertEqual(self.store_path.read_bytes(), before)

    def test_a_change_is_saved_although_nobody_reads_what_the_program_says(self):
        read, write = os.pipe()
        os.close(read)
        result = self.run_command("edit", "new", "--title", "T", stdout=write)
        os.close(write)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(self.store()["new"]["title"], "T")
        self.assertEqual(
            result.stderr.decode(),
            f"standard output: cannot be written; what was asked for is done and saved: {self.store_path}\n",
        )

    @unittest.skipUnless(os.path.exists("/dev/full"), "no device that is always full")
    def test_a_listing_that_cannot_be_written_is_a_failure(self):
        with open("/dev/full", "wb") as full:
            self.assertEqual(self.run_command("list", stdout=full).returncode, 1)
            result = self.run_command("edit", "new", "--title", "T", stdout=full)
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"what was asked for is done and saved", result.stderr)
        self.assertEqual(self.store()["new"]["title"], "T")

    def test_standard_input_that_is_not_utf8_is_refused(self):
        before = self.store_path.read_bytes()
        result = self.run_command("edit", "-", "--title", "T", text=b"E1\n\xff\n")
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"standard input: line 2: not UTF-8", result.stderr)
        self.assertEqual(self.store_path.read_bytes(), before)

    def test_ids_and_texts_that_are_not_utf8_are_wrong_usage(self):
        for arguments in ((b"edit", b"\xff"), (b"edit", b"E1", b"--title", b"\xff"), (b"list\xff",)):
            self.assertEqual(self.run_command(*arguments).returncode, 2)

    @unittest.skipUnless(sys.platform.startswith("linux"), "another system may want names in its own encoding")
    def test_file_names_need_not_be_utf8(self):
        guide = os.fsencode(self.folder) + b"/caf\xe9.xml"
        shutil.copy(dorvaselin.SAMPLES / "guide.xml", guide)
        self.assertEqual(self.run_well("import", guide), ["62 programmes, 0 new entries, 54 kept entries"])

    def test_a_time_zone_that_there_is_not_keeps_wrong_times_off_the_air(self):
        folder = self.configure_export()
        for zone, status in (("Europe/Berln", 1), ("CET-1CEST,M3.5.0,M10.5.0/3", 0), (":Europe/Berlin", 0)):
            environment = self.environment(TZ=zone)
            result = self.run_command("export", dorvaselin.SAMPLES / "guide.xml", env=environment)
            self.assertEqual(result.returncode, status, result.stderr)
            self.assertEqual(len(list(folder.iterdir())), 1 - status)

    def test_statuses_are_0_1_and_2(self):
        self.assertEqual(self.run_command("list").returncode, 0)
        self.assertEqual(self.run_command("import", "none.xml").returncode, 1)
        self.assertEqual(self.run_command("import").returncode, 2)
        self.assertEqual(self.run_command("--help").returncode, 0)
        self.assertEqual(subprocess.run([dorvaselin.program()], capture_output=True, check=False).returncode, 2)


class Progress(dorvaselin.CommandLineTest):
    def show(self, stderr):
        """A command that goes on for as long as nobody reads what it prints."""
        return subprocess.Popen(
            self.command("show", "E1"), stdout=subprocess.PIPE, stderr=stderr, env=self.environment()
        )

    def test_long_work_is_shown_on_a_terminal_and_nowhere_else(self):
        self.write_store({"E1": {"title": "One", "description": "d" * (4 << 20)}})
        terminal, terminal_of_program = pty.openpty()
        self.addCleanup(os.close, terminal)
        # Both are at work before the progress of the second one starts to be waited for.
        with self.show(subprocess.PIPE) as elsewhere:
            self.assertEqual(elsewhere.stdout.read(7), b"Title: ")
            with self.show(terminal_of_program) as shown:
                os.close(terminal_of_program)
                written = b""
                # A slow machine may have shown progress of the work before.
                while not re.search(rb"Opening the editor: [0-9]+ s", written):
                    shows, _, _ = select.select([terminal], [], [], dorvaselin.LONGEST)
                    self.assertTrue(shows, "no progress is shown")
                    written += os.read(terminal, 1024)
                shown.stdout.read()
                self.assertEqual(shown.wait(dorvaselin.LONGEST), 0)
            elsewhere.stdout.read()
            self.assertEqual(elsewhere.stderr.read(), b"")
            self.assertEqual(elsewhere.wait(dorvaselin.LONGEST), 0)


class Readme(dorvaselin.CommandLineTest):
    def test_its_examples_hold_where_data_lie_elsewhere(self):
        if pathlib.Path(dorvaselin.program()).read_bytes()[:5] == b"\x7fELF\x01":
            self.skipTest("the file shows IDs of 64 bits")
        sys.path.insert(0, str(dorvaselin.ROOT / "tests/docs"))
        import readme_examples

        examples, complaints = readme_examples.examples_in((dorvaselin.ROOT / "README.md").read_text(encoding="utf-8"))
        scratch = readme_examples.Scratch(self.folder, dorvaselin.program())
        scratch.environment["XDG_DATA_HOME"] = str(self.folder / "xdg")
        for example in examples:
            if not example.in_a_clone:
                complaints += readme_examples.problems_of(example, scratch)
        self.assertEqual(complaints, [])
        self.assertTrue((self.folder / "xdg/EPGDorvaSelin/EPGItems.plist").exists())


class Store(dorvaselin.CommandLineTest):
    def test_values_of_every_type_survive_an_edit(self):
        odd = {
            "uniqueID": 7,
            "title": "One",
            "integer": -(2**63),
            "large": 2**64 - 1,
            "real": 0.1,
            "true": True,
            "date": datetime.datetime(1969, 7, 20, 20, 17, 40),
            "data": bytes(range(256)),
            "nested": {"list": [1, [2, {"three": "3"}], "", " "], "é": "\t\n"},
        }
        for form in (plistlib.FMT_XML, plistlib.FMT_BINARY):
            self.write_store({"E1": odd, "E2": {"title": "Two"}, "no item": ["a", "list"]}, form)
            self.run_well("edit", "E1", "--tag", "Live")
            expected = dict(odd, uniqueID="E1", description="", imageURL="", tags=["Live"])
            self.assertEqual(self.store(), {"E1": expected, "E2": {"title": "Two"}, "no item": ["a", "list"]})

    def test_two_saves_of_the_same_store_are_the_same_bytes(self):
        self.run_well("import", dorvaselin.SAMPLES / "guide.xml")
        before = self.store_path.read_bytes()
        self.run_well("edit", "E1", "--title", "x")
        self.run_well("remove", "E1")
        self.assertEqual(self.store_path.read_bytes(), before)

    def test_a_store_that_is_no_property_list_stays_as_it_is(self):
        for content in (b"", b"\0" * 100, b"<plist>", b"bplist00" + b"\xff" * 40, b"{ E1 = {}; "):
            self.data.mkdir(exist_ok=True)
            self.store_path.write_bytes(content)
            for arguments in (
                ("list",),
                ("import", dorvaselin.SAMPLES / "guide.xml"),
                ("edit", "E1", "--title", "x"),
                ("remove", "E1"),
            ):
                result = self.run_command(*arguments)
                self.assertEqual(result.returncode, 1)
                self.assertIn(str(self.store_path).encode(), result.stderr)
            self.assertEqual(self.store_path.read_bytes(), content)
            self.assertEqual([path.name for path in self.data.iterdir()], ["EPGItems.plist"])

    def test_a_save_that_the_system_refuses_is_reported_and_leaves_nothing(self):
        self.write_store({"E1": {"title": "One"}})
        before = self.store_path.read_bytes()
        result = self.run_command(
            "import",
            dorvaselin.SAMPLES / "guide.xml",
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (4096, 4096)),
        )
        self.assertEqual(result.returncode, 1)
        self.assertIn(f"{self.store_path}: not saved: File too large".encode(), result.stderr)
        self.assertEqual(self.store_path.read_bytes(), before)
        self.assertEqual([path.name for path in self.data.iterdir()], ["EPGItems.plist"])


class Locks(dorvaselin.CommandLineTest):
    def test_changes_that_are_made_at_once_are_all_kept(self):
        count = 16
        running = [
            subprocess.Popen(
                self.command("edit", f"E{i}", "--title", f"Title {i}"),
                stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL,
                env=self.environment(),
            )
            for i in range(count)
        ]
        self.assertEqual([process.wait(dorvaselin.LONGEST) for process in running], [0] * count)
        self.assertEqual(
            {key: item["title"] for key, item in self.store().items()}, {f"E{i}": f"Title {i}" for i in range(count)}
        )
        self.assertEqual([path.name for path in self.data.iterdir()], ["EPGItems.plist"])

    def test_who_changes_waits_for_who_changes_and_says_so(self):
        self.write_store({"E1": {"title": "One"}})
        folder = os.open(self.data, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        fcntl.flock(folder, fcntl.LOCK_EX)
        with subprocess.Popen(
            self.command("edit", "E1", "--title", "Two"),
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            env=self.environment(),
        ) as waiting:
            self.assertIn(b"Waiting", waiting.stderr.readline())
            # Meanwhile reading goes on, and the one who has the lock may change what the other one has not read yet.
            self.assertEqual(self.run_well("list"), ["E1\tOne"])
            self.write_store({"E1": {"title": "One"}, "E2": {"title": "Meanwhile"}})
            fcntl.flock(folder, fcntl.LOCK_UN)
            self.assertEqual(waiting.wait(dorvaselin.LONGEST), 0)
        self.assertEqual({key: item["title"] for key, item in self.store().items()}, {"E1": "Two", "E2": "Meanwhile"})

    def test_a_killed_program_leaves_no_lock(self):
        self.write_store({"E1": {"title": "One"}})
        folder = os.open(self.data, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        fcntl.flock(folder, fcntl.LOCK_EX)
        with subprocess.Popen(
            self.command("remove", "E1"), stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=self.environment()
        ) as waiting:
            waiting.stderr.readline()
            waiting.send_signal(signal.SIGKILL)
            waiting.wait(dorvaselin.LONGEST)
        fcntl.flock(folder, fcntl.LOCK_UN)
        self.run_well("edit", "E1", "--title", "Two")


if __name__ == "__main__":
    dorvaselin.main()
