"""Opens a project in the window of the installed package, without a display, until the window remembers the project.

Usage: window.py PROJECT
"""

import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SECONDS = 120


def main():
    project = Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory() as home:
        environment = {**os.environ, "HOME": home, "QT_QPA_PLATFORM": "offscreen"}
        with open(f"{home}/said", "w+") as said:
            window = subprocess.Popen(["kv_tr_desktop", project], env=environment, stdout=said, stderr=said)
            until = time.monotonic() + SECONDS
            remembered = False
            while not remembered and window.poll() is None and time.monotonic() < until:
                time.sleep(0.2)
                written = [path for path in Path(home).rglob("*") if path.is_file() and path.name != "said"]
                remembered = any(str(project).encode() in path.read_bytes() for path in written)
            ended = window.poll()
            window.terminate()
            window.wait()
            said.seek(0)
            if not remembered or ended is not None:
                sys.exit(f"the window did not open {project}, exit code {ended}\n{said.read()}")
    print("ok: the window opens a project")


main()
