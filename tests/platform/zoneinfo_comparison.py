#!/usr/bin/env python3
"""Local times in every zone, compared with Python's zoneinfo, which computes them without the C library.

usage: zoneinfo_comparison.py SEED PROGRAM…

Around every change of a zone's offset in sample years, and at random from 1700 to 2500. With "narrow" as the program's
last argument, which makes it a clock of 32 bits, from 1902 on.
"""

import datetime
import functools
import pathlib
import random
import subprocess
import sys
import zoneinfo

UTC = datetime.timezone.utc
EPOCH = datetime.datetime(1970, 1, 1, tzinfo=UTC)
RANDOM_TIMES = 60
ENDS_OF_32_BITS = (-(2**31), -(2**31) - 1, 2**31 - 1, 2**31, -1, 0)
# Before, at and after the ends of 32 bits, the beginnings of zones, the world wars, now and far ahead.
SAMPLE_YEARS = (1883, 1893, 1916, 1942, 1966, 1970, 1999, 2011, 2012, 2025, 2037, 2038, 2039, 2040, 2043, 2044, 2048, 2052, 2100, 2400)
# Every year by itself, as the moon or a government has it: a clock of 32 bits cannot know.
WITHOUT_RULES = ("Africa/Casablanca", "Africa/El_Aaiun", "Asia/Gaza", "Asia/Hebron")
MUST_BE_THERE = ("Europe/Rome", "America/New_York", "Asia/Kolkata", "Asia/Kathmandu", "Australia/Lord_Howe")


def seconds(moment):
    return (moment - EPOCH) // datetime.timedelta(seconds=1)


def utc(year, month=1, day=1):
    return seconds(datetime.datetime(year, month, day, tzinfo=UTC))


def local(zone, second):
    return (EPOCH + datetime.timedelta(seconds=second)).astimezone(zone)


def offset(zone, second):
    return local(zone, second).utcoffset()


@functools.lru_cache(maxsize=None)
def weeks(year):
    """The ends of the weeks that begin within the year, the first one's beginning before them; as dates, too."""
    week = 7 * 86400
    seconds_of_all = range(utc(year), utc(year + 1) + week, week)
    return [(second, EPOCH + datetime.timedelta(seconds=second)) for second in seconds_of_all]


def changes(zone, year):
    """The first second after every change of the offset within the year that lasts at least a week."""
    found = []
    before, earlier = None, None
    for after, moment in weeks(year):
        later = moment.astimezone(zone).utcoffset()
        if before is not None and later != earlier:
            first, last = before, after
            while last - first > 1:
                middle = (first + last) // 2
                if offset(zone, middle) == earlier:
                    first = middle
                else:
                    last = middle
            found.append(last)
        before, earlier = after, later
    return found


def rules(name):
    """What tells zones apart: many names are one zone, whose changes are looked for once."""
    for folder in zoneinfo.TZPATH:
        path = pathlib.Path(folder, name)
        if path.is_file():
            return path.read_bytes()
    return name


def changes_of_all(names, first_year):
    """For each name the changes of its zone in the sample years."""
    found = {}
    by_name = {}
    for name in names:
        key = rules(name)
        if key not in found:
            zone = zoneinfo.ZoneInfo(name)
            found[key] = {year: changes(zone, year) for year in SAMPLE_YEARS if year >= first_year}
        by_name[name] = found[key]
    return by_name


def times(changes_by_year, generator, first_year):
    chosen = [generator.randint(utc(first_year), utc(2500)) for _ in range(RANDOM_TIMES)]
    for year, changes_of_year in changes_by_year.items():
        chosen.append(utc(year))
        for change in changes_of_year:
            chosen += (change - 3600, change - 1, change, change + 1, change + 3600)
    return chosen + [second for second in ENDS_OF_32_BITS if second >= utc(first_year)]


def expected(zone, second):
    time = local(zone, second)
    return f"{time.year} {time.month} {time.day} {time.hour} {time.minute} {time.second}"


def main():
    generator = random.Random(int(sys.argv[1]))
    narrow = sys.argv[-1] == "narrow"
    names = sorted(zoneinfo.available_timezones() - {"localtime", "Factory", "leapseconds"})
    missing = [name for name in MUST_BE_THERE if name not in names]
    if missing:
        sys.exit(f"the zone files are missing (package tzdata): {', '.join(missing)}")

    if narrow:
        names = [name for name in names if name not in WITHOUT_RULES]
    first_year = 1902 if narrow else 1700
    questions, answers = [], []
    for name, changes_by_year in changes_of_all(names, first_year).items():
        zone = zoneinfo.ZoneInfo(name)
        for second in times(changes_by_year, generator, first_year):
            questions.append(f"{name} {second}")
            answers.append(expected(zone, second))
    output = subprocess.run(
        sys.argv[2:], input="\n".join(questions) + "\n", stdout=subprocess.PIPE, text=True, check=True
    ).stdout.splitlines()
    if len(output) != len(questions):
        sys.exit(f"{len(questions)} questions and {len(output)} answers")
    wrong = [
        f"{question}: {told} instead of {answer}"
        for question, told, answer in zip(questions, output, answers)
        if told != answer
    ]
    print(f"{len(names)} zones, {len(questions)} times, {len(wrong)} differ")
    if wrong:
        sys.exit("\n".join(wrong[:50]))


if __name__ == "__main__":
    main()
