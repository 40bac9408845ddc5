#!/usr/bin/env python3
"""What ./run, ./test and ./bench share, and how they answer what goes wrong. Builds are those of a small project."""

import os
import pathlib
import pty
import re
import shutil
import subprocess
import tempfile
import unittest

from clone import ROOT, bash, cached, environment

PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(Small LANGUAGES CXX)
option(EPG_IMPOSSIBLE "" OFF)
if(EPG_IMPOSSIBLE)
  message(FATAL_ERROR "impossible")
endif()
add_executable(small main.cpp other.cpp)
"""
PRESETS = """
{ "version": 6, "configurePresets": [ { "name": "release", "generator": "Ninja",
  "binaryDir": "${sourceDir}/build/${presetName}" } ],
  "buildPresets": [ { "name": "release", "configurePreset": "release" } ] }
"""


def write(path, text, mode=0o644):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)
    path.chmod(mode)
    return path


class ScriptTest(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="scripts-")
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)

    def small_project(self):
        write(self.folder / "CMakeLists.txt", PROJECT)
        write(self.folder / "CMakePresets.json", PRESETS)
        write(self.folder / "main.cpp", "int main() { return 0; }\n")
        write(self.folder / "other.cpp", "int other() { return 0; }\n")

    def well(self, script, **changes):
        status, output = bash(self.folder, script, **changes)
        self.assertEqual(status, 0, output)
        return output

    def badly(self, script, **changes):
        status, output = bash(self.folder, script, **changes)
        self.assertNotEqual(status, 0, output)
        return output

    def programs(self, **scripts):
        """A PATH on which these programs come before the system's."""
        for name, script in scripts.items():
            write(self.folder / "programs" / name.replace("_", "-"), f"#!/bin/sh\n{script}\n", 0o755)
        return f"{self.folder / 'programs'}:{os.environ['PATH']}"

    def lines(self, name):
        path = self.folder / name
        return path.read_text().splitlines() if path.exists() else []


class Configuring(ScriptTest):
    def setUp(self):
        super().setUp()
        self.small_project()

    def test_a_second_try_works_where_there_was_no_compiler(self):
        output = self.badly("configure release", CXX="/bin/false")
        self.assertRegex(output, r"\ntest: build/release could not be configured; what CMake says of it stands above\n$")
        self.assertEqual(self.well("configure release && build release"), "")

    def test_an_option_that_cannot_be_met_is_not_remembered(self):
        self.well("configure release")
        self.assertIn("impossible", self.badly("configure release -DEPG_IMPOSSIBLE=ON"))
        self.assertEqual(self.well("configure release && build release"), "")
        self.assertEqual(cached(self.folder, "EPG_IMPOSSIBLE"), "OFF")

    def test_a_folder_of_a_compiler_that_is_gone_is_configured_anew(self):
        compiler = self.folder / "compiler"
        compiler.symlink_to("/usr/bin/c++")
        self.well("configure release && build release", CXX=str(compiler))
        compiler.unlink()
        output = self.well("configure release && build release")
        self.assertEqual(output, "test: build/release could not be configured as it was and was configured anew\n")
        self.assertEqual(self.well("configure release && build release"), "")

    def test_a_half_made_folder_is_no_hindrance(self):
        for name, content in (("CMakeCache.txt", ""), ("CMakeCache.txt", "\0nothing"), ("build.ninja", "rule")):
            for was_whole in (False, True):
                with self.subTest(name=name, content=content, was_whole=was_whole):
                    self.well("rm -rf build" + ("; configure release" if was_whole else ""))
                    write(self.folder / "build/release" / name, content)
                    self.well("configure release && build release")
        (self.folder / "build/release/CMakeCache.txt").unlink()
        self.well("configure release && build release")

    def test_a_folder_stays_under_another_name_of_the_same_place(self):
        self.well("configure release && build release")
        (self.folder / "link").symlink_to(self.folder)
        self.assertEqual(self.well("cd link; configure release && build release"), "")

    def test_a_folder_that_was_made_elsewhere_is_made_anew(self):
        self.well("configure release")
        cache = self.folder / "build/release/CMakeCache.txt"
        cache.write_text(cache.read_text().replace(str(self.folder), "/elsewhere"))
        self.assertIn("was made for another place", self.well("configure release && build release"))


