#!/usr/bin/env python3
"""Runs what the pages show for a clone of the project, one after the other in a fresh one: `./run` and the like are the
real ones, and so is what they build. A window is closed as soon as it is on the screen."""

import os
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest

from clone import ROOT, clone, environment

sys.path.insert(0, str(ROOT / "tests/docs"))
import check_links  # noqa: E402
import readme_examples  # noqa: E402

LONGEST = 1200


class Clone(unittest.TestCase):
    def test_does_what_the_pages_show(self):
        examples = []
        for page in check_links.pages():
            found, complaints = readme_examples.examples_in(page.read_text(encoding="utf-8"))
            self.assertEqual(complaints, [])
            examples += [(page.name, example) for example in found if example.in_a_clone]
        self.assertTrue(examples)
        with tempfile.TemporaryDirectory(prefix="clone-") as folder:
            work = clone(pathlib.Path(folder) / "project")
            home = pathlib.Path(folder) / "home"
            home.mkdir()
            mine = environment(HOME=str(home), TZ="Europe/Berlin", CCACHE_DISABLE="1")
            for page, example in examples:
                output = ""
                for command in example.commands.splitlines():
                    with self.subTest(page=page, command=command):
                        output += self.run_command(command, work, mine)
                if example.output is not None:
                    self.assertTrue(readme_examples.matches(example.output, output.splitlines()), output)
            self.assertTrue((home / ".local/bin/dorvaselin").is_file())
            self.assertTrue(list((work / "build/demo/export").glob("*.xml")))

    def run_command(self, command, work, mine):
        process = subprocess.Popen(["bash", "-c", command], cwd=work, env=mine, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                   start_new_session=True)  # fmt: skip
        if command.startswith("./run window"):
            end = time.monotonic() + LONGEST
            while not self.windows() and process.poll() is None and time.monotonic() < end:
                time.sleep(0.2)
            seen = self.windows()
            self.assertIsNone(process.poll(), "the window's program has ended")
            self.assertTrue(seen, "never a window")
            process.terminate()
            process.communicate(timeout=60)
            return ""
        output, _ = process.communicate(timeout=LONGEST)
        self.assertEqual(process.returncode, 0, output)
        return output

    def windows(self):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "guide"], stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, text=True, check=False)  # fmt: skip
        return found.stdout.split()


if __name__ == "__main__":
    if "DISPLAY" not in os.environ:
        sys.exit("test_clone.py needs a screen; tests/cocoa/with_display.py gives it one")
    unittest.main()
