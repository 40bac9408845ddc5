#!/usr/bin/env python3
"""Guides on their way into the store and the day file, held against readers that are not ours."""

import datetime
import gzip
import pathlib
import plistlib
import random
import unittest
import xml.etree.ElementTree
import zoneinfo

import dorvaselin

BERLIN = zoneinfo.ZoneInfo("Europe/Berlin")
GUIDES = dorvaselin.ROOT / "tests" / "data" / "guides"


def time(text):
    """A guide's time with an offset, in local time."""
    return datetime.datetime.strptime(text, "%Y%m%d%H%M%S %z").astimezone(BERLIN)


def first_text(programme, name):
    for element in programme.findall(name):
        text = (element.text or "").strip(" \t\r\n")
        if text:
            return text
    return None


def metadata(programme):
    """What an entry holds of the programme, its ID aside."""
    icons = [icon.get("src") for icon in programme.findall("icon")]
    categories = [element.text.strip() for element in programme.findall("category")]
    values = {
        "title": first_text(programme, "title"),
        "description": first_text(programme, "desc"),
        "imageURL": icons[0] if icons else None,
        "tags": list(dict.fromkeys(categories)) or None,
    }
    return {key: value for key, value in values.items() if value is not None}


def without_id(item):
    return {key: value for key, value in item.items() if key != "uniqueID"}


def distinct(items):
    """Each item once, in an order that depends on nothing but the items."""
    return [dict(entries) for entries in sorted({repr(sorted(i.items())): sorted(i.items()) for i in items}.values())]


class Guides(dorvaselin.CommandLineTest):
    def programmes(self, path):
        return xml.etree.ElementTree.parse(path).getroot().findall("programme")

    def test_the_sample_guide_is_in_the_store_as_it_was_in_the_guide(self):
        path = dorvaselin.SAMPLES / "guide.xml"
        self.run_well("import", path)
        store = self.store()
        self.assertEqual(distinct(map(without_id, store.values())), distinct(map(metadata, self.programmes(path))))
        for key, item in store.items():
            self.assertEqual(item["uniqueID"], key)

    def test_the_sample_guide_is_in_the_day_file_as_it_was_in_the_guide(self):
        path = dorvaselin.SAMPLES / "guide.xml"
        folder = self.configure_export()
        self.run_well("import", path)
        day_file = pathlib.Path(self.run_well("export", path)[-1])
        self.assertEqual(list(folder.iterdir()), [day_file])
        root = xml.etree.ElementTree.parse(day_file).getroot()
        programmes = sorted(self.programmes(path), key=lambda p: time(p.get("start")))
        self.assertEqual(root.get("dateFrom"), time(programmes[0].get("start")).strftime("%d-%m-%Y"))
        self.assertEqual(root.get("dateTo"), time(programmes[-1].get("stop")).strftime("%d-%m-%Y"))
        written = root.findall("program")
        self.assertEqual(len(written), len(programmes))
        for program, programme in zip(written, programmes):
            start = time(programme.get("start"))
            self.assertEqual(
                [int(program.find(name).text) for name in ("date/day", "date/month", "date/year")],
                [start.day, start.month, start.year - 2000],
            )
            self.assertEqual(
                [int(program.find(name).text) for name in ("time/hour", "time/minute")], [start.hour, start.minute]
            )
            values = metadata(programme)
            self.assertEqual(program.findtext("title"), values["title"])
            self.assertEqual(program.findtext("description"), values.get("description", ""))
            self.assertEqual(program.findtext("imgUrl"), values.get("imageURL", ""))
            self.assertEqual([tag.text for tag in program.findall("tags/tag")], values.get("tags", []))

    def test_every_encoding_and_compression_gives_the_same_store(self):
        text = (
            '<?xml version="1.0" encoding="{}"?>\n<tv><programme start="20261114060000 +0100" channel="c">'
            "<title>Crème & Co. — naïve</title><desc>“Größe”</desc></programme></tv>"
        ).replace("& ", "&amp; ")
        latin = text.replace("—", "-").replace("“", '"').replace("”", '"')
        for document, encodings in (
            (text, ("UTF-8", "UTF-16", "windows-1252")),
            (latin, ("UTF-8", "ISO-8859-1", "windows-1252")),
        ):
            stores = []
            for name in encodings:
                for pack in (lambda content: content, gzip.compress):
                    guide = self.write("guide.xml", pack(document.format(name).encode(name)))
                    self.run_well("import", guide)
                    stores.append(self.store())
                    self.store_path.unlink()
            self.assertTrue(all(store == stores[0] for store in stores))

    def test_each_guide_of_the_collection_gives_what_stands_beside_it(self):
        guides = sorted(GUIDES.glob("*.xml"))
        self.assertGreaterEqual(len(guides), 10)
        for guide in guides:
            with self.subTest(guide.name):
                self.data = self.folder / guide.stem
                self.data.mkdir()
                expected = guide.with_suffix(".expected").read_text(encoding="utf-8").splitlines()
                result = self.run_command("import", guide.name, cwd=GUIDES)
                lines = result.stderr.decode().splitlines() + result.stdout.decode().splitlines()
                if result.returncode == 0:
                    listing = self.run_well("list")
                    lines += sorted(line.split("\t")[1] for line in listing)
                self.assertEqual(lines, expected)

    def test_no_guide_however_damaged_ends_the_program_otherwise_than_with_a_message(self):
        good = (dorvaselin.SAMPLES / "guide-gap.xml").read_bytes()
        generator = random.Random(20261114)
        for _ in range(150):
            content = bytearray(good if generator.random() < 0.5 else gzip.compress(good))
            for _ in range(generator.randrange(1, 8)):
                content[generator.randrange(len(content))] = generator.randrange(256)
            if generator.random() < 0.3:
                del content[generator.randrange(len(content)) :]
            guide = self.write("guide", bytes(content))
            for command in ("import", "check"):
                result = self.run_command(command, guide)
                self.assertIn(result.returncode, (0, 1), (result.stderr, bytes(content)))
                if result.returncode == 1 and command == "import":
                    self.assertIn(str(guide).encode(), result.stderr)

    def test_events_are_read_from_both_forms_of_a_property_list(self):
        self.configure_export()
        self.write_store({"E1": {"title": "One"}, "E2": {"title": "Two"}})
        start = datetime.datetime(2026, 11, 14, 5, 0)
        events = [
            {"eventEPGUniqueID": "E2", "eventEPGStartDateTime": start + datetime.timedelta(hours=1)},
            {
                "eventEPGUniqueID": "E1",
                "eventEPGStartDateTime": start,
                "eventEPGEndDateTime": start + datetime.timedelta(hours=1),
                "eventEPGPlaybackUniqueID": "P",
                "somethingElse": [1, 2.5, b"data", {"nested": True}],
            },
        ]
        files = []
        for form in (plistlib.FMT_XML, plistlib.FMT_BINARY):
            path = self.write("events.plist", plistlib.dumps(events, fmt=form))
            files.append(pathlib.Path(self.run_well("export", path)[-1]).read_bytes())
        self.assertEqual(files[0], files[1])
        titles = [element.text for element in xml.etree.ElementTree.fromstring(files[0]).iter("title")]
        self.assertEqual(titles, ["One", "Two"])


if __name__ == "__main__":
    dorvaselin.main()
