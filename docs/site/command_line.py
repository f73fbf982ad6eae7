#!/usr/bin/env python3
"""Writes the page of the command line: what `kv_tr help` prints of the program and of each command.

command_line.py KV_TR PAGE
"""

import re
import subprocess
import sys
from pathlib import Path

HEAD = """# The command line

What `kv_tr --help` and `kv_tr help COMMAND` print. An installed copy has the same as manual pages, `man kv_tr-adjust`,
in five languages, and completion for bash, zsh and fish. Exit codes are 0 when everything was done, 1 when something
was reported or failed, 2 for wrong usage.
"""


def printed(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip("\n")


def main():
    program, page = sys.argv[1:]
    text = printed(program, "--help", "--language", "en")
    sections = [HEAD, f"```text\n{text}\n```\n"]
    for command in re.findall(r"^  (\w+) {2,}", text.split("\nCommands:\n")[1], re.MULTILINE):
        if command != "help":
            sections.append(f"## kv_tr {command}\n\n```text\n{printed(program, 'help', command)}\n```\n")
    Path(page).write_text("\n".join(sections), encoding="utf-8")


main()
