"""Whether the command line of Windows, run by Wine, writes what that of this system does, to the last byte.

compare_outputs.py KV_TR KV_TR_EXE WINE: runs both with every example, type of transformation and kind of output in folders
of their own and compares exit codes, what is printed and all files.
"""

import concurrent.futures
import os
import pathlib
import random
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
TYPES = "helmert affine helmert3 affine5 bilinear poly1 poly2 poly3 poly4 poly5".split()
MOST_SHOWN = 10


def inputs():
    """The files that the command lines read, by name."""
    files = {path.name: path.read_bytes() for path in sorted((ROOT / "examples").glob("*.dat"))}
    for path in (ROOT / "tests/data/interchange").glob("everything_*.dxf"):
        files[path.name] = path.read_bytes()
    random.seed(19)
    files["many.txt"] = "".join(
        f"P{i} {random.uniform(-9e5, 9e5)!r};{random.uniform(0, 1e6):.3f} rest {i}\r\n" for i in range(20000)
    ).encode()
    return files


def command_lines(files):
    """What is run, each in a folder of its own."""
    for name in files:
        if not name.endswith(".dat"):
            continue
        for kind in TYPES:
            fit = [name, "--type", kind]
            ending = "all" if kind.startswith("poly") else "trp"
            yield ["adjust", *fit, "--json"]
            yield ["adjust", *fit, "--statistics", "--advise", "--force", "--log", "log", "--save-points", "points",
                   "--save-params", f"p.{ending}", "--plot", "plot.svg", "--report", "r.html", "--export", "json=e.json",
                   "--residual-vectors", "v.geojson"]
            yield ["transform", "many.txt", "--points", name, "--type", kind, "--decimals", "9", "--keep-going"]
        yield ["adjust", name, "--solution", "accurate", "--json", "--language", "vi", "--decimal-comma"]
        yield ["distortion", "--points", name, "--type", "poly1", "--at", "1", "2", "--json"]
    exchange = [name for name in files if name.endswith(".dxf")]
    for number, name in enumerate(exchange):
        yield ["transform", name, "--points", "greek_order2_15.dat", "--type", TYPES[number + 1], "--output", "new.dxf"]
    for name in "BOV_EOV EOV_STG_10e STG_HER OL_METER".split():
        for inverse in [], ["--inverse"]:
            yield ["transform", "many.txt", "--national", name, "--keep-going", *inverse]
        yield ["params", "--national", name]
        yield ["angle", "50", "650000", "240000", "--national", name]
    for language in "en hu ro sr vi".split():
        yield ["national", "--language", language]
        yield ["adjust", "gone.dat", "--language", language]
        yield ["help", "adjust", "--language", language]


def outcome(program, arguments, files):
    """The exit code, what was printed, and the files that are new or changed."""
    with tempfile.TemporaryDirectory() as folder:
        for name in files:
            if name in arguments or name == "many.txt" and "transform" in arguments:
                pathlib.Path(folder, name).write_bytes(files[name])
        surroundings = dict(os.environ, LC_ALL="C.UTF-8", SOURCE_DATE_EPOCH="86400", HOME=folder)
        # Into files, since processes that Wine starts in the background would keep pipes open.
        with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
            done = subprocess.run([*program, *arguments], cwd=folder, env=surroundings, stdin=subprocess.DEVNULL,
                                  stdout=output, stderr=errors, timeout=300)
            output.seek(0)
            errors.seek(0)
            result = {"exit code": done.returncode, "output": output.read(), "errors": errors.read()}
        for path in pathlib.Path(folder).iterdir():
            result[path.name] = path.read_bytes()
        return result


def difference(here, there):
    """Where two outcomes differ, in words."""
    for name in sorted(here.keys() | there.keys()):
        one, other = here.get(name), there.get(name)
        if one == other:
            continue
        if not isinstance(one, bytes) or not isinstance(other, bytes):
            return f"{name}: {one!r:.60} here, {other!r:.60} there"
        for number, (line, counterpart) in enumerate(zip(one.split(b"\n"), other.split(b"\n")), 1):
            if line != counterpart:
                return f"{name}, line {number}:\n  {line!r:.150}\n  {counterpart!r:.150}"
        return f"{name}: {len(one)} bytes here, {len(other)} there"
    return ""


def main():
    native, windows, wine = map(os.path.abspath, sys.argv[1:])
    files = inputs()
    lines = list(command_lines(files))

    def compare(arguments):
        return difference(outcome([native], arguments, files), outcome([wine, windows], arguments, files))

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        found = [(line, text) for line, text in zip(lines, pool.map(compare, lines)) if text]
    for line, text in found[:MOST_SHOWN]:
        print(f"kv_tr {' '.join(line)}\n  {text}")
    print(f"{len(lines)} command lines, {len(found)} with another outcome")
    return 1 if found or len(lines) < 250 else 0


if __name__ == "__main__":
    sys.exit(main())
