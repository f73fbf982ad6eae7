#!/usr/bin/env python3
"""Runs the terminal sessions of Markdown files and says where a document shows something else than happens.

run_sessions.py FOLDER EXAMPLES FILE.md...: each file's sessions run one after the other, in one shell, in a folder of
their own below FOLDER that has a copy of EXAMPLES.

A session is a block marked `console`. A line that begins with "$ " is a command, "> " goes on with it, other lines are
what it prints on both streams. A line "..." stands for any lines, "..." in a line for any text. Blanks at the ends of
lines do not count.
"""

import difflib
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

BLOCK = re.compile(r"^( *)```console\n(.*?)^ *```$", re.MULTILINE | re.DOTALL)
MARK = "=== end of command ==="
SHELL = f"""ended() {{ local status=$?; printf '\\n{MARK}\\n'; return $status; }}
"""


def commands(text):
    """The commands of a document, each with the lines that it is said to print."""
    found = []
    for block in BLOCK.finditer(text):
        for line in block[2].splitlines():
            line = line.removeprefix(block[1])
            if line.startswith("$ "):
                found.append((line[2:], []))
            elif line.startswith("> ") and not found[-1][1]:
                found[-1] = (f"{found[-1][0]}\n{line[2:]}", [])
            else:
                found[-1][1].append(line.rstrip())
    return found


def agrees(shown, printed):
    """Whether lines are those shown, where "..." stands for any."""
    anything = re.escape("...")
    parts = [re.escape(line + "\n").replace(anything, ".*") if line != "..." else r"(?:.*\n)*" for line in shown]
    return re.fullmatch("".join(parts), "".join(line + "\n" for line in printed)) is not None


def outputs(session, folder):
    """What each command prints, as lines."""
    script = SHELL + "".join(f"{command}\nended\n" for command, _ in session)
    home = {name: str(folder / ".home") for name in ("HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME")}
    ran = subprocess.run(
        ["bash", "-u"], input=script, cwd=folder, env=os.environ | home, text=True,
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
    )  # fmt: skip
    printed = ran.stdout.split(f"\n{MARK}\n")[:-1]
    return [[line.rstrip() for line in text.splitlines()] for text in printed]


def trim(lines):
    return "\n".join(lines).strip("\n").splitlines()


def main():
    root, examples, *files = map(Path, sys.argv[1:])
    failed = False
    for file in files:
        folder = root / file.stem
        folder.mkdir(parents=True)
        shutil.copytree(examples, folder / "examples")
        session = commands(file.read_text(encoding="utf-8"))
        printed = outputs(session, folder)
        if len(printed) != len(session):
            sys.exit(f"{file}: the shell ended at the command: {session[len(printed)][0]}")
        for (command, shown), lines in zip(session, printed):
            shown, lines = trim(shown), trim(lines)
            if not agrees(shown, lines):
                failed = True
                print(f"{file}: not what this prints: {command}")
                print(*difflib.unified_diff(shown, lines, "shown", "printed", lineterm="", n=1), sep="\n")
    sys.exit(failed)


main()
