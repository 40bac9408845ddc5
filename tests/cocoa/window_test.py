#!/usr/bin/env python3
"""Drives the window host with real mouse clicks and key strokes on an X server of its own, and checks the files.

usage: window_test.py --window PROGRAM --bundle BUNDLE --dorvaselin PROGRAM --export-gate LIBRARY --guide FILE
                      --output FOLDER [--images FOLDER] [unittest arguments…]

What a failed test saw is kept in the output folder. With --images, the pictures of the documentation are taken anew.
"""

import argparse
import datetime
import errno
import os
import pathlib
import plistlib
import shutil
import subprocess
import sys
import time
import unittest
import xml.etree.ElementTree as ElementTree

# A hang gets there, nothing else does.
LONGEST_WAIT = 300
LONGEST_PROCESS = 3500
BETWEEN_LOOKS = 0.02
# Commit, Revert, Duplicate, Remove, Export.
USUAL_BUTTONS = 5

options = None
display = None


def eventually(look, what):
    """Looks until it sees something and returns that."""
    end = time.monotonic() + LONGEST_WAIT
    while time.monotonic() < end:
        seen = look()
        if seen:
            return seen
        time.sleep(BETWEEN_LOOKS)
    raise AssertionError(f"never: {what}")


class Process:
    """A process that cannot outlive its time, nor this one's."""

    def __init__(self, command, log, **arguments):
        limited = ["timeout", "--kill-after=1", str(LONGEST_PROCESS), *command]
        self.log = open(log, "ab")
        self.process = subprocess.Popen(
            limited, stdin=subprocess.DEVNULL, stdout=self.log, stderr=self.log, **arguments
        )

    def end(self):
        if self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(LONGEST_WAIT)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        self.log.close()


class Display:
    """An X server with a window manager and without anything else."""

    def __init__(self, folder):
        reader, writer = os.pipe()
        command = ["Xvfb", "-displayfd", str(writer), "-screen", "0", "1400x1000x24", "-nolisten", "tcp", "-noreset"]
        # On a busy machine a key can stay down for so long that it would repeat.
        command += ["-r"]
        self.server = Process(command, folder / "xvfb.log", pass_fds=(writer,))
        os.close(writer)
        with os.fdopen(reader) as number:
            name = number.readline().strip()
        if not name:
            raise RuntimeError("no X server")
        self.environment = {
            **os.environ,
            "DISPLAY": f":{name}",
            "HOME": str(folder),
            "TZ": "UTC",
            "GNUSTEP_TZ": "UTC",
            "LANG": "C.UTF-8",
            "GNUSTEP_USER_ROOT": str(folder / "GNUstep"),
        }
        configuration = pathlib.Path(__file__).with_name("openbox.xml")
        command = ["openbox", "--sm-disable", "--config-file", str(configuration)]
        self.manager = Process(command, folder / "openbox.log", env=self.environment)
        eventually(self.is_managed, "a window manager")

    def is_managed(self):
        found = self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK", check=False)
        return found.returncode == 0 and "window id" in found.stdout

    def run(self, *command, check=True):
        return subprocess.run(
            command, env=self.environment, check=check, timeout=LONGEST_WAIT, capture_output=True, text=True
        )

    def end(self):
        self.manager.end()
        self.server.end()


class ExportGate:
    """Holds a window's first export before its file is whole, until it is opened."""

    def __init__(self, folder):
        # Beside the day files, which tells the gate which files it holds.
        self.pipe = folder / "gate"
        os.mkfifo(self.pipe)
        self.environment = {"LD_PRELOAD": options.export_gate, "EPG_EXPORT_GATE": str(self.pipe)}
        self.end = None

    def has_come(self):
        """Whether an export stands at the gate. From then on only opening lets it go."""
        try:
            self.end = os.open(self.pipe, os.O_WRONLY | os.O_NONBLOCK)
        except OSError as error:
            if error.errno != errno.ENXIO:
                raise
        return self.end is not None

    def open(self):
        if self.end is not None:
            os.close(self.end)
            self.end = None


