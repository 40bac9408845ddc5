#!/usr/bin/env python3
"""Installs a build and uses it as others do: by CMake, by pkg-config, and as the README shows it.

usage: test_installation.py --build FOLDER --generator NAME [--program] [--bundle DESTINATION] -- CMAKE-OPTION…
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
CONSUMER = ROOT / "tests/package/consumer"
SHARED = ["share/dorvaselin/Tags.plist", "share/dorvaselin/day-file.rng"]
DEVELOPMENT = ["include/EPGDorvaSelin/plugin/EPGDorvaSelinManagerPlugin.h"]
DOCUMENTS = ["README.md", "CHANGELOG.md", "SECURITY.md", "docs/formats.md", "docs/images/editor.png", "samples/guide.xml"]
PROGRAM = [
    "bin/dorvaselin",
    "share/man/man1/dorvaselin.1",
    "share/bash-completion/completions/dorvaselin",
    "share/zsh/site-functions/_dorvaselin",
    "share/fish/vendor_completions.d/dorvaselin.fish",
]
BUNDLE = ["EPGDorvaSelin", "Resources/EPGDorvaSelinEditor.xib", "Resources/Tags.plist", "Resources/Info-gnustep.plist"]

options = None


def run(*command, **arguments):
    done = subprocess.run(
        [str(word) for word in command],
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        timeout=500,
        check=False,
        **arguments,
    )
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


def install(prefix):
    run("cmake", "--install", options.build, "--prefix", prefix)


def block_of_the_readme(language):
    """The only block of this language, as it stands there."""
    (block,) = re.findall(rf"^```{language}\n(.*?)^```$", (ROOT / "README.md").read_text(), re.MULTILINE | re.DOTALL)
    return block


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory(prefix="installation-")
        cls.folder = pathlib.Path(cls.scratch.name)
        cls.prefix = cls.folder / "prefix"
        install(cls.prefix)

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def build(self, source, name):
        """The program of a project that finds the package by CMake."""
        build = self.folder / f"{name}-build"
        run("cmake", "-S", source, "-B", build, "-G", options.generator, f"-DCMAKE_PREFIX_PATH={self.prefix}",
            "-DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF", *options.options)  # fmt: skip
        run("cmake", "--build", build)
        return build / name

    def data_folder(self, name):
        folder = self.folder / name
        folder.mkdir()
        configuration = f"<plist><dict><key>exportPath</key><string>{folder}</string></dict></plist>"
        (folder / "Evening.epgconf").write_text(configuration)
        return folder

    def test_holds_what_people_look_for(self):
        expected = SHARED + DEVELOPMENT + [f"share/doc/dorvaselin/{name}" for name in DOCUMENTS]
        if options.program:
            expected += PROGRAM
        if options.bundle:
            expected += [f"{options.bundle}/EPGDorvaSelin.bundle/{name}" for name in BUNDLE]
        self.assertEqual([name for name in expected if not (self.prefix / name).is_file()], [])
        self.assertEqual(len(list(self.prefix.rglob("epgdorvaselin.pc"))), 1)
        self.assertEqual(len(list(self.prefix.rglob("EPGDorvaSelinConfig.cmake"))), 1)

    def test_is_of_the_version_and_the_day_that_the_changelog_names(self):
        heading = re.search(r"^## (\S+) \((\S+)\)$", (ROOT / "CHANGELOG.md").read_text(), re.MULTILINE)
        version, day = heading.groups()
        (file,) = self.prefix.rglob("epgdorvaselin.pc")
        self.assertIn(f"\nVersion: {version}\n", file.read_text())
        self.assertIn(f"Version {version}.", (ROOT / "README.md").read_text())
        if options.program:
            self.assertEqual(run(self.prefix / "bin/dorvaselin", "--version"), f"dorvaselin {version}\n")
            self.assertIn(day, (self.prefix / "share/man/man1/dorvaselin.1").read_text())

    def test_names_no_path_of_the_machine_that_built_it(self):
        if any(option.startswith("-DCMAKE_TOOLCHAIN_FILE") for option in options.options):
            self.skipTest("the libraries of another processor lie where only their path tells")
        for path in self.prefix.rglob("*"):
            if path.is_file():
                content = path.read_bytes()
                for folder in (ROOT, options.build, self.prefix):
                    self.assertNotIn(os.fsencode(str(folder)) + b"/", content, f"{folder} in {path}")

    def test_is_found_and_used_by_cmake(self):
        run(self.build(CONSUMER, "consumer"), self.folder / "cmake-data")

    def test_is_found_and_used_by_pkg_config(self):
        if shutil.which("pkg-config") is None:
            self.skipTest("there is no pkg-config")
        names = [word.split("=", 1) for word in options.options]
        settings = {name.removeprefix("-D"): value for name, value in names}
        if "CMAKE_TOOLCHAIN_FILE" in settings:
            self.skipTest("pkg-config knows the libraries of another processor")
        (file,) = self.prefix.rglob("epgdorvaselin.pc")
        environment = {**os.environ, "PKG_CONFIG_PATH": str(file.parent)}
        flags = run("pkg-config", "--cflags", "--libs", "epgdorvaselin", env=environment).split()
        own = settings["CMAKE_CXX_FLAGS"].split()
        program = self.folder / "by-pkg-config"
        run(settings["CMAKE_CXX_COMPILER"], "-std=c++17", *own, CONSUMER / "main.cpp", "-o", program, *flags)
        run(program, self.folder / "pkg-config-data")

    def test_is_used_as_the_readme_shows(self):
        source = self.folder / "readme"
        source.mkdir()
        (source / "CMakeLists.txt").write_text(block_of_the_readme("cmake"))
        (source / "main.cpp").write_text(block_of_the_readme("cpp"))
        self.assertEqual(run(self.build(source, "my_host"), self.data_folder("readme-data")), "exported\n")

    def test_keeps_the_catalogue_when_the_data_folder_goes(self):
        if not options.program:
            self.skipTest("without the program")
        home = self.folder / "home"
        install(home / ".local")
        environment = {**os.environ, "HOME": str(home), "TZ": "Europe/Berlin"}
        for name in ("XDG_DATA_HOME", "DORVASELIN_RESOURCES"):
            environment.pop(name, None)
        program = home / ".local/bin/dorvaselin"
        for _ in range(2):
            run(program, "import", ROOT / "samples/guide.xml", env=environment)
            self.assertIn("[ ] Live\n", run(program, "show", "E1", env=environment))
            shutil.rmtree(home / ".local/share/EPGDorvaSelin")


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    parser.add_argument("--generator", required=True)
    parser.add_argument("--program", action="store_true")
    parser.add_argument("--bundle")
    parser.add_argument("options", nargs="*")
    options = parser.parse_args()
    unittest.main(argv=sys.argv[:1], verbosity=2)
