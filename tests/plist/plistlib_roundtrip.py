#!/usr/bin/env python3
"""Random values go through Python's plistlib and this project's reader and writer, and come back equal.

usage: plistlib_roundtrip.py SEED COUNT PROGRAM…

plistlib writes each value in one of the two forms, the program reads it and writes the XML form, plistlib reads that.
"""

import datetime
import math
import plistlib
import random
import struct
import subprocess
import sys

UNREADABLE = 0xFFFFFFFF
# What XML 1.0 cannot carry is left out: it is written as another character on purpose.
ALPHABET = (
    "abc XYZ&<>\"'];#\t\n\u00e9\u0161\u20ac\u7bc0\u202e\u2028\ufeff\ufffd\U0001f3ac\U0010fffd"
    + "\u0301\u007f\u0085\ue000\ud7ff\u0000"
).replace("\u0000", "")


class Values:
    """Random property-list values."""

    def __init__(self, generator, form):
        self.generator = generator
        self.form = form

    def text(self):
        # plistlib's XML writer turns a carriage return into a line feed, so only the binary form carries one to us.
        alphabet = ALPHABET + ("\r" if self.form == plistlib.FMT_BINARY else "")
        length = self.generator.choice((0, 1, 2, 5, 14, 15, 16, 40, 300))
        # Of ASCII alone, too, which the binary form keeps in another way.
        if self.generator.random() < 0.5:
            alphabet = [character for character in alphabet if character < "\x7f"]
        return "".join(self.generator.choice(alphabet) for _ in range(length))

    def integer(self):
        bits = self.generator.choice((1, 7, 8, 15, 16, 31, 32, 62, 63, 64))
        value = self.generator.getrandbits(bits)
        edges = (0, 1, -1, 255, 256, 65535, 65536, 2**31, 2**32, -(2**63), 2**63 - 1, 2**63, 2**64 - 1)
        if self.generator.random() < 0.3:
            return self.generator.choice(edges)
        return -value if bits < 64 and self.generator.random() < 0.5 else value

    def real(self):
        if self.generator.random() < 0.3:
            return self.generator.choice(
                (0.0, -0.0, 0.1, 1e22, 1e-7, 5e-324, 1.7976931348623157e308, math.inf, -math.inf, math.nan)
            )
        return struct.unpack(">d", self.generator.randbytes(8))[0]

    def date(self):
        first = datetime.datetime(1, 1, 1)
        seconds = (datetime.datetime(9999, 12, 31, 23, 59, 59) - first).total_seconds()
        return first + datetime.timedelta(seconds=self.generator.randint(0, int(seconds)))

    def data(self):
        return self.generator.randbytes(self.generator.choice((0, 1, 2, 3, 50, 51, 52, 100, 1000)))

    def uid(self):
        return plistlib.UID(self.generator.getrandbits(self.generator.choice((1, 8, 16, 32, 64))))

    def value(self, levels):
        scalars = [self.text, self.integer, self.real, self.date, self.data, lambda: self.generator.random() < 0.5]
        if self.form == plistlib.FMT_BINARY:
            scalars.append(self.uid)
        kind = self.generator.random()
        if levels == 0 or kind < 0.4:
            return self.generator.choice(scalars)()
        count = self.generator.choice((0, 1, 2, 5, 14, 15, 17))
        if kind < 0.7:
            return [self.value(levels - 1) for _ in range(count)]
        return {self.text(): self.value(levels - 1) for _ in range(count)}


def same(written, read):
    """Equal, and of the same type: 1, 1.0 and True are three values."""
    if isinstance(written, plistlib.UID):
        return read == {"CF$UID": written.data}
    if type(written) is not type(read):
        return False
    if isinstance(written, float):
        # Zeros of either sign are equal here: plistlib's binary writer takes one for the other.
        return written == read or (math.isnan(written) and math.isnan(read))
    if isinstance(written, list):
        return len(written) == len(read) and all(map(same, written, read))
    if isinstance(written, dict):
        return written.keys() == read.keys() and all(same(written[key], read[key]) for key in written)
    return written == read


class Program:
    """The program under test, which takes one property list after another."""

    def __init__(self, command):
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def convert(self, data):
        """The XML form of the property list, or None when it was refused."""
        self.process.stdin.write(struct.pack(">I", len(data)) + data)
        self.process.stdin.flush()
        length = struct.unpack(">I", self.read(4))[0]
        return None if length == UNREADABLE else self.read(length)

    def read(self, size):
        data = self.process.stdout.read(size)
        if len(data) != size:
            sys.exit(f"the program ended early, with status {self.process.wait()}")
        return data

    def end(self):
        self.process.stdin.close()
        status = self.process.wait()
        if status != 0:
            sys.exit(f"the program ended with status {status}")


def main():
    seed, count, command = int(sys.argv[1]), int(sys.argv[2]), sys.argv[3:]
    generator = random.Random(seed)
    program = Program(command)
    compared = 0
    for number in range(count):
        for form in (plistlib.FMT_XML, plistlib.FMT_BINARY):
            value = Values(generator, form).value(3)
            data = plistlib.dumps(value, fmt=form, sort_keys=generator.random() < 0.5)
            place = f"seed {seed}, value {number}, {form.name}"
            xml = program.convert(data)
            if xml is None:
                sys.exit(f"{place}: refused:\n{data!r}")
            if not same(value, plistlib.loads(xml)):
                sys.exit(f"{place}: not the same:\n{value!r}\n{plistlib.loads(xml)!r}")
            if program.convert(xml) != xml:
                sys.exit(f"{place}: written again, it is not the same bytes:\n{xml!r}")
            compared += 1
    program.end()
    print(f"{compared} values came back equal")
    if compared == 0:
        sys.exit("nothing was compared")


if __name__ == "__main__":
    main()
