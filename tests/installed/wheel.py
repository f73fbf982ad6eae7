"""Builds the wheel from a build tree, installs it into a virtual environment and uses it there.

Usage: wheel.py BUILD_TREE. Works offline, with what the system has of Python's packages.
"""

import os
import subprocess
import sys
import tempfile
import venv
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
USE = """
import importlib.metadata, pathlib, sys
import kv_tr
assert pathlib.Path(kv_tr.__file__).is_relative_to(sys.prefix), kv_tr.__file__
assert importlib.metadata.version("kv_tr") == kv_tr.__version__ == sys.argv[1], kv_tr.__version__
assert importlib.metadata.metadata("kv_tr")["License"] == "MIT"
result = kv_tr.fit(kv_tr.read_points(sys.argv[2]), "helmert")
print(result.summary())
"""


def run(*command, **options):
    done = subprocess.run(list(map(str, command)), text=True, capture_output=True, **options)
    if done.returncode != 0:
        sys.exit(f"{command}\n{done.stdout}{done.stderr}")
    return done.stdout


with tempfile.TemporaryDirectory() as folder:
    folder = Path(folder)
    environment = {**os.environ, "KV_TR_BUILD_TREE": sys.argv[1], "PYTHONPATH": ""}
    venv.create(folder / "venv", system_site_packages=True, with_pip=False)
    python = folder / "venv/bin/python"
    pip = (python, "-m", "pip", "--disable-pip-version-check")
    run(*pip, "wheel", "--no-build-isolation", "--no-deps", "--no-index", "-w", folder, ROOT, env=environment)
    (wheel,) = folder.glob("*.whl")
    run(*pip, "install", "--no-deps", "--no-index", wheel)
    version = run(ROOT / "scripts/version").strip()
    printed = run(python, "-c", USE, version, ROOT / "examples/swiss_helmert_9.dat", cwd=folder)
    assert "0.034" in printed, printed  # the rms of both coordinates that the command line shows
    run(*pip, "uninstall", "--yes", "kv_tr")
    left = [path for path in (folder / "venv/lib").rglob("*kv_tr*")]
    assert not left, left
