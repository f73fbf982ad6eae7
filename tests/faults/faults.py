#!/usr/bin/env python3
"""Lets every system call and every allocation of every kind of save fail in turn, and kills the
program at every system call: whatever happens, the old or the complete new file is there, the exit
code and a message say which, and no temporary file stays but of a program that was killed."""

import argparse
import collections
import concurrent.futures
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
from dataclasses import dataclass

OLD = b"the old file\n" * 50
# These end what has begun, or, as brk does, never return an error.
UNHURT = {"exit_group", "exit", "execve", "munmap", "futex", "rt_sigreturn", "brk"}
ERRORS = {"write": ("ENOSPC", "EIO"), "openat": ("EMFILE", "EACCES"), "mmap": ("ENOMEM",),
          "clone3": ("EAGAIN",), "fallocate": ("ENOSPC",)}
PLACES = set()  # that have allocated in a save before


@dataclass
class Save:
    """A command line, the files that it replaces, and whether it reports a failure."""
    name: str
    command: list
    targets: list
    reports: bool = True
    first: str = "points.dat"  # the file that is opened first
    foreign: bool = False  # a library of others does not survive that memory runs out


def saves(kv_tr, host):
    fitted = ["--points", "points.dat", "--type", "helmert"]
    several = [("--log", "log.txt"), ("--save-points", "points.csv"), ("--save-params", "linear.trp"),
               ("--plot", "plot.svg"), ("--report", "report.html"),
               ("--residual-vectors", "vectors.geojson"), ("--export", "json=record.json"), ("--export", "world=six.wld")]
    yield Save("adjustment",
               [kv_tr, "adjust", "points.dat", "--type", "helmert", "--report-date", "2026-05-31",
                *(word for pair in several for word in pair)],
               [name.split("=")[-1] for _, name in several])
    yield Save("pdf", [kv_tr, "adjust", "points.dat", "--report-date", "2026-05-31", "--report", "report.pdf"],
               ["report.pdf"], foreign=True)
    yield Save("polynomial", [kv_tr, "adjust", "points.dat", "--type", "poly2", "--save-params", "poly.all"], ["poly.all"])
    yield Save("points", [kv_tr, "points", "points.dat", "--output", "new.geojson"], ["new.geojson"])
    yield Save("lines", [kv_tr, "transform", "lines.txt", *fitted, "--output", "moved.txt"], ["moved.txt"])
    yield Save("several", [kv_tr, "transform", "lines.txt", "more.txt", *fitted, "--output", "folder", "--overwrite"],
               ["folder/lines.txt", "folder/more.txt"])
    yield Save("drawing", [kv_tr, "transform", "drawing.dxf", *fitted, "--output", "moved.dxf", "--overwrite"],
               ["moved.dxf"])
    yield Save("settings", [host, "settings"], ["App.ini"], reports=False, first="App.ini")
    for what, target in (("points", "saved.dat"), ("log", "saved.txt"), ("linear", "saved.trp"), ("polynomial", "saved.all")):
        yield Save("host's " + what, [host, what], [target], reports=False)


class Folder:
    """A folder with the inputs and old files of a save."""

    def __init__(self, inputs):
        self.path = pathlib.Path(tempfile.mkdtemp(prefix="kv_tr-faults-"))
        self.inputs = inputs

    def fill(self, save):
        for entry in os.scandir(self.path):
            shutil.rmtree(entry) if entry.is_dir() else os.unlink(entry)
        for name, content in self.inputs.items():
            (self.path / name).write_bytes(content)
        for name in save.targets:
            (self.path / name).parent.mkdir(exist_ok=True)
            (self.path / name).write_bytes(b"[Settings]\nPath=old\n" if name == "App.ini" else OLD)

    def files(self):
        return {str(file.relative_to(self.path)): file.read_bytes() for file in self.path.rglob("*") if file.is_file()}

    def run(self, command, **environment):
        home = {"HOME": str(self.path), "XDG_CONFIG_HOME": str(self.path), "LC_ALL": "C", "PATH": os.environ["PATH"]}
        return subprocess.run(command, cwd=self.path, env={**home, **environment}, stdin=subprocess.DEVNULL,
                              capture_output=True, timeout=60, check=False)


def strace(call, number, what, *faster):
    """What makes one system call of a command fail or kill; faster does not go with signals."""
    return ["strace", "-f", "-qq", *faster, "-o", "trace", "-e", f"trace={call}", "-e", f"inject={call}:{what}:when={number}"]


def calls_of(save, folder):
    """The system calls of a save from the first file of its own on: name, how many of that name came
    before, text. Of calls that differ in numbers only there is one."""
    folder.fill(save)
    folder.run(["strace", "-f", "-qq", "-o", "trace", *save.command])
    calls, seen, counts, begun = [], set(), collections.Counter(), False
    for line in (folder.path / "trace").read_text(errors="replace").splitlines():
        found = re.match(r"\d+ +(\w+)\(", line)
        if not found:
            continue
        name = found[1]
        counts[name] += 1
        begun = begun or re.search(rf'"(.*/)?{re.escape(save.first)}"', line) and name != "execve"
        alike = re.sub(r"0x[0-9a-f]+|\d+", "#", line.split(None, 1)[1])
        if begun and name not in UNHURT and alike not in seen:
            seen.add(alike)
            calls.append((name, counts[name], line.split(None, 1)[1]))
    return calls


def places_of(save, folder, preload):
    folder.fill(save)
    folder.run(save.command, LD_PRELOAD=preload, KV_TR_FROM=save.first, KV_TR_PLACES="places")
    return (folder.path / "places").read_text().split()


