#!/usr/bin/env python3
"""check_symbols.py NM BUNDLE LIST: the bundle's program shows the symbols on the list and nothing else."""

import subprocess
import sys

LINKERS = {"__bss_start", "_edata", "_end", "_init", "_fini"}

nm, bundle, list_file = sys.argv[1:]
lines = subprocess.run([nm, "-D", "--defined-only", bundle], check=True, stdout=subprocess.PIPE, text=True).stdout
shown = {line.split()[-1].split("@")[0] for line in lines.splitlines()} - LINKERS
with open(list_file, encoding="ascii") as file:
    wanted = set(file.read().split())
problems = [f"shown, but not on the list: {name}" for name in sorted(shown - wanted)]
problems += [f"on the list, but not shown: {name}" for name in sorted(wanted - shown)]
sys.exit("\n".join(problems) if problems else 0)
