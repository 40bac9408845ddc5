"""Runs the built dorvaselin over folders of a test's own."""

import os
import pathlib
import plistlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SAMPLES = ROOT / "samples"
# In seconds. A hang gets there, nothing else does.
LONGEST = 600


def program():
    return pathlib.Path(os.environ["DORVASELIN"])


def main():
    """What each of these files does when it is run: `test_….py PATH/TO/dorvaselin`."""
    if len(sys.argv) < 2:
        sys.exit("which program is to be tested?")
    os.environ["DORVASELIN"] = str(pathlib.Path(sys.argv.pop(1)).resolve())
    unittest.main(module="__main__", verbosity=2)


class CommandLineTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.data = self.folder / "data"
        self.store_path = self.data / "EPGItems.plist"

    def environment(self, **changes):
        environment = dict(os.environ, TZ="Europe/Berlin", HOME=str(self.folder / "home"), LC_ALL="C.UTF-8")
        for name in ("XDG_DATA_HOME", "DORVASELIN_RESOURCES"):
            environment.pop(name, None)
        environment.update(changes)
        return environment

    def command(self, *arguments):
        return [program(), "--data-folder", self.data, *arguments]

    def run_command(self, *arguments, text=b"", **options):
        options.setdefault("env", self.environment())
        if "stdout" not in options:
            options["stdout"] = subprocess.PIPE
        return subprocess.run(
            self.command(*arguments), input=text, stderr=subprocess.PIPE, timeout=LONGEST, check=False, **options
        )

    def run_well(self, *arguments, **options):
        """The lines of standard output."""
        result = self.run_command(*arguments, **options)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout.decode().splitlines() if result.stdout is not None else []

    def store(self):
        return plistlib.loads(self.store_path.read_bytes())

    def write_store(self, store, form=plistlib.FMT_XML):
        self.data.mkdir(exist_ok=True)
        self.store_path.write_bytes(plistlib.dumps(store, fmt=form))

    def configure_export(self, name="Export"):
        """The folder into which the only configuration exports."""
        folder = self.folder / "export"
        folder.mkdir()
        self.data.mkdir(exist_ok=True)
        (self.data / f"{name}.epgconf").write_bytes(plistlib.dumps({"exportPath": str(folder)}))
        return folder

    def write(self, name, content):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path
