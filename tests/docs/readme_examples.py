#!/usr/bin/env python3
"""Runs the examples of Markdown files and compares what they print with what the files say.

    readme_examples.py --program PATH/TO/dorvaselin [FILE.md…]

Without files: all of the project's that have an example.

An example is an sh block behind a line that marks it:

    <!-- test -->             has to end with status 0
    <!-- test: status 1 -->   has to end with that status
    <!-- test in a clone -->  is run by tests/scripts/test_clone.py, because it builds
    <!-- no test: REASON -->  is not run

Every sh block needs one of these, so that none is forgotten. A text block that follows directly is the output,
standard error included. In it

    ~/            at the start of a word stands for the home folder,
    NNNNNNNN.xml  (eight digits) for the day file of the day on which the example runs,
    a line …      for any number of lines.

All examples of one file run in order, in one scratch folder that holds samples/, docs/ and resources/ and a ./run that
is the given program, with a home folder of its own and in the time zone of the sample guide. Variables that an example
exports and the folder it changes to are there for the next one.
"""

import argparse
import datetime
import difflib
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import zoneinfo

import check_links

ROOT = pathlib.Path(__file__).resolve().parents[2]
ZONE = "Europe/Berlin"
# A hang gets there, nothing else does.
SECONDS_FOR_ONE_EXAMPLE = 600

MARK = re.compile(r"<!-- (no test: .+|test in a clone|test|test: status (\d+)) -->$")
HOME = re.compile(r"(?<![^\s:\"'])~/")
DAY_FILE = re.compile(r"(?<!\d)\d{8}(?=\.xml\b)")


class Example:
    def __init__(self, line, commands, output, status, in_a_clone):
        self.line = line
        self.in_a_clone = in_a_clone
        self.commands = commands
        self.output = output  # None where the file does not show it
        self.status = status


def blocks(lines):
    """(index of the opening line, language, content) of each fenced block."""
    start = None
    for index, line in enumerate(lines):
        if not line.startswith("```"):
            continue
        if start is None:
            start = index
        else:
            yield start, lines[start][3:].strip(), lines[start + 1 : index]
            start = None


def examples_in(text):
    """The examples of a file, and a complaint for each sh block without a mark."""
    lines = text.splitlines()
    found, complaints = [], []
    all_blocks = list(blocks(lines))
    for number, (start, language, content) in enumerate(all_blocks):
        if language != "sh":
            continue
        mark = MARK.match(lines[start - 1]) if start > 0 else None
        if not mark:
            complaints.append(f"line {start + 1}: the example has no mark (<!-- test --> or <!-- no test: … -->)")
            continue
        if mark.group(1).startswith("no test"):
            continue
        output = None
        if number + 1 < len(all_blocks):
            next_start, next_language, next_content = all_blocks[number + 1]
            between = lines[start + len(content) + 2 : next_start]
            if next_language == "text" and not any(line.strip() for line in between):
                output = next_content
        found.append(Example(start + 1, "\n".join(content), output, int(mark.group(2) or 0), "clone" in mark.group(1)))
    return found, complaints


def matches(expected, actual):
    """Whether the lines are those expected; a line … in `expected` is any number of lines."""
    reachable = {0}
    for line in expected:
        if line == "…":
            reachable = set(range(min(reachable), len(actual) + 1))
        else:
            reachable = {at + 1 for at in reachable if at < len(actual) and actual[at] == line}
        if not reachable:
            return False
    return len(actual) in reachable


def today():
    return datetime.datetime.now(zoneinfo.ZoneInfo(ZONE)).strftime("%Y%m%d")


class Scratch:
    """The folder in which the examples of one file run."""

    def __init__(self, folder, program):
        self.folder = folder
        self.home = folder / "home"
        self.home.mkdir()
        work = folder / "project"
        work.mkdir()
        for name in ("samples", "docs", "resources"):
            shutil.copytree(ROOT / name, work / name)
        run = work / "run"
        run.write_text(f'#!/bin/sh\nexec {shlex.quote(str(program))} "$@"\n')
        run.chmod(0o755)
        (folder / "state").write_text("")
        (folder / "cwd").write_text(f"{work}\n")
        self.environment = {
            "HOME": str(self.home),
            "PATH": os.environ["PATH"],
            "LC_ALL": "C.UTF-8",
            "TZ": ZONE,
            "TMPDIR": str(folder),
        }
        # What a build with sanitizers or a coverage run needs.
        for name, value in os.environ.items():
            if name.endswith("SAN_OPTIONS") or name.startswith(("GCOV_", "LLVM_PROFILE_")):
                self.environment[name] = value

    def run(self, commands):
        """The status and the lines of output."""
        state, cwd = shlex.quote(str(self.folder / "state")), shlex.quote(str(self.folder / "cwd"))
        script = (
            f'. {state}\ncd "$(cat {cwd})" || exit 99\n{commands}\n'
            f"_status=$?\nexport -p >{state}\npwd >{cwd}\nexit $_status\n"
        )
        done = subprocess.run(
            ["bash", "-o", "pipefail", "-c", script],
            env=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            timeout=SECONDS_FOR_ONE_EXAMPLE,
            check=False,
        )
        return done.returncode, done.stdout.decode("utf-8", "backslashreplace").splitlines()


def problems_of(example, scratch):
    days = {today()}
    status, actual = scratch.run(example.commands)
    days.add(today())
    problems = []
    if status != example.status:
        problems.append(f"status {status} instead of {example.status}")
    if example.output is not None:
        expected = [DAY_FILE.sub("<today>", HOME.sub("<home>/", line)) for line in example.output]
        actual = [line.replace(str(scratch.home), "<home>") for line in actual]
        for day in days:
            actual = [re.sub(rf"(?<!\d){day}(?=\.xml\b)", "<today>", line) for line in actual]
        if not matches(expected, actual):
            problems.append("another output than the file shows:")
            problems.extend(difflib.unified_diff(expected, actual, "in the file", "printed", lineterm=""))
    elif problems:
        problems.extend(actual)
    return problems


def failures_of(path, program):
    """A list of texts; empty when all examples of the file hold."""
    examples, failures = examples_in(path.read_text(encoding="utf-8"))
    failures = [f"{path.name}, {complaint}" for complaint in failures]
    with tempfile.TemporaryDirectory(prefix="examples-") as folder:
        scratch = Scratch(pathlib.Path(folder).resolve(), program)
        for example in examples:
            if example.in_a_clone:
                continue
            problems = problems_of(example, scratch)
            if problems:
                commands = example.commands.replace("\n", "\n    ")
                failures.append("\n".join([f"{path.name}, line {example.line}:", f"    {commands}", *problems]))
    return failures


def main():
    parser = argparse.ArgumentParser(description="Runs the examples of Markdown files.")
    parser.add_argument("--program", required=True, type=pathlib.Path)
    parser.add_argument("files", nargs="*", type=pathlib.Path)
    arguments = parser.parse_args()
    files = arguments.files or [page for page in check_links.pages() if "```sh\n" in page.read_text(encoding="utf-8")]
    if not files:
        sys.exit("readme_examples.py: no page has an example")
    failures = []
    for path in files:
        failures.extend(failures_of(path, arguments.program.resolve()))
    for failure in failures:
        print(f"FAILED: {failure}\n")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
