"""test_darwin.py --cmake CMAKE --work FOLDER [--whole] [TEST…]: the bundle and the window as a Mac would build them.

The compilers are this machine's, the declarations of Apple's frameworks this project's own. Compiled are the bundle's
and the window's Objective-C++ in every configuration, and one bundle is linked; with --whole every file of every
configuration, and all of them are linked.
"""

import argparse
import json
import pathlib
import plistlib
import shutil
import subprocess
import sys
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
TOOLCHAIN = pathlib.Path(__file__).resolve().parent / "toolchain.cmake"
# What an Xcode says of its SDK, for the preset that leaves the oldest macOS to it.
OLDEST_OF_TODAY = "10.13"

parser = argparse.ArgumentParser()
parser.add_argument("--cmake", required=True)
parser.add_argument("--work", required=True, type=pathlib.Path)
parser.add_argument("--whole", action="store_true")
ARGUMENTS, REST = parser.parse_known_args()


def run(*command, **options):
    done = subprocess.run([str(part) for part in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False, **options)  # fmt: skip
    return done.returncode, done.stdout


def tool(name):
    return run("clang", f"-print-prog-name={name}")[1].strip()


def variables_of_preset(name):
    presets = {one["name"]: one for one in json.loads((SOURCE / "CMakePresets.json").read_text())["configurePresets"]}
    inherited = presets[name].get("inherits")
    variables = variables_of_preset(inherited) if inherited else {}
    return {**variables, **presets[name].get("cacheVariables", {})}


class Configuration:
    """A build folder, which is kept: what has not changed since the last run is not compiled again."""

    def __init__(self, name, preset, **variables):
        self.folder = ARGUMENTS.work / name
        self.variables = {**variables_of_preset(preset), **variables}
        if not ARGUMENTS.whole:
            # Nobody runs it, so nobody waits for the optimiser.
            self.variables |= {f"CMAKE_{language}_FLAGS_RELEASE": "-DNDEBUG" for language in ("CXX", "OBJCXX")}

    def configure(self):
        if (self.folder / "CMakeCache.txt").exists():
            # Another folder's leavings, or those of another compiler, would end the configuration.
            cache = (self.folder / "CMakeCache.txt").read_text()
            if f"CMAKE_HOME_DIRECTORY:INTERNAL={SOURCE}\n" not in cache:
                shutil.rmtree(self.folder)
        options = [f"-D{key}={value}" for key, value in self.variables.items()]
        return run(ARGUMENTS.cmake, "-S", SOURCE, "-B", self.folder, "-G", "Ninja",
                   f"-DCMAKE_TOOLCHAIN_FILE={TOOLCHAIN}", *options)  # fmt: skip

    def commands(self):
        commands = json.loads((self.folder / "compile_commands.json").read_text())
        return [(one["file"], one["command"].split()) for one in commands]

    def objects(self, suffixes):
        return [words[words.index("-o") + 1] for file, words in self.commands() if file.endswith(suffixes)]

    def build(self, *targets):
        return run("ninja", "-C", self.folder, "-k", "0", *targets)

    def flags(self, file):
        """How the file is compiled, without its own name and what it makes."""
        words = next(words for name, words in self.commands() if name.endswith(file))
        return words[words.index(str(TOOLCHAIN.parent / "bin" / "c++")) : words.index("-o")]

    @property
    def bundle(self):
        return self.folder / "cocoa" / "EPGDorvaSelin.bundle"


WITH_HOST = {"EPG_BUILD_HOST": "ON"}
# Of its two kinds of processors the one that the other configurations do not have.
KINDS = {} if ARGUMENTS.whole else {"CMAKE_OSX_ARCHITECTURES": "arm64"}
TODAY = Configuration("macos", "macos", CMAKE_OSX_DEPLOYMENT_TARGET=OLDEST_OF_TODAY, **WITH_HOST, **KINDS)
OLDEST = Configuration("macos-10.8", "macos-10.8", **WITH_HOST)
# lld links nothing for it.
WITH_32_BITS = Configuration("macos-10.8-i386", "macos-10.8", CMAKE_OSX_ARCHITECTURES="i386",
                             CMAKE_TRY_COMPILE_TARGET_TYPE="STATIC_LIBRARY", **WITH_HOST)  # fmt: skip
# As an Xcode of after 10.14 builds for 10.8, with its own headers.
OLDEST_WITH_NEW_HEADERS = Configuration("macos-10.8-new-headers", "macos-10.8",
                                        CMAKE_CXX_FLAGS="-stdlib=libc++ -D__MAC_OS_X_VERSION_MAX_ALLOWED=140000",
                                        CMAKE_OBJCXX_FLAGS="-stdlib=libc++ -D__MAC_OS_X_VERSION_MAX_ALLOWED=140000",
                                        CMAKE_TRY_COMPILE_TARGET_TYPE="STATIC_LIBRARY", **WITH_HOST)  # fmt: skip
ALL = (TODAY, OLDEST, OLDEST_WITH_NEW_HEADERS, WITH_32_BITS)
LINKED = (TODAY, OLDEST) if ARGUMENTS.whole else (OLDEST,)


def setUpModule():
    for configuration in ALL:
        status, output = configuration.configure()
        if status != 0:
            raise RuntimeError(output)


class Sources(unittest.TestCase):
    def test_are_compiled_without_a_warning(self):
        suffixes = (".mm", ".m", ".cpp", ".cxx") if ARGUMENTS.whole else (".mm", ".m")
        for configuration in ALL:
            with self.subTest(configuration.folder.name):
                status, output = configuration.build(*configuration.objects(suffixes))
                self.assertEqual(status, 0, output)
                self.assertNotIn("warning:", output)

    def test_let_go_of_what_they_hold_when_an_exception_passes_where_exceptions_are_none_of_cpp(self):
        for file, words in WITH_32_BITS.commands():
            if file.endswith(".m"):
                self.assertIn("-fexceptions", words)

    def test_take_libcxx_for_systems_whose_compilers_choose_another(self):
        for file, words in OLDEST.commands():
            if not file.endswith(".m"):
                # Told by the preset, not only by the stand-in for the compiler.
                self.assertIn("-stdlib=libc++", words)

    def test_keep_references_by_hand(self):
        for configuration in ALL:
            for file, words in configuration.commands():
                if file.endswith((".m", ".mm")):
                    self.assertIn("-fno-objc-arc", words)


class Contract(unittest.TestCase):
    """The declarations refuse what they are there for."""

    def complaint(self, configuration, statement, before=""):
        source = ARGUMENTS.work / "statement.mm"
        source.write_text(f"""#import <AppKit/AppKit.h>
{before}
void statement(NSString* text);
void statement(NSString* text) {{
  (void)text;
  {statement};
}}
""")
        status, output = run(*configuration.flags("EPGDorvaSelinBundle-together.mm"), "-fsyntax-only", source)
        self.assertEqual(status == 0, "error:" not in output, output)
        return output

    def assert_refused(self, words, configurations, statement, before=""):
        for configuration in configurations:
            with self.subTest(configuration.folder.name):
                self.assertIn(words, self.complaint(configuration, statement, before))

    def assert_taken(self, configurations, statement, before=""):
        for configuration in configurations:
            with self.subTest(configuration.folder.name):
                self.assertEqual(self.complaint(configuration, statement, before), "")

    def test_takes_what_every_macos_has(self):
        self.assert_taken(ALL, "NSLog(@\"%@\", [text stringByAppendingString:@\".\"])")

    def test_refuses_a_misspelt_selector(self):
        self.assert_refused("'-stringByAppendingSting:' not found", ALL, "[text stringByAppendingSting:@\".\"]")

    def test_refuses_a_selector_of_another_class(self):
        self.assert_refused("'NSString' may not respond to 'objectAtIndex:'", ALL, "[text objectAtIndex:0]")

    def test_refuses_a_method_that_came_later(self):
        later = "@interface NSString (Later)\n- (BOOL)containsString:(NSString*)text EPG_SINCE(10.10);\n@end"
        statement = "[text containsString:@\"a\"]"
        self.assert_refused("only available on macOS 10.10 or newer", (OLDEST, WITH_32_BITS), statement, later)
        self.assert_taken((TODAY,), statement, later)

    def test_refuses_a_function_of_the_c_library_that_came_later(self):
        before = "#include <unistd.h>"
        statement = "(void)linkat(0, \"a\", 0, \"b\", 0)"
        self.assert_refused("only available on macOS 10.10 or newer", (OLDEST, WITH_32_BITS), statement, before)
        self.assert_taken((TODAY,), statement, before)

    def test_refuses_what_the_cpp_library_of_old_systems_lacks(self):
        statement = "(void)std::optional<int>(1).value()"
        self.assert_refused("'value' is unavailable", (OLDEST, WITH_32_BITS), statement, "#include <optional>")

    def test_refuses_what_is_deprecated(self):
        statement = "(void)NSTitledWindowMask"
        self.assert_refused("is deprecated: first deprecated in macOS 10.12", (TODAY,), statement)
        self.assert_taken((OLDEST, WITH_32_BITS), statement)

    def test_refuses_names_that_the_headers_of_old_lack(self):
        statement = "(void)NSWindowStyleMaskTitled"
        self.assert_refused("undeclared identifier", (OLDEST, WITH_32_BITS), statement)
        self.assert_taken((TODAY,), statement)

    def test_refuses_nil_where_an_object_is_wanted(self):
        self.assert_refused("null passed to a callee that requires a non-null argument", ALL,
                            "[text stringByAppendingString:nil]")  # fmt: skip

    def test_refuses_a_format_that_does_not_fit(self):
        self.assert_refused("format specifies type", ALL, "NSLog(@\"%@\", 1)")

    def test_refuses_a_list_without_its_end(self):
        self.assert_refused("missing sentinel", ALL, "[NSArray arrayWithObjects:text, text]")

    def test_refuses_an_initialiser_that_forgets_the_inherited_one(self):
        made = "@interface Made : NSMutableDictionary\n@end\n@implementation Made\n- (id)init { return self; }\n@end"
        self.assert_refused("designated initializer missing a 'super' call", (TODAY,), "(void)text", made)

    def test_refuses_lengths_that_lose_digits_with_32_bits(self):
        statement = "const double length = 0.1; CGFloat lost = length; (void)lost"
        self.assert_refused("loses floating-point precision", (WITH_32_BITS,), statement)
        self.assert_taken((TODAY, OLDEST), statement)


class Bundle(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        for configuration in LINKED:
            targets = [] if ARGUMENTS.whole else ["EPGDorvaSelinBundle"]
            status, output = configuration.build(*targets)
            if status != 0 or "warning:" in output:
                raise RuntimeError(output)

    def test_needs_none_of_the_command_lines_packages(self):
        for preset in ("macos", "macos-10.8"):
            alone = Configuration(f"{preset}-alone", preset, CMAKE_OSX_DEPLOYMENT_TARGET=OLDEST_OF_TODAY)
            status, output = alone.configure()
            self.assertEqual(status, 0, output)
            self.assertNotIn("DorvaSelinHost", (alone.folder / "build.ninja").read_text())

    def test_has_the_platforms_layout(self):
        for configuration in LINKED:
            with self.subTest(configuration.folder.name):
                files = {path.relative_to(configuration.bundle).as_posix()
                         for path in configuration.bundle.rglob("*") if path.is_file()}  # fmt: skip
                self.assertEqual(files, {
                    "Contents/Info.plist",
                    "Contents/MacOS/EPGDorvaSelin",
                    "Contents/Resources/EPGDorvaSelinEditor.nib",
                    "Contents/Resources/Tags.plist",
                    "Contents/Headers/EPGDorvaSelinKeyConstants.h",
                    "Contents/Headers/EPGDorvaSelinManagerPlugin.h",
                    "Contents/Headers/NSString+HTML.h",
                    "Contents/Headers/TelvarinManagerEPGPluginProtocol.h",
                })  # fmt: skip

    def test_says_what_it_is(self):
        for configuration in LINKED:
            with self.subTest(configuration.folder.name):
                with open(configuration.bundle / "Contents" / "Info.plist", "rb") as file:
                    said = plistlib.load(file)
                version = said.pop("CFBundleVersion")
                self.assertRegex(version, r"^\d+\.\d+\.\d+$")
                self.assertEqual(said, {
                    "CFBundleDevelopmentRegion": "en",
                    "CFBundleExecutable": "EPGDorvaSelin",
                    "CFBundleIdentifier": "tv.dorvaselin.EPGDorvaSelin",
                    "CFBundleInfoDictionaryVersion": "6.0",
                    "CFBundleName": "EPG DorvaSelin",
                    "CFBundlePackageType": "BNDL",
                    "CFBundleShortVersionString": version,
                    "CFBundleSignature": "????",
                    "CFBundleSupportedPlatforms": ["MacOSX"],
                    "LSMinimumSystemVersion": configuration.variables["CMAKE_OSX_DEPLOYMENT_TARGET"],
                    "NSPrincipalClass": "EPGDorvaSelinManagerPlugin",
                })  # fmt: skip

    def program(self, configuration):
        return configuration.bundle / "Contents" / "MacOS" / "EPGDorvaSelin"

    def test_is_loadable_code_for_every_processor_asked_for(self):
        for configuration in LINKED:
            with self.subTest(configuration.folder.name):
                shown = run(tool("llvm-lipo"), self.program(configuration), "-archs")[1].split()
                self.assertEqual(shown, configuration.variables["CMAKE_OSX_ARCHITECTURES"].split(";"))
                header = run(tool("llvm-objdump"), "--macho", "--arch=all", "--private-header", self.program(configuration))[1]
                self.assertEqual(header.count(" BUNDLE "), len(shown), header)

    def test_shows_the_key_constants_and_nothing_else(self):
        wanted = (SOURCE / "cocoa" / "exported-symbols.txt").read_text().split()
        for configuration in LINKED:
            with self.subTest(configuration.folder.name):
                listed = run(tool("llvm-nm"), "--extern-only", "--defined-only", "--just-symbol-name",
                             self.program(configuration))[1]  # fmt: skip
                shown = sorted({line for line in listed.splitlines() if line.startswith("_")})
                self.assertEqual(shown, sorted(f"_{name}" for name in wanted))

    def test_takes_nothing_from_the_system_that_has_not_been_looked_up(self):
        lines = (SOURCE / "tests" / "darwin" / "platform-symbols.txt").read_text().splitlines()
        known = {line for line in lines if not line.startswith("#")}
        for configuration in LINKED:
            with self.subTest(configuration.folder.name):
                listed = run(tool("llvm-nm"), "--undefined-only", "--just-symbol-name", self.program(configuration))[1]
                taken = {line for line in listed.splitlines() if line and not line.endswith(":")}
                taken = {name for name in taken if not name.startswith(("__Z", "_OBJC_"))}
                self.assertIn("_objc_msgSend", taken)
                self.assertEqual(taken - known, set())

    def test_has_the_principal_class(self):
        for configuration in LINKED:
            with self.subTest(configuration.folder.name):
                listed = run(tool("llvm-nm"), "--defined-only", self.program(configuration))[1]
                self.assertIn(" _OBJC_CLASS_$_EPGDorvaSelinManagerPlugin\n", listed)


unittest.main(argv=[sys.argv[0], *REST])
