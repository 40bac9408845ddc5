"""Copies of the project to run its scripts in."""

import os
import pathlib
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
LONGEST = 900


def clone(folder):
    """The project's files as they are now, without anything that was built."""
    listed = subprocess.run(
        ["git", "-C", ROOT, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)  # fmt: skip
    if listed.returncode != 0:  # not a checkout
        return pathlib.Path(shutil.copytree(ROOT, folder, ignore=shutil.ignore_patterns("build")))
    for name in os.fsdecode(listed.stdout).split("\0"):
        source = ROOT / name
        if name and source.is_file():
            target = folder / name
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(source, target)
    return folder


def environment(**changes):
    """This process's, without what would decide for the scripts."""
    mine = {**os.environ, "EPG_SKIP_PACKAGES": "1", "LC_ALL": "C.UTF-8"}
    for name in ("CC", "CXX", "OBJC", "OBJCXX", "CFLAGS", "CXXFLAGS", "LDFLAGS", "NINJA_STATUS", "CMAKE_BUILD_TYPE"):
        mine.pop(name, None)
    mine.update(changes)
    return mine


def bash(folder, script, **changes):
    """(status, what it printed, standard error included) of a script that may call what the scripts share."""
    done = subprocess.run(
        ["bash", "-c", f"set -euo pipefail\n. {ROOT}/scripts/common.sh\n{script}", "test"],
        cwd=folder, env=environment(**changes), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT, text=True, timeout=LONGEST, check=False)  # fmt: skip
    return done.returncode, done.stdout


def cached(folder, name, preset="release"):
    """What a configured build folder remembers under this name."""
    for line in (folder / "build" / preset / "CMakeCache.txt").read_text().splitlines():
        key, _, value = line.partition("=")
        if key.partition(":")[0] == name:
            return value
    return None


if __name__ == "__main__":
    sys.exit("this is no test")
