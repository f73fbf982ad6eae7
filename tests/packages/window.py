"""Opens the window of the installed package on a file of points, without a display, until the file is remembered.

Usage: window.py POINTS
"""

import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SECONDS = 120


def main():
    points = Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory() as home:
        environment = {**os.environ, "HOME": home, "QT_QPA_PLATFORM": "offscreen"}
        with open(f"{home}/said", "w+") as said:
            window = subprocess.Popen(["kv_tr_desktop", points], env=environment, stdout=said, stderr=said)
            until = time.monotonic() + SECONDS
            remembered = False
            while not remembered and window.poll() is None and time.monotonic() < until:
                time.sleep(0.2)
                settings = [path for path in Path(home).rglob("*") if path.is_file() and path.name != "said"]
                remembered = any(str(points).encode() in path.read_bytes() for path in settings)
            ended = window.poll()
            window.terminate()
            window.wait()
            said.seek(0)
            if not remembered or ended is not None:
                sys.exit(f"the window did not take {points}, exit code {ended}\n{said.read()}")
    print("ok: the window")


main()
