#!/usr/bin/env python3
"""Whichever command came first in a fresh clone, and whatever was missing then, the same is built and tested."""

import pathlib
import re
import subprocess
import tempfile
import unittest

from clone import ROOT, bash, cached, clone, environment

NO_COMPILER = {"OBJC": "/bin/false", "OBJCXX": "/bin/false"}
# What ./run, ./run window and ./test configure.
RUN = "configure release"
WINDOW = "configure_with_bundle release"
TEST = "configure_with_bundle release -DEPG_BUILD_TESTS=ON"
STANDS_IN = {
    RUN: ("run", "  configure release || return\n"),
    WINDOW: ("run", "  configure_with_bundle release || return\n"),
    TEST: ("test", '  preset release "release" -DEPG_BUILD_TESTS=ON\n'),
}


def steps_of(folder):
    listed = subprocess.run(["ninja", "-C", folder / "build/release", "-t", "targets", "all"], stdout=subprocess.PIPE,
                            text=True, check=True)  # fmt: skip
    # What is compiled and linked; the rest is CMake's own.
    return sorted(line for line in listed.stdout.splitlines() if re.search(r"_(COMPILER|LINKER)__", line))


def tests_of(folder):
    listed = subprocess.run(
        ["ctest", "--test-dir", folder / "build/release", "--show-only"],
        env=environment(), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True, check=True)  # fmt: skip
    return re.findall(r"^ +Test +#\d+: (.*)$", listed.stdout, re.MULTILINE)


class AnyOrder(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="orders-")
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)

    def well(self, folder, script, **changes):
        status, output = bash(folder, script, **changes)
        self.assertEqual((status, output), (0, ""))

    def test_ends_with_the_bundle_and_the_same_tests(self):
        late = clone(self.folder / "late")
        self.well(late, RUN, **NO_COMPILER)
        self.assertIn("compilers of Objective-C", cached(late, "EPG_BUNDLE_LACKS"))
        status, output = bash(late, TEST, **NO_COMPILER)
        self.assertNotEqual(status, 0)
        self.assertRegex(output, r"^test: the bundle cannot be built; missing: compilers of Objective-C[^\n]*\ntest: +gobjc[^\n]*\n$")
        # Nobody who does not need it is kept from building.
        self.well(late, RUN, **NO_COMPILER)
        # A variable of old that silences the platform's own tool.
        self.well(late, WINDOW, GNUSTEP_USER_ROOT=str(self.folder))
        self.assertEqual(cached(late, "EPG_BUNDLE_LACKS"), "")
        # And back again, in an order that nobody would choose.
        for command in (TEST, WINDOW, RUN, TEST):
            self.well(late, command)

        first = clone(self.folder / "first")
        self.well(first, TEST)
        tests = tests_of(first)
        self.assertIn("Window.WorksWithMouseAndKeyboard", tests)
        self.assertEqual(tests_of(late), tests)
        self.assertGreater(len(steps_of(first)), 50)
        self.assertEqual(steps_of(late), steps_of(first))

    def test_is_about_what_the_scripts_do(self):
        for command, (script, line) in STANDS_IN.items():
            self.assertIn(line, (ROOT / script).read_text(), command)


if __name__ == "__main__":
    unittest.main()
