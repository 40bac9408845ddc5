"""test_deployment_target.py CMAKE: which macOS a build on a Mac is for, asked of an xcrun of the test's own."""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

MODULE = pathlib.Path(__file__).resolve().parents[2] / "cmake" / "EPGDeploymentTarget.cmake"
CMAKE = sys.argv.pop(1)


class DeploymentTarget(unittest.TestCase):
    def setUp(self):
        self.temporary = tempfile.TemporaryDirectory()
        self.addCleanup(self.temporary.cleanup)
        self.folder = pathlib.Path(self.temporary.name)
        self.answer_with(f"echo '{self.folder}'")

    def answer_with(self, script):
        xcrun = self.folder / "xcrun"
        xcrun.write_text(f"#!/bin/sh\n[ \"$*\" = '--sdk macosx --show-sdk-path' ] || exit 64\n{script}\n")
        xcrun.chmod(0o755)

    def write_settings(self, text):
        (self.folder / "SDKSettings.json").write_text(text)

    def write_target(self, target):
        self.write_settings(json.dumps({"SupportedTargets": {"macosx": {"MinimumDeploymentTarget": target}}}))

    def target(self):
        script = self.folder / "ask.cmake"
        script.write_text(f'include("{MODULE}")\nepg_oldest_deployment_target(target)\nmessage("${{target}}")\n')
        environment = {**os.environ, "PATH": f"{self.folder}:{os.environ['PATH']}"}
        done = subprocess.run([CMAKE, "-P", script], env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, check=True)  # fmt: skip
        return done.stdout.strip()

    def test_is_the_oldest_that_the_sdk_builds_for(self):
        for target in ("10.9", "10.13", "11.0"):
            self.write_target(target)
            self.assertEqual(self.target(), target)

    def test_is_never_below_what_the_sources_keep_to(self):
        self.write_target("10.6")
        self.assertEqual(self.target(), "10.8")

    def test_is_that_of_the_sources_without_an_answer(self):
        self.assertEqual(self.target(), "10.8")
        for settings in ("", "{", "[]", '{"SupportedTargets": {}}'):
            self.write_settings(settings)
            self.assertEqual(self.target(), "10.8")
        self.answer_with("exit 72")
        self.assertEqual(self.target(), "10.8")
        (self.folder / "xcrun").unlink()
        self.assertEqual(self.target(), "10.8")


unittest.main()