class Building(ScriptTest):
    def setUp(self):
        super().setUp()
        self.small_project()
        self.well("configure release")

    def on_a_terminal(self, script):
        script = f"set -euo pipefail\n. {ROOT}/scripts/common.sh\n{script}"
        controller, terminal = pty.openpty()
        process = subprocess.Popen(["bash", "-c", script], cwd=self.folder, env=environment(), stdin=terminal,
                                   stdout=terminal, stderr=terminal)  # fmt: skip
        os.close(terminal)
        output = b""
        while True:
            try:
                piece = os.read(controller, 4096)
            except OSError:  # the other side is closed
                break
            if not piece:
                break
            output += piece
        os.close(controller)
        return process.wait(), output.decode()

    def test_in_a_pipe_it_says_nothing(self):
        self.assertEqual(self.well("build release"), "")

    def test_on_a_terminal_one_line_counts(self):
        status, output = self.on_a_terminal("build release")
        self.assertEqual(status, 0, output)
        steps = re.findall(r"\((\d)/3\) (\S+)", output)
        self.assertEqual([number for number, _ in steps], ["1", "2", "3"])
        self.assertEqual({name for _, name in steps}, {"main", "other", "small"})
        self.assertNotIn("\n", output)
        self.assertTrue(output.endswith("\r\x1b[K"), "the line is not gone at the end")

    def test_on_a_terminal_what_is_up_to_date_says_nothing(self):
        self.well("build release")
        self.assertNotRegex(self.on_a_terminal("build release")[1], "[a-z]{3}")

    def test_a_failure_shows_what_the_compiler_says(self):
        write(self.folder / "other.cpp", "int other() { return nothing; }\n")
        for status, output in (bash(self.folder, "build release"), self.on_a_terminal("build release")):
            self.assertNotEqual(status, 0)
            self.assertIn("other.cpp:1:22: error: ", output)
            self.assertIn("build/release could not be built", output)
        write(self.folder / "other.cpp", "int other() { return 1; }\n")
        self.well("build release")

    def test_one_build_waits_for_the_other(self):
        # The lock is held until the other one has said that it waits.
        script = """
            mkfifo said
            mkdir -p build
            exec 8>build/lock
            flock 8
            { alone touch done; } 8>&- 2>said &
            read -r line <said
            [ ! -e done ]
            exec 8>&-
            wait $!
            [ -e done ]
            echo "$line"
        """
        self.assertEqual(self.well(script), "test: waiting for another build\n")

    def test_a_place_that_cannot_be_written_is_named(self):
        write(self.folder / "elsewhere/build", "a file\n")
        output = self.badly("cd elsewhere; alone build release")
        self.assertRegex(output, r"^test: \S+/elsewhere/build cannot be written, [^\n]*\n$")


class Packages(ScriptTest):
    """need_packages one two, where Debian's programs are the test's own."""

    HOW = "test:   apt-get update && apt-get install --no-install-recommends two\n"

    def path(self, user=0, install="exit 0", **more):
        return self.programs(
            dpkg_query='cat installed 2>/dev/null || echo "installed one:amd64"',
            dpkg="echo amd64",
            apt_get=f'echo "$*" >>calls; case "$*" in *install*) {install} ;; esac',
            id=f"echo {user}",
            **more,
        )

    def usual_programs(self):
        """A PATH with little more than what the scripts use on any system."""
        folder = self.folder / "programs"
        folder.mkdir(exist_ok=True)
        for name in ("bash", "cat", "grep", "sed", "sort", "mktemp", "rm", "nproc", "tail", "stty", "cut"):
            (folder / name).symlink_to(shutil.which(name))
        return str(folder)

    def need(self, path, how):
        return how("need_packages one two", PATH=path, EPG_SKIP_PACKAGES="0")

    def test_nothing_is_touched_where_all_are_there(self):
        write(self.folder / "installed", "installed one:amd64\ninstalled two:all\n")
        self.assertEqual(self.need(self.path(), self.well), "")
        self.assertEqual(self.lines("calls"), [])

    def test_root_installs_what_is_missing_from_lists_of_today(self):
        self.assertEqual(self.need(self.path(), self.well), "test: installing two\n")
        update, install = self.lines("calls")
        self.assertRegex(update, "update$")
        self.assertRegex(install, "install -y --no-install-recommends two$")

    def test_who_is_not_root_asks_sudo(self):
        path = self.path(user=1000, sudo='echo sudo >>calls; exec "$@"')
        self.need(path, self.well)
        self.assertEqual(self.lines("calls").count("sudo"), 2)

    def test_without_root_and_sudo_it_says_what_to_do_and_a_second_try_works(self):
        self.path(user=1000)
        path = self.usual_programs()
        output = self.need(path, self.badly)
        self.assertTrue(output.startswith("test: packages are missing, and there is no sudo"), output)
        self.assertTrue(output.endswith(self.HOW), output)
        write(self.folder / "installed", "installed one:amd64\ninstalled two:amd64\n")
        self.assertEqual(self.need(path, self.well), "")

    def test_without_a_network_it_says_what_to_do_and_a_second_try_works(self):
        install = "echo noise; echo 'E: Unable to fetch some archives' >&2; exit 100"
        output = self.need(self.path(install=install), self.badly)
        self.assertIn("\nE: Unable to fetch some archives\n", output)
        self.assertNotIn("noise", output)
        self.assertIn("is there a network?", output)
        self.assertTrue(output.endswith(self.HOW), output)
        self.need(self.path(), self.well)

    def test_a_failure_without_a_reason_is_told_all_the_same(self):
        # Not as the condition of anything: under "set -e" it must not end before the message.
        path = self.path(install="echo nothing that anybody looks for; exit 1")
        output = self.badly("need_packages one two\ntrue", PATH=path, EPG_SKIP_PACKAGES="0")
        self.assertTrue(output.endswith(self.HOW), output)

    def test_on_another_system_it_names_what_to_install(self):
        output = self.need(self.usual_programs(), self.badly)
        self.assertIn("one two", output)
        self.assertIn("EPG_SKIP_PACKAGES=1", output)


