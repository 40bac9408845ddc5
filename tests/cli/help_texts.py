"""What --help of the built program tells, taken apart."""

import dataclasses
import re

OPTION = re.compile(r"(?<![\w-])--?[a-z][a-z-]*")


@dataclasses.dataclass
class Help:
    description: str
    entries: dict  # heading -> [(name, what it says)], as "Options" -> [("-h,--help", "Print …")]
    footer: str

    def options(self):
        return {option for name, _ in self.entries.get("Options", []) for option in OPTION.findall(name)}

    def commands(self):
        return [name for name, _ in self.entries.get("Commands", [])]

    def texts(self):
        """Every text for people."""
        yield self.description
        for entries in self.entries.values():
            for _, text in entries:
                yield text
        yield from self.footer.split("\n\n")


def parse(text):
    description, rest = text.split("\nUsage: ", 1)
    rest = rest.split("\n", 1)[1]
    entries = {}
    while match := re.match(r"\n+([A-Z][a-z]+):\n((?:  .*\n)+)", rest):
        entries[match[1]] = []
        for line in match[2].splitlines():
            name, gap, told = re.fullmatch(r"  (\S.*?|)(  +|$)(.*)", line).groups()
            if name:
                entries[match[1]].append((name, told))
            else:  # A long name has its text on a line of its own.
                entries[match[1]][-1] = (entries[match[1]][-1][0], told)
        rest = rest[match.end() :]
    return Help(description.strip(), entries, rest.strip())


def normalised(text):
    return " ".join(text.split())
