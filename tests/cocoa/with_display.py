#!/usr/bin/env python3
"""Runs a program on an X server of its own, for so long and no longer.

usage: with_display.py LONGEST-SECONDS PROGRAM [ARGUMENT…]
"""

import os
import subprocess
import sys
import tempfile

longest, program = sys.argv[1], sys.argv[2:]
reader, writer = os.pipe()
command = ["timeout", "--kill-after=1", longest, "Xvfb", "-displayfd", str(writer), "-screen", "0", "1000x800x24"]
command += ["-nolisten", "tcp", "-noreset"]
server = subprocess.Popen(command, pass_fds=(writer,), stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
os.close(writer)
try:
    with os.fdopen(reader) as number:
        display = number.readline().strip()
    if not display:
        sys.exit("with_display.py: no X server")
    with tempfile.TemporaryDirectory() as home:
        environment = {**os.environ, "DISPLAY": f":{display}", "HOME": home, "GNUSTEP_USER_ROOT": home}
        run = subprocess.run(
            ["timeout", "--kill-after=1", longest, *program], env=environment, stdin=subprocess.DEVNULL, check=False
        )
finally:
    server.terminate()
    server.wait()
sys.exit(run.returncode)
