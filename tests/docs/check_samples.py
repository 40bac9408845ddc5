#!/usr/bin/env python3
"""Whether the files in samples/ and resources/ are what samples/README.md and docs/formats.md say of them."""

import datetime
import pathlib
import plistlib
import re
import sys
import xml.etree.ElementTree as ElementTree

ROOT = pathlib.Path(__file__).resolve().parents[2]
SAMPLES = ROOT / "samples"

# What a programme of a guide may hold, in this order.
PROGRAMME_CHILDREN = (
    "title sub-title desc credits date category keyword language orig-language length icon url country episode-num "
    "video audio previously-shown premiere last-chance new subtitles rating star-rating review image"
).split()

failures = []


def expect(condition, message):
    if not condition:
        failures.append(message)


def property_list(path):
    with open(path, "rb") as file:
        return plistlib.load(file)


def time(text):
    return datetime.datetime.strptime(text, "%Y%m%d%H%M%S %z")


def check_catalogue():
    catalogue = property_list(ROOT / "resources" / "Tags.plist")
    expect(list(catalogue) == ["tags"], "Tags.plist holds keys besides tags")
    tags = catalogue["tags"]
    expect(80 <= len(tags) <= 120, f"Tags.plist holds {len(tags)} tags")
    for tag in tags:
        expect(isinstance(tag, str) and tag != "" and tag == " ".join(tag.split()), f"Tags.plist: untidy tag {tag!r}")
    folded = [tag.casefold() for tag in tags]
    for tag in tags:
        expect(folded.count(tag.casefold()) == 1, f"Tags.plist: {tag!r} differs from another tag in case at most")
    return set(tags)


def programmes(path):
    tree = ElementTree.parse(path).getroot()
    expect(tree.tag == "tv", f"{path.name}: the root is {tree.tag}")
    channels = [channel.get("id") for channel in tree.findall("channel")]
    expect(len(channels) == len(set(channels)), f"{path.name}: a channel twice")
    found = tree.findall("programme")
    for programme in found:
        name = f"{path.name}, {programme.get('start')}"
        expect(programme.get("channel") in channels, f"{name}: unknown channel")
        tags = [child.tag for child in programme]
        unknown = sorted(set(tags) - set(PROGRAMME_CHILDREN))
        expect(not unknown, f"{name}: {unknown}")
        expect(unknown or tags == sorted(tags, key=PROGRAMME_CHILDREN.index), f"{name}: children out of order")
    return channels, found


def check_guide(tags):
    channels, found = programmes(SAMPLES / "guide.xml")
    expect(len(channels) == 2, "guide.xml: not two channels")
    for channel in channels:
        day = [programme for programme in found if programme.get("channel") == channel]
        expect(30 <= len(day) <= 40, f"guide.xml: {len(day)} programmes on {channel}")
        for earlier, later in zip(day, day[1:]):
            expect(time(earlier.get("stop")) == time(later.get("start")), f"guide.xml: gap before {later.get('start')}")
        for programme in day:
            expect(time(programme.get("start")) < time(programme.get("stop")), f"guide.xml: {programme.get('start')}")
        length = time(day[-1].get("stop")) - time(day[0].get("start"))
        expect(length == datetime.timedelta(days=1), f"guide.xml: {channel} lasts {length}")
        midnight = [p for p in day if p.get("start")[:8] < p.get("stop")[:8] and p.get("stop")[8:14] != "000000"]
        expect(len(midnight) == 1, f"guide.xml: nothing runs over midnight on {channel}")

    text = (SAMPLES / "guide.xml").read_text(encoding="utf-8")
    expect("'" in text and "&amp;" in text, "guide.xml: no apostrophe or no ampersand")
    titles = [programme.findtext("title") for programme in found]
    expect(any(re.search("[à-ÿ]", title) for title in titles), "guide.xml: no accent in a title")
    expect(any(re.search("[\u4e00-\u9fff]", title) for title in titles), "guide.xml: no title in another script")
    for what in ("sub-title", "episode-num", "category", "icon"):
        expect(any(programme.find(what) is not None for programme in found), f"guide.xml: no {what}")
    for what in ("desc", "icon"):
        expect(any(programme.find(what) is None for programme in found), f"guide.xml: {what} everywhere")
    categories = {category.text for programme in found for category in programme.findall("category")}
    expect(len(categories - tags) == 1, f"guide.xml: not in the catalogue: {sorted(categories - tags)}")


def check_property_lists():
    items = property_list(SAMPLES / "EPGItems.plist")
    expect(all(isinstance(item, dict) for item in items.values()), "EPGItems.plist: an entry is no dictionary")
    known = {"uniqueID", "title", "description", "imageURL", "tags"}
    expect(any(set(item) - known for item in items.values()), "EPGItems.plist: no item with a key of somebody else's")

    events = property_list(SAMPLES / "events.plist")
    keys = {"eventEPGUniqueID", "eventEPGPlaybackUniqueID", "eventEPGStartDateTime", "eventEPGEndDateTime"}
    for event in events:
        expect(set(event) <= keys, f"events.plist: {sorted(event)}")
        expect(event["eventEPGStartDateTime"] < event["eventEPGEndDateTime"], "events.plist: ends before it starts")
    without = [e["eventEPGUniqueID"] for e in events if e["eventEPGUniqueID"] not in items]
    expect(len(without) == 1, f"events.plist: not exactly one event without an item: {without}")
    starts = [event["eventEPGStartDateTime"] for event in events]
    expect(starts != sorted(starts), "events.plist: in order already, so that it does not show the sorting")

    expect(property_list(SAMPLES / "Evening.epgconf") == {"SourceID": "0", "exportPath": "~/EPG"}, "Evening.epgconf")


check_guide(check_catalogue())
programmes(SAMPLES / "guide-gap.xml")
check_property_lists()
for failure in failures:
    print(failure)
sys.exit(1 if failures else 0)
