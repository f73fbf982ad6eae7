"""Runs the examples of the README that need no compiler, with the programs and the Python package that are installed.

Usage: readme_examples.py DOCUMENTS DATA, in an empty folder. DOCUMENTS is the folder of README.md and examples, DATA has
scan.tif, scan.points and old.dxf. What the README shows of an output has to be in the output.
"""

import re
import shlex
import shutil
import subprocess
import sys
from pathlib import Path

ELSEWHERE = ("desktop", "benchmark")  # what ./run does only in the folder of the sources
SAVED = ("--log", "--output", "--plot", "--report", "--save-params")  # options that name what is written


def prepare(documents, data):
    """The files that the README speaks of."""
    Path("examples").symlink_to(documents / "examples")
    points = Path("examples/swiss_helmert_9.dat").read_text()
    for name in ("points.dat", "my_points.txt", "FILE"):
        Path(name).write_text(points)
    for name in ("old.txt", "old_list.txt"):
        Path(name).write_text("".join(" ".join(line.split()[:3]) + "\n" for line in points.splitlines()))
    Path("stg.txt").write_text("1 12345.67 -4321.05\n2 -20150.4 8760.33\n")
    for name in ("scan.tif", "scan.points", "old.dxf"):
        shutil.copy(data / name, name)


def commands(text):
    """Each command of the text, with the lines of output that are shown below it."""
    for index, part in enumerate(text.split("```")):
        if index % 2 == 0:  # prose
            for command in re.findall(r"`(\./run [^`]*)`", part):
                yield " ".join(command.split()), []
        elif re.search(r"^\$ \./run", part, re.MULTILINE):
            for shown in re.split(r"^\$ ", part, flags=re.MULTILINE)[1:]:
                command, *output = shown.splitlines()
                yield command, [line for line in output if line.strip() not in ("", "...")]
        else:
            for command in re.findall(r"^\./run \S.*$", part, re.MULTILINE):
                yield command, []


def run(command):
    done = subprocess.run(command, text=True, capture_output=True)
    if done.returncode != 0:
        sys.exit(f"{command} ended with {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def try_command(command, shown):
    words = shlex.split(command)
    if words[1] in ELSEWHERE:
        return False
    saved = [Path(words[index + 1]) for index, word in enumerate(words) if word in SAVED]
    for path in saved:
        path.unlink(missing_ok=True)
    output = run(["kv_tr", *words[1:]])
    if not output and not saved:
        sys.exit(f"{command} printed nothing")
    lines = iter(output.splitlines())
    for line in shown:
        if line not in lines:  # goes on behind the line that was found last
            sys.exit(f"{command} should have printed, at this place:\n{line}\n{output}")
    for path in saved:
        if not path.stat().st_size:
            sys.exit(f"{command} wrote an empty file {path}")
    return True


def main():
    documents, data = map(Path, sys.argv[1:])
    text = (documents / "README.md").read_text()
    prepare(documents, data)
    tried = sum(try_command(*command) for command in commands(text))
    if tried < 3:
        sys.exit(f"only {tried} commands were found in the README")
    if not Path("report.pdf").read_bytes().startswith(b"%PDF"):
        sys.exit("the report is no PDF")
    print(f"ok: {tried} commands of the README")

    (example,) = re.findall(r"```python\n(.*?)```", text, re.DOTALL)
    printed = run([sys.executable, "-c", example])
    if "0.034" not in printed or "591294.8599" not in printed:
        sys.exit(f"the example in Python printed:\n{printed}")
    script = "examples/python/fit_from_csv.py"
    run([sys.executable, script, "examples/python/control_points.csv", "--limit", "0.05", "--save", "python.trp"])
    if len(Path("python.trp").read_text().split()) < 4:
        sys.exit(f"{script} saved no parameters")
    print("ok: the README's example in Python, and a script")


main()