class Window:
    """The host's window, seen through the description that it keeps."""

    def __init__(self, folder, events, **environment):
        self.folder = folder
        self.file = folder / "window.plist"
        self.read = None
        self.description = {}
        command = [options.window, "-PluginBundle", options.bundle, "-DataFolder", str(folder / "data")]
        command += ["-EventsFile", str(events), "-DescriptionFile", str(self.file)]
        self.process = Process(command, folder / "window.log", env={**display.environment, **environment})
        try:
            self.id = eventually(self.find, "the window on the screen")
            eventually(self.is_active, "the window with the keyboard")
        except BaseException:
            self.process.end()
            raise

    def has_ended(self):
        return self.process.process.poll() is not None

    def find(self):
        if self.has_ended():
            raise AssertionError((self.folder / "window.log").read_text(errors="replace"))
        title = self.described().get("title")
        if not title:
            return None
        found = display.run("xdotool", "search", "--onlyvisible", "--name", "^" + title, check=False)
        return found.stdout.split()[0] if found.stdout else None

    def is_active(self):
        # What the window manager and the program itself think of it; until both agree, clicks may go astray.
        active = display.run("xdotool", "getactivewindow", check=False).stdout.strip()
        return active == self.id and self.described().get("key")

    def described(self):
        try:
            # Every change is a file of its own, and reading it takes longer than anything else that a look does.
            found = os.stat(self.file)
            if (found.st_ino, found.st_mtime_ns) != self.read:
                self.description = plistlib.loads(self.file.read_bytes())
                self.read = found.st_ino, found.st_mtime_ns
        except FileNotFoundError:
            pass
        return self.description

    def views(self, kind, **wanted):
        return [
            view
            for view in self.described().get("views", [])
            if view["kind"] == kind and all(view.get(key) == value for key, value in wanted.items())
        ]

    def tables(self):
        found = self.views("table")
        lists = [table for table in found if not table["rows"] or "title" in table["rows"][0]]
        return lists[0], next(table for table in found if table is not lists[0])

    def entries(self):
        return [row["title"]["value"] for row in self.tables()[0]["rows"]]

    def selected(self):
        return [row["title"]["value"] for row in self.tables()[0]["rows"] if row["selected row"]]

    def tag(self, name):
        return next(row for row in self.tables()[1]["rows"] if row["name"]["value"] == name)

    def state(self, name):
        return int(self.tag(name)["selected"]["value"])

    def tags(self, state):
        return [row["name"]["value"] for row in self.tables()[1]["rows"] if int(row["selected"]["value"]) == state]

    def fields(self):
        """Search, title, description, image URL."""
        return self.views("field")

    def message(self):
        # The notice is the last of the labels that stand at the foot.
        return min(self.views("label"), key=lambda label: label["place"][1])["text"]

    def button(self, title):
        return next(iter(self.views("button", text=title)), None)

    def size(self):
        geometry = display.run("xdotool", "getwindowgeometry", "--shell", self.id).stdout
        values = dict(line.split("=") for line in geometry.split())
        return int(values["WIDTH"]), int(values["HEIGHT"])

    def point(self, place):
        left, bottom, width, height = place
        return int(left + width / 2), int(self.size()[1] - bottom - height / 2)

    def click(self, place, key=None):
        x, y = self.point(place)
        display.run("xdotool", "mousemove", "--window", self.id, str(x), str(y))
        if key:
            display.run("xdotool", "keydown", key)
        # Press and release in one instant are no click that any hand makes, and GNUstep can lose the release then.
        display.run("xdotool", "mousedown", "1")
        try:
            eventually(lambda: self.described().get("mouse is down"), "the mouse seen down")
        finally:
            # Or no later test on this screen could click.
            display.run("xdotool", "mouseup", "1")
        eventually(lambda: self.has_ended() or not self.described().get("mouse is down"), "the mouse seen up")
        if key:
            display.run("xdotool", "keyup", key)

    def press(self, title):
        button = eventually(lambda: self.button(title), f"a button {title}")
        self.click(button["place"])

    def answer(self, title):
        """The question's buttons stand lower than the others."""
        eventually(lambda: len(self.views("button")) > USUAL_BUTTONS, "a question")
        buttons = self.views("button", text=title)
        self.click(min(buttons, key=lambda button: button["place"][1])["place"])

    def key(self, *keys):
        display.run("xdotool", "key", *keys)

    def type(self, text):
        display.run("xdotool", "type", "--delay", "5", text)

    def select(self, *titles):
        rows = {row["title"]["value"]: row for row in reversed(self.tables()[0]["rows"])}
        for index, title in enumerate(titles):
            self.click(rows[title]["title"]["place"], "ctrl" if index else None)
            expected = set(titles[: index + 1])
            eventually(lambda: set(self.selected()) == expected, f"{expected} selected, not {self.selected()}")

    def picture(self, path):
        path.parent.mkdir(parents=True, exist_ok=True)
        display.run("import", "-window", self.id, str(path))

    def end(self):
        self.process.end()


class WindowTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(options.output) / self.id().split(".")[-1]
        shutil.rmtree(self.folder, ignore_errors=True)
        for name in ("data", "export"):
            (self.folder / name).mkdir(parents=True)
        configuration = {"exportPath": str(self.folder / "export")}
        (self.folder / "data" / "Evening.epgconf").write_bytes(plistlib.dumps(configuration))
        self.window = None

    def tearDown(self):
        failed = any(error for _, error in self._outcome.errors) if hasattr(self._outcome, "errors") else False
        if not failed and hasattr(self._outcome, "result"):
            result = self._outcome.result
            failed = any(test is self for test, _ in result.failures + result.errors)
        if self.window:
            if failed and self.window.process.process.poll() is None:
                display.run("import", "-window", "root", str(self.folder / "failure.png"), check=False)
            self.window.end()
        if not failed:
            shutil.rmtree(self.folder)

    def open(self, events=None, known=True, **environment):
        events = events or options.guide
        if known:
            self.take_in(events)
        self.window = Window(self.folder, events, **environment)
        return self.window

    def take_in(self, guide):
        command = [options.dorvaselin, "--data-folder", str(self.folder / "data"), "import", str(guide)]
        subprocess.run(command, check=True, capture_output=True, timeout=LONGEST_WAIT)

    def store(self):
        return plistlib.loads((self.folder / "data" / "EPGItems.plist").read_bytes())

    def titles(self):
        return [item.get("title") for item in self.store().values()]

    def programmes(self):
        files = list((self.folder / "export").glob("*.xml"))
        if not files:
            return None
        return ElementTree.parse(files[0]).getroot().findall("program")

    def exported_message(self):
        return f"Exported to {self.folder / 'export'}"

    def test_several_entries_are_edited_committed_and_exported(self):
        window = self.open()
        window.select("Morning Headlines", "Dawn Chorus", "Good Morning, Quillmere")
        for field in window.fields()[1:]:
            self.assertEqual(field["text"], "")
            self.assertEqual(field["placeholder"], "<Multiple Values>")
        self.assertEqual(window.state("Live"), -1)
        self.assertEqual(window.state("Premiere"), 0)
        window.click(window.tag("Premiere")["selected"]["place"])
        eventually(lambda: window.state("Premiere") == 1, "a tag clicked on")
        self.assert_states_look_different(window)
        if options.images:
            self.take_pictures(window)

        window.click(window.tag("Live")["selected"]["place"])
        eventually(lambda: window.state("Live") == 1, "a mixed tag clicked on")
        window.click(window.fields()[1]["place"])
        eventually(lambda: window.fields()[1]["has keyboard"], "the title field with the keyboard")
        window.type("Kids' Morning & more")
        window.press("Commit")
        eventually(lambda: window.message() == "3 entries committed", "the commit told")
        eventually(lambda: self.titles().count("Kids' Morning & more") == 3, "three titles in the file")
        edited = [item for item in self.store().values() if item["title"] == "Kids' Morning & more"]
        for item in edited:
            self.assertIn("Live", item["tags"])
            self.assertIn("Premiere", item["tags"])
            self.assertTrue(item["description"])
        self.assertEqual(len({item["description"] for item in edited}), 3)

        window.press("Export")
        eventually(lambda: window.message() == self.exported_message(), "the export told")
        written = [program.findtext("title") for program in self.programmes()]
        self.assertEqual(written.count("Kids' Morning & more"), 3)
        self.assertEqual(len(written), len(window.entries()))
        day = datetime.datetime.now(datetime.timezone.utc)
        days = {(day - datetime.timedelta(hours=1)).strftime("%Y%m%d"), day.strftime("%Y%m%d")}
        self.assertIn(next((self.folder / "export").iterdir()).stem, days)

    def test_a_mixed_field_with_the_keyboard_still_shows_that_it_is_mixed(self):
        window = self.open()
        window.select("Morning Headlines", "Dawn Chorus")
        before = self.grey_pixels(window, 1)
        self.assertGreater(before, 20)
        window.click(window.fields()[1]["place"])
        eventually(lambda: window.fields()[1]["has keyboard"], "the title field with the keyboard")
        eventually(lambda: self.grey_pixels(window, 1) > before / 2, "the placeholder in the field with the keyboard")
        window.type("l")
        eventually(lambda: self.grey_pixels(window, 1) < before / 4, "no placeholder beside what is typed")
        display.run("xdotool", "key", "BackSpace")
        eventually(lambda: self.grey_pixels(window, 1) > before / 2, "the placeholder in the emptied field")

    def grey_pixels(self, window, field):
        """How many pixels inside a field are of the colour of placeholders, or nearly so."""
        path = self.folder / "field.png"
        window.picture(path)
        left, bottom, width, height = window.fields()[field]["place"]
        top = window.size()[1] - bottom - height
        crop = f"{int(width) - 8}x{int(height) - 8}+{int(left) + 4}+{int(top) + 4}"
        command = ("convert", str(path), "-crop", crop, "-colorspace", "gray", "-depth", "8", "gray:-")
        done = subprocess.run(command, env=display.environment, check=True, timeout=LONGEST_WAIT, capture_output=True)
        return sum(96 <= value <= 176 for value in done.stdout)

    def assert_states_look_different(self, window):
        """The pixels of an off, an on and a mixed checkbox."""
        path = self.folder / "states.png"
        window.picture(path)
        seen = {}
        for name, row in (("mixed", "Live"), ("on", "Premiere"), ("off", "Interactive")):
            left, bottom, width, height = window.tag(row)["selected"]["place"]
            top = window.size()[1] - bottom - height
            # Within the box, so that neither its frame nor the row's selection counts.
            crop = f"8x9+{int(left) + 3}+{int(top) + 3}"
            command = ("convert", str(path), "-crop", crop, "-colorspace", "gray", "-depth", "8", "txt:-")
            pixels = display.run(*command).stdout.splitlines()[1:]
            values = [pixel.split()[2] for pixel in pixels]
            seen[name] = [value != values[0] for value in values]
        self.assertFalse(any(seen["off"]))
        self.assertTrue(any(seen["on"]))
        self.assertTrue(any(seen["mixed"]))
        self.assertNotEqual(seen["on"], seen["mixed"])

    def take_pictures(self, window):
        images = pathlib.Path(options.images)
        # The selection moves off the tags that the picture is about.
        window.click(window.tag("UHD")["name"]["place"])
        window.picture(images / "window.png")
        width, height = window.size()
        labels = [label["place"] for label in window.views("label") if label["text"].endswith(":")]
        fields = [field["place"] for field in window.fields()[1:]]
        table = window.tables()[1]["place"]
        left = min(place[0] for place in labels) - 6
        right = max(place[0] + place[2] for place in fields) + 8
        top = height - max(place[1] + place[3] for place in fields) - 8
        bottom = height - table[1] + 8
        crop = f"{int(right - left)}x{int(bottom - top)}+{int(left)}+{int(top)}"
        display.run("convert", str(images / "window.png"), "-crop", crop, "+repage", str(images / "editor.png"))

    def test_unsaved_edits_are_asked_about_when_the_selection_changes(self):
        window = self.open()
        window.select("Dawn Chorus")
        before = self.store()
        window.click(window.tag("Premiere")["selected"]["place"])
        eventually(lambda: window.state("Premiere") == 1, "a tag clicked on")

        row = next(row for row in window.tables()[0]["rows"] if row["title"]["value"] == "Pip & Pocket")
        window.click(row["title"]["place"])
        eventually(lambda: "not saved" in window.message(), "the question")
        self.assertEqual(window.selected(), ["Dawn Chorus"])
        window.answer("Keep Editing")
        eventually(lambda: window.message() == "Editing “Dawn Chorus”", "the question gone")
        self.assertEqual(window.state("Premiere"), 1)

        window.click(row["title"]["place"])
        window.answer("Discard")
        eventually(lambda: "Pip & Pocket" in window.selected(), "the other entry selected")
        self.assertEqual(self.store(), before)
        window.select("Dawn Chorus")
        self.assertEqual(window.state("Premiere"), 0)

        window.click(window.tag("Premiere")["selected"]["place"])
        eventually(lambda: window.state("Premiere") == 1, "a tag clicked on")
        window.click(row["title"]["place"])
        window.answer("Commit")
        eventually(lambda: "Pip & Pocket" in window.selected(), "the other entry selected")
        eventually(lambda: self.store() != before, "the commit in the file")

    def test_unsaved_edits_are_asked_about_when_the_window_closes(self):
        window = self.open()
        window.select("Dawn Chorus")
        window.click(window.fields()[1]["place"])
        eventually(lambda: window.fields()[1]["has keyboard"], "the title field with the keyboard")
        window.key("ctrl+a")
        window.type("Evening Chorus")
        eventually(lambda: window.fields()[1]["text"] == "Evening Chorus", "the text typed")
        window.key("ctrl+w")
        eventually(lambda: "not saved" in window.message(), "the question")
        window.answer("Keep Editing")
        eventually(lambda: "not saved" not in window.message(), "the question gone")
        window.key("ctrl+q")
        eventually(lambda: "not saved" in window.message(), "the question again")
        window.answer("Commit")
        # The process ends only when the save has.
        self.assertEqual(window.process.process.wait(LONGEST_WAIT), 0)
        self.assertIn("Evening Chorus", self.titles())

    def test_everything_works_from_the_keyboard(self):
        window = self.open()
        window.key("Down", "Down")
        eventually(lambda: len(window.selected()) == 1, "an entry selected with an arrow key")
        edited = window.selected()[0]
        window.key("ctrl+t")
        eventually(lambda: window.fields()[1]["has keyboard"], "the title field with the keyboard")
        window.key("ctrl+a")
        window.type("By Keys")
        for index in (2, 3):
            window.key("Tab")
            eventually(lambda: window.fields()[index]["has keyboard"], "the next field with the keyboard")
        window.type("x")
        window.key("Tab")
        eventually(lambda: window.tables()[1]["has keyboard"], "the tags with the keyboard")
        states = [int(row["selected"]["value"]) for row in window.tables()[1]["rows"]]
        window.key("Down")
        eventually(lambda: any(row["selected row"] for row in window.tables()[1]["rows"]), "a tag's row selected")
        chosen = [row["selected row"] for row in window.tables()[1]["rows"]].index(True)
        window.key("space")
        eventually(
            lambda: int(window.tables()[1]["rows"][chosen]["selected"]["value"]) == 1 - states[chosen], "a tag changed"
        )
        window.key("Tab")
        eventually(lambda: window.button("Commit")["has keyboard"], "the first button with the keyboard")
        window.key("space")
        eventually(lambda: "By Keys" in self.titles(), f"{edited} renamed in the file")
        window.key("ctrl+e")
        eventually(lambda: window.message() == self.exported_message(), "the export told")
        window.key("ctrl+f")
        eventually(lambda: window.fields()[0]["has keyboard"], "the search field with the keyboard")
        window.type("gull rock")
        eventually(
            lambda: set(window.entries()) == {"The Secret of Gull Rock", *window.selected()},
            "only what was searched for and what is under edit",
        )
        self.assertEqual(len(set(window.selected())), 1)
        window.key("ctrl+q")
        self.assertEqual(window.process.process.wait(LONGEST_WAIT), 0)

    def test_revert_brings_texts_back_and_says_what_stays(self):
        window = self.open()
        window.select("Dawn Chorus")
        window.click(window.tag("Premiere")["selected"]["place"])
        eventually(lambda: window.state("Premiere") == 1, "a tag clicked on")
        window.click(window.fields()[2]["place"])
        eventually(lambda: window.fields()[2]["has keyboard"], "the description with the keyboard")
        text = window.fields()[2]["text"]
        window.type("typed")
        eventually(lambda: window.fields()[2]["text"] != text, "the text typed")
        window.press("Revert")
        eventually(lambda: window.fields()[2]["text"] == text, "the text back")
        self.assertEqual(window.state("Premiere"), 1)
        eventually(lambda: "tags stay" in window.message(), f"what stays told, not {window.message()}")

    def test_entry_is_duplicated_and_removed(self):
        window = self.open()
        entries = len(self.store())
        window.select("Dawn Chorus")
        window.press("Duplicate")
        eventually(lambda: window.selected() == ["Dawn Chorus (copy)"], "the copy selected")
        eventually(lambda: len(self.store()) == entries + 1, "the copy in the file")
        self.assertEqual(self.titles().count("Dawn Chorus"), 2)
        self.assertEqual(window.fields()[1]["text"], "Dawn Chorus")
        window.press("Remove")
        eventually(lambda: window.message().startswith("Remove the metadata"), "the question")
        window.answer("Remove")
        eventually(lambda: len(self.store()) == entries, "the copy gone from the file")
        eventually(lambda: "Dawn Chorus (copy)" not in window.entries(), "the copy gone from the list")

    def test_question_ends_when_another_entry_comes_under_edit(self):
        window = self.open()
        window.select("Dawn Chorus")
        window.press("Remove")
        eventually(lambda: len(self.question(window)) > 0, "the question")
        window.press("Duplicate")
        eventually(lambda: window.selected() == ["Dawn Chorus (copy)"], "the copy selected")
        self.assertEqual(self.question(window), [])
        eventually(lambda: self.titles().count("Dawn Chorus") == 2, "the copy in the file")

        window.press("Remove")
        window.answer("Remove")
        eventually(lambda: "Dawn Chorus (copy)" not in window.entries(), "the copy gone from the list")
        self.assertEqual(window.message(), "The metadata of “Dawn Chorus (copy)” is removed")
        eventually(lambda: self.titles().count("Dawn Chorus") == 1, "the copy gone from the file")

    def question(self, window):
        """The titles of its answers."""
        return [button["text"] for button in window.views("button") if button["place"][1] < 60]

    def test_nothing_can_be_typed_while_nothing_is_under_edit(self):
        window = self.open()
        self.assertEqual([field["enabled"] for field in window.fields()[1:]], [False] * 3)
        # No control that is off follows the mouse, so nothing tells of the click itself; the keys come after it.
        x, y = window.point(window.fields()[1]["place"])
        display.run("xdotool", "mousemove", "--window", window.id, str(x), str(y), "click", "1")
        window.type("lost")
        window.key("ctrl+t")
        eventually(lambda: window.message() == "Nothing is selected to edit", "what is missing told")
        self.assertEqual([field["text"] for field in window.fields()[1:]], [""] * 3)

        window.select("Dawn Chorus")
        self.assertEqual([field["enabled"] for field in window.fields()[1:]], [True] * 3)
        self.type_title(window, "Typed")
        window.press("Commit")
        eventually(lambda: "Typed" in self.titles(), "the title in the file")

    def type_title(self, window, title):
        window.click(window.fields()[1]["place"])
        eventually(lambda: window.fields()[1]["has keyboard"], "the title field with the keyboard")
        window.key("ctrl+a")
        window.type(title)
        eventually(lambda: window.fields()[1]["text"] == title, "the text typed")

    def test_export_and_removal_tell_of_unsaved_changes(self):
        window = self.open()
        window.select("Dawn Chorus")
        self.type_title(window, "Evening Chorus")
        window.press("Export")
        expected = f"{self.exported_message()} without the unsaved changes to “Dawn Chorus”"
        eventually(lambda: window.message() == expected, f"what is left out told, not {window.message()}")
        self.assertNotIn("Evening Chorus", [program.findtext("title") for program in self.programmes()])
        window.press("Remove")
        expected = "Remove the metadata of “Dawn Chorus” and drop the unsaved changes?"
        eventually(lambda: window.message() == expected, f"what is dropped told, not {window.message()}")
        window.answer("Cancel")
        window.press("Commit")
        eventually(lambda: window.message() == "“Dawn Chorus” committed", "the commit told")

        # What is typed after the question is no part of its answer.
        window.press("Remove")
        eventually(lambda: window.message() == "Remove the metadata of “Dawn Chorus”?", "the question")
        self.type_title(window, "Night Chorus")
        window.answer("Remove")
        eventually(lambda: window.message() == expected, f"what is dropped told, not {window.message()}")
        window.answer("Cancel")
        window.press("Commit")
        eventually(lambda: "Night Chorus" in self.titles(), "the title in the file")
        window.press("Export")
        eventually(lambda: window.message() == self.exported_message(), "the export told")

    def test_tag_clicked_off_and_on_again_is_asked_about(self):
        window = self.open()
        window.select("Good Morning, Quillmere")
        for state in (0, 1):
            window.click(window.tag("Live")["selected"]["place"])
            eventually(lambda state=state: window.state("Live") == state, "the tag clicked")
            # Elsewhere in between, or the two were a double click.
            window.click(window.tag("UHD")["name"]["place"])
        before = self.store()
        row = next(row for row in window.tables()[0]["rows"] if row["title"]["value"] == "Dawn Chorus")
        window.click(row["title"]["place"])
        window.answer("Commit")
        eventually(lambda: window.selected() == ["Dawn Chorus"], "the other entry selected")
        eventually(lambda: self.store() != before, "the tags' new order in the file")

    def test_events_without_id_or_start_are_shown_and_exported_as_they_are(self):
        start = datetime.datetime(2026, 11, 14, 6)
        events = self.folder / "events.plist"
        full = {"eventEPGUniqueID": "E1", "eventEPGPlaybackUniqueID": "P1", "eventEPGStartDateTime": start}
        without_start = {"eventEPGUniqueID": "E2", "eventEPGPlaybackUniqueID": "P2"}
        without_id = {"eventEPGPlaybackUniqueID": "P3", "eventEPGStartDateTime": start}
        events.write_bytes(plistlib.dumps([full, without_start, without_id]))
        store = {key: {"uniqueID": key, "title": f"Title {key}"} for key in ("E1", "E2", "")}
        (self.folder / "data" / "EPGItems.plist").write_bytes(plistlib.dumps(store))
        window = self.open(events, known=False)
        self.assertEqual(window.entries(), ["E1", "(no entry)", "E2"])
        window.select("(no entry)")
        eventually(lambda: window.message() == "An event without an EPG unique ID has no metadata", "why not told")
        self.assertFalse(window.button("Commit")["enabled"])
        self.assertFalse(window.fields()[1]["enabled"])

        window.press("Export")
        eventually(lambda: window.message() == self.exported_message(), "the export told")
        written = sorted(program.findtext("title") for program in self.programmes())
        self.assertEqual(written, ["Title E1", "Title E2"])

        window.select("E2")
        window.press("Remove")
        window.answer("Remove")
        eventually(lambda: "E2" not in self.store(), "the metadata gone from the file")
        self.assertEqual(window.entries(), ["E1", "(no entry)", "E2"])

    def test_copies_of_earlier_sessions_are_not_overwritten(self):
        self.take_in(options.guide)
        store = self.store()
        source = next(key for key, item in store.items() if item["title"] == "Dawn Chorus")
        # What other copies might be called, the list of this session knows none of them.
        earlier = {f"{source} copy{ending}": {"title": f"Earlier{ending}"} for ending in ("", " 2", " 3")}
        (self.folder / "data" / "EPGItems.plist").write_bytes(plistlib.dumps({**store, **earlier}))
        window = self.open(known=False)
        for copies, title in enumerate(("Dawn Chorus (copy)", "Dawn Chorus (copy 2)"), start=1):
            # The list moves to a copy at its end; searching brings the entry back into sight.
            window.key("ctrl+f")
            eventually(lambda: window.fields()[0]["has keyboard"], "the search field with the keyboard")
            window.type("dawn")
            eventually(lambda copies=copies: len(window.entries()) == copies, "only what was searched for")
            window.select("Dawn Chorus")
            window.press("Duplicate")
            eventually(lambda title=title: window.selected() == [title], f"{title} selected")
            self.assertEqual(window.message(), f"Duplicated as “{title}”")
            eventually(lambda copies=copies: self.titles().count("Dawn Chorus") == 1 + copies, "the copy in the file")
        after = self.store()
        self.assertEqual({key: after.get(key) for key in earlier}, earlier)

    def test_search_hides_nothing_that_is_under_edit(self):
        window = self.open()
        window.select("Dawn Chorus")
        window.key("ctrl+f")
        eventually(lambda: window.fields()[0]["has keyboard"], "the search field with the keyboard")
        window.type("gull rock")
        eventually(
            lambda: set(window.entries()) == {"Dawn Chorus", "The Secret of Gull Rock"},
            "what was searched for and what is under edit",
        )
        self.assertEqual(set(window.selected()), {"Dawn Chorus"})

        # What a question brings back is seen, too.
        window.click(window.tag("Premiere")["selected"]["place"])
        eventually(lambda: window.state("Premiere") == 1, "a tag clicked on")
        rows = window.tables()[0]["rows"]
        window.click(next(row for row in rows if "Gull Rock" in row["title"]["value"])["title"]["place"])
        eventually(lambda: "not saved" in window.message(), "the question")
        window.key("ctrl+f")
        eventually(lambda: window.fields()[0]["has keyboard"], "the search field with the keyboard")
        window.key("ctrl+a")
        window.type("pip")
        eventually(lambda: set(window.entries()) == {"Dawn Chorus", "Pip & Pocket"}, "the other search's matches")
        window.answer("Discard")
        eventually(lambda: set(window.selected()) == {"The Secret of Gull Rock"}, "the other entry selected")
        self.assertEqual(set(window.entries()), {"The Secret of Gull Rock", "Pip & Pocket"})

    def test_outcome_of_an_export_waits_for_the_answer_to_a_question(self):
        window = self.open()
        window.select("Dawn Chorus")
        window.press("Remove")
        eventually(lambda: window.message().startswith("Remove the metadata"), "the question")
        window.key("ctrl+e")
        eventually(self.programmes, "the day file")
        self.assertTrue(window.message().startswith("Remove the metadata"))
        window.answer("Cancel")
        eventually(
            lambda: window.message() == f"Editing “Dawn Chorus” · {self.exported_message()}",
            f"the outcome told, not {window.message()}",
        )

    def test_second_export_is_refused_while_one_runs(self):
        start = datetime.datetime(2026, 11, 14, 6)
        playbacks = [
            {
                "eventEPGUniqueID": "E",
                "eventEPGPlaybackUniqueID": f"P{number}",
                "eventEPGStartDateTime": start + datetime.timedelta(minutes=number),
                "eventEPGEndDateTime": start + datetime.timedelta(minutes=number + 1),
            }
            for number in range(3)
        ]
        events = self.folder / "events.plist"
        events.write_bytes(plistlib.dumps(playbacks))
        (self.folder / "data" / "EPGItems.plist").write_bytes(plistlib.dumps({"E": {"title": "T"}}))
        gate = ExportGate(self.folder / "export")
        self.addCleanup(gate.open)
        window = self.open(events, known=False, **gate.environment)
        window.key("ctrl+e")
        eventually(gate.has_come, "the export at the gate")
        window.key("ctrl+e")
        eventually(lambda: window.message() == "Already Busy Exporting!", "the refusal told")
        self.assertIsNone(self.programmes())
        gate.open()
        eventually(lambda: window.message() == self.exported_message(), "the first export's end told")
        self.assertEqual(len(self.programmes()), len(playbacks))

    def test_file_that_is_no_guide_is_told_in_the_window(self):
        events = self.folder / "broken.xml"
        events.write_text("<tv><programme></tv>")
        window = self.open(events, known=False)
        self.assertIn("broken.xml", window.message())
        self.assertEqual(window.tables()[0]["rows"], [])

    def test_editor_keeps_its_size_limits_and_uses_the_room(self):
        window = self.open()
        window.select("Morning Headlines", "Dawn Chorus")
        for wanted in ((1300, 900), (100, 100)):
            display.run("xdotool", "windowsize", window.id, str(wanted[0]), str(wanted[1]))

            def settled():
                table = window.tables()[1]["place"]
                title = window.fields()[1]["place"]
                return title[2] > 500 and table[3] > 500 if wanted[0] > 1000 else title[2] < 250 and table[3] < 150

            eventually(settled, f"the editor at {wanted}")
            labels = [label["place"] for label in window.views("label") if label["text"].endswith(":")]
            fields = [field["place"] for field in window.fields()[1:]]
            width = max(place[0] + place[2] for place in fields) - min(place[0] for place in labels)
            self.assertGreaterEqual(width, 280)
            for label, field in zip(labels, fields):
                self.assertLessEqual(label[0] + label[2], field[0])
            self.assertGreaterEqual(window.tables()[1]["place"][3], 90)


def main():
    global options, display
    parser = argparse.ArgumentParser()
    for name in ("window", "bundle", "dorvaselin", "export-gate", "guide", "output"):
        parser.add_argument(f"--{name}", required=True)
    parser.add_argument("--images")
    options, rest = parser.parse_known_args()
    output = pathlib.Path(options.output).resolve()
    options.output = str(output)
    shutil.rmtree(output, ignore_errors=True)
    output.mkdir(parents=True)
    display = Display(output)
    try:
        program = unittest.main(argv=[sys.argv[0], *rest], exit=False, verbosity=2)
    finally:
        display.end()
    sys.exit(0 if program.result.wasSuccessful() else 1)


if __name__ == "__main__":
    main()