def is_whole_report(name, content):
    """Whether it is a report that differs, as one without the checksum of a file that could not be read."""
    return content is not None and (name.endswith(".html") and content.endswith(b"</html>\n") or
                                    name.endswith(".pdf") and content.rstrip().endswith(b"%%EOF"))


def judge(save, before, new, after, result, fault):
    """What is wrong after a fault."""
    wrong = []
    message = result.stderr.decode(errors="replace")
    old = []
    for name in save.targets:
        if after.get(name) == before[name]:
            old.append(name)
        elif after.get(name) != new[name] and not is_whole_report(name, after.get(name)):
            wrong.append(f"{name} is neither the old nor the new file")
    for name in after.keys() - new.keys():
        wrong.append(f"{name} stays")
    if result.returncode not in (0, 1) and not (save.foreign and fault.startswith("allocation")):
        wrong.append(f"the exit code is {result.returncode}")
    if save.reports and result.returncode == 0 and old:
        wrong.append(f"the exit code is 0, but {old} are old")
    if save.reports and result.returncode == 1:
        if not message.strip():
            wrong.append("nothing is said")
        wrong += [f"{name} is said to have failed, but is new" for name in save.targets
                  if re.search(rf"written: (.*/)?{re.escape(name)}", message) and name not in old]
    return [f"{save.name}, {fault}: {text}; {message.strip()[-200:]!r}" for text in wrong]


def try_save(save, folder, preload, kinds):
    """Every fault of one save: how many there were of each kind, and what was wrong."""
    folder.fill(save)
    before = folder.files()
    result = folder.run(save.command)
    new = folder.files()
    assert result.returncode == 0 and all(new[name] != before[name] for name in save.targets), (save, result)

    tried, wrong = collections.Counter(), []

    def attempt(kind, fault, command, **environment):
        folder.fill(save)
        result = folder.run(command, **environment)
        after = folder.files()
        trace = after.pop("trace", b"INJECTED").decode(errors="replace")
        happened = "INJECTED" in trace or "killed by" in trace
        tried[kind if happened else "not reached"] += 1  # threads do not always call in one order
        return result, after

    calls = calls_of(save, folder)
    for name, number, text in calls if "calls" in kinds else ():
        if name in ("unlink", "unlinkat"):  # a file that cannot be removed stays
            continue
        for error in ERRORS.get(name, ("EIO",)):
            fails = strace(name, number, f"error={error}", "--seccomp-bpf")
            result, after = attempt("calls", text, fails + save.command)
            wrong += judge(save, before, new, after, result, f"{error} of {text}")
    for name, number, text in calls if "kills" in kinds else ():
        _, after = attempt("kills", text, strace(name, number, "signal=KILL") + save.command)
        wrong += [f"{save.name}, killed at {text}: {target} is neither the old nor the new file"
                  for target in save.targets if after.get(target) not in (before[target], new[target])]
        if any(".kv_tr-" in file for file in after):
            tried["temporaries of killed programs"] += 1
            folder.run(save.command)  # the next save into the folder sweeps
            wrong += [f"{save.name}, killed at {text}: {file} stays after the next save"
                      for file in folder.files() if ".kv_tr-" in file]
    for place in places_of(save, folder, preload) if "allocations" in kinds else ():
        if place in PLACES:
            continue
        PLACES.add(place)
        result, after = attempt("allocations", place, save.command, LD_PRELOAD=preload, KV_TR_FROM=save.first, KV_TR_FAIL=place)
        wrong += judge(save, before, new, after, result, f"allocation {place}")
    return tried, wrong


def inputs(data):
    numbers = random.Random(7)

    def points(count, last):
        for i in range(count):
            first, second = (at + numbers.random() * 5000 for at in (600000, 200000))
            yield f"P{i} {first:.3f} {second:.3f} {last(first, second)}\n"

    def moved(first, second):
        return f"{first * 1.00002 - 7 + numbers.gauss(0, 0.02):.3f} {second * 1.00002 + numbers.gauss(0, 0.02):.3f}"

    return {"points.dat": "".join(points(12, moved)).encode(),
            "lines.txt": "".join(points(400, lambda first, second: "rest")).encode(),
            "more.txt": "".join(points(50, lambda first, second: "")).encode(),
            "drawing.dxf": (data / "interchange/gdal.dxf").read_bytes()}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("kv_tr")
    parser.add_argument("host")
    parser.add_argument("preload")
    parser.add_argument("--kind", action="append", choices=("calls", "kills", "allocations"))
    parser.add_argument("--save", help="only the saves whose names begin so")
    options = parser.parse_args()
    if shutil.which("strace") is None or subprocess.run(["strace", "-o", "/dev/null", "true"], check=False).returncode != 0:
        print("strace is missing or may not trace here.")
        return 77
    kinds = options.kind or ("calls", "kills", "allocations")
    files = inputs(pathlib.Path(__file__).parent.parent / "data")

    def in_own_folder(save):
        folder = Folder(files)
        try:
            return save, *try_save(save, folder, options.preload, kinds)
        finally:
            shutil.rmtree(folder.path, ignore_errors=True)

    chosen = [save for save in saves(options.kv_tr, options.host) if save.name.startswith(options.save or "")]
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for save, tried, wrong in pool.map(in_own_folder, chosen):
            print(f"{save.name}: {', '.join(f'{count} {kind}' for kind, count in tried.items())}; {len(wrong)} wrong")
            for text in wrong:
                print("   ", text)
            failed += len(wrong)
    return 1 if failed else 0


sys.exit(main())