class Run(ScriptTest):
    def setUp(self):
        super().setUp()
        for name in ("run", "scripts/common.sh"):
            write(self.folder / name, (ROOT / name).read_text(), 0o755)
        self.path = self.programs(cmake="echo a build >&2; exit 1")

    def run_it(self, *arguments):
        done = subprocess.run(["./run", *arguments], cwd=self.folder, env=environment(PATH=self.path),
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, timeout=600, check=False)  # fmt: skip
        return done.stdout

    def test_help_of_a_built_program_comes_without_a_build(self):
        write(self.folder / "build/release/host/dorvaselin", '#!/bin/sh\necho "ran $*"\n', 0o755)
        for arguments in (["--help"], ["-h"], ["--version"], ["edit", "--help"], ["list", "-h"]):
            self.assertEqual(self.run_it(*arguments), f"ran {' '.join(arguments)}\n")
        self.assertIn("a build", self.run_it("list"))

    def test_help_of_a_program_that_is_not_built_builds_it(self):
        self.assertIn("a build", self.run_it("--help"))

    def test_a_window_without_a_screen_is_refused_before_anything_is_built(self):
        self.path = self.programs(cmake="echo a build >&2; exit 1", uname="echo Linux")
        done = subprocess.run(["./run", "window"], cwd=self.folder, env=environment(PATH=self.path, DISPLAY=""),
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, timeout=600, check=False)  # fmt: skip
        self.assertEqual(done.stdout, "run: a window needs a screen, and DISPLAY names none\n")


class Test(ScriptTest):
    REPORT = """<testsuite>
      <testcase name="A" status="run"><system-out>fine</system-out></testcase>
      <testcase name="B" status="notrun"><skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/>
        <system-out>skipped: no display\n</system-out></testcase>
      <testcase name="C" status="notrun"><skipped message="SKIP_RETURN_CODE=77"/><system-out/></testcase>
      <testcase name="D" status="notrun"><skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/>
        <system-out>[ RUN      ] D\nfile.cpp:3: Skipped\nneeds root\n\n[  SKIPPED ] D (0 ms)\n</system-out></testcase>
      <testcase name="E" status="disabled"/>
      <testcase name="F" status="run"><system-out>test_a (x.Y.test_a) ... ok
test_b (x.Y.test_b) ... skipped 'no root'
</system-out></testcase>
      <testcase name="Suite" status="run"><system-out>[==========] Running 4 tests from 1 test suite.
[ RUN      ] Suite.First
[       OK ] Suite.First (0 ms)
[ RUN      ] Suite.Name
file.cpp:3: Skipped
no disk

[  SKIPPED ] Suite.Name (0 ms)
[==========] 4 tests from 1 test suite ran. (0 ms total)
[  PASSED  ] 3 tests.
[  SKIPPED ] 1 test, listed below:
[  SKIPPED ] Suite.Name
</system-out></testcase>
      <testcase name="Bad" status="fail"><failure message="Failed"/><system-out>[==========] Running 3 tests from 1 test suite.
[  PASSED  ] 1 test.
[  FAILED  ] 2 tests, listed below:
</system-out></testcase>
      <testcase name="Crash" status="fail"><failure message="SEGFAULT"/><system-out>[ RUN      ] Crash.Now
</system-out></testcase>
    </testsuite>"""

    def test_every_test_is_counted_and_skipped_ones_are_named_with_their_reasons(self):
        report = write(self.folder / "tests.xml", self.REPORT)
        done = subprocess.run([ROOT / "scripts/test-report", report], stdout=subprocess.PIPE, text=True, check=True)
        # Passed: A, F, three of Suite's, one of Bad's.
        expected = ["6 3 6", "B: no display", "C: SKIP_RETURN_CODE=77", "D: needs root", "E: disabled",
                    "F, test_b: 'no root'", "Suite.Name: no disk"]  # fmt: skip
        self.assertEqual(done.stdout.splitlines(), expected)

    def test_usage_is_told_without_a_build(self):
        help_text = subprocess.run([ROOT / "test", "--help"], stdout=subprocess.PIPE, text=True, check=True).stdout
        self.assertEqual(re.findall(r"^\./test *(--\w+)?", help_text, re.MULTILINE), ["", "--all", "--long"])
        wrong = subprocess.run([ROOT / "test", "--al"], stderr=subprocess.PIPE, text=True, check=False)
        self.assertEqual((wrong.returncode, wrong.stderr), (2, "test: usage: ./test [--all | --long]\n"))


if __name__ == "__main__":
    unittest.main()
