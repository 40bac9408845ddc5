#!/usr/bin/env python3
"""Runs one of the hosts that the documentation shows, and checks that it is shown as it is.

usage: check_host.py DOCUMENT SOURCE PROGRAM [ARGUMENT…]
"""

import pathlib
import plistlib
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

# A hang gets there, nothing else does.
LONGEST = 600
MOST_LINES = 60

document, source, program = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3:]
text = source.read_text(encoding="utf-8")
if len(text.splitlines()) >= MOST_LINES:
    sys.exit(f"{source.name} is no short host any more")
if text not in document.read_text(encoding="utf-8"):
    sys.exit(f"{document.name} does not show {source.name} as it is")

with tempfile.TemporaryDirectory() as folder:
    data = pathlib.Path(folder) / "data"
    export = pathlib.Path(folder) / "export"
    data.mkdir()
    export.mkdir()
    (data / "Evening.epgconf").write_bytes(plistlib.dumps({"exportPath": str(export)}))
    run = subprocess.run(
        [*program, str(data)], stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=LONGEST, check=False
    )
    told = run.stdout + run.stderr
    if run.returncode != 0 or "exported" not in told:
        sys.exit(f"{program[0]} ended with {run.returncode}:\n{told}")
    store = plistlib.loads((data / "EPGItems.plist").read_bytes())
    if store["E1"]["uniqueID"] != "E1":
        sys.exit(f"EPGItems.plist holds {store}")
    (day_file,) = export.iterdir()
    programmes = ElementTree.parse(day_file).getroot().findall("program")
    if len(programmes) != 1 or "id" not in programmes[0].attrib:
        sys.exit(day_file.read_text(encoding="utf-8"))
