#!/usr/bin/env python3
"""Fits hostile geometries and compares what the program says of its errors with exact arithmetic.

    python3 tools/sweep_truth.py PROGRAM [--seeds N] [--verbose]

PROGRAM is the command line kv_tr. Each geometry is fitted with each type that its points are enough
for; the parameters that the program prints are evaluated exactly, at the points and in the area
that they span, and compared with the solution of the same least-squares problem in integers of
unlimited length. A miss is an error of twice a limit that the program puts below the limit, a false
alarm one of half a limit that it puts above, for limits of 1e-6, 1e-4, 1e-3 and 1e-2 m; a silent
one is a fit whose points leave unknowns open without the program saying so. With --solution the
program is asked for its accurate solution. The exit code is 1 after any of them. The same call
always tries the same points.
"""

import argparse
import json
import math
import random
import subprocess
import sys
import tempfile
from collections import Counter
from fractions import Fraction
from pathlib import Path
from typing import NamedTuple

import exact_fit

LIMITS = (1e-6, 1e-4, 1e-3, 1e-2)
TERMS = {name: terms for name, terms in exact_fit.TERMS.items() if name != "poly1"}
NEEDED = {"helmert": 2, "helmert3": 2, "affine5": 3}  # points
NEEDED |= {name: len(terms) for name, terms in TERMS.items()}


class ControlPoint(NamedTuple):
    source: tuple[int, int]  # millimetres
    target: tuple[int, int]
    used: bool = True


def distorted(place: tuple[float, float], chance: random.Random) -> tuple[float, float]:
    """A plane transformation with some curvature, and a scatter of 2 cm."""
    y, x = (value - origin for value, origin in zip(place, (650000.0, 240000.0), strict=True))
    u, v = y / 1e5, x / 1e5
    first = 850000 + 0.9999 * y - 0.0002 * x + 20 * u * v - 12 * v * v + 3 * u**3
    second = 190000 + 0.0002 * y + 0.9999 * x - 9 * u * u + 7 * u * v * v
    return first + chance.gauss(0, 0.02), second + chance.gauss(0, 0.02)


def turned(places, angle: float):
    c, s = math.cos(angle), math.sin(angle)
    return [(c * y - s * x, s * y + c * x) for y, x in places]


def geometries(chance: random.Random):
    """Places about (0, 0) in metres, each list with a name and which of them are in use."""
    square = lambda count, half: [  # noqa: E731
        (chance.uniform(-half, half), chance.uniform(-half, half)) for _ in range(count)
    ]
    yield "spread", square(60, 1e5), 60
    yield "town", square(60, 2e3), 60
    yield "minimum", square(21, 1e5), 21
    yield "few", square(24, 3e4), 24
    yield "cluster and one far", [*square(40, 200), (9e4, 7e4)], 41
    yield "two clusters", [*square(30, 50), *((y + 4e4, x) for y, x in square(30, 50))], 60
    yield "corner in use", [*square(45, 4e3), *((y + 1.4e5, x) for y, x in square(400, 9e4))], 45
    grid = [(2000.0 * i, 2000.0 * j) for i in range(4) for j in range(4)]
    yield "grid of 4", grid, 16
    yield "staked grid", [(y + chance.gauss(0, 0.02), x) for y, x in grid], 16
    yield "five places", [place for place in square(5, 1e4) for _ in range(6)], 30
    for width in (1.0, 20.0, 500.0):
        strip = [
            (chance.uniform(-25e3, 25e3), chance.uniform(-width, width) / 2) for _ in range(60)
        ]
        yield f"strip of {width} m", turned(strip, 0.5), 60
    yield "line", [(500.0 * i, 300.0 * i) for i in range(40)], 40
    for scatter in (0.0, 0.002, 0.1):
        angles = [chance.uniform(0, 2 * math.pi) for _ in range(60)]
        ring = [
            (math.cos(a) * (5e4 * (1 + chance.gauss(0, scatter))), math.sin(a) * 5e4)
            for a in angles
        ]
        yield f"ring with {scatter}", ring, 60
    roads = [(chance.uniform(-2e4, 2e4), chance.gauss(0, 3)) for _ in range(30)]
    yield "crossing roads", [*roads, *((x, y) for y, x in roads)], 60


def control_points(places, used: int, chance: random.Random) -> list[ControlPoint]:
    points = []
    for i, (y, x) in enumerate(places):
        source = (650000.0 + y, 240000.0 + x)
        target = distorted(source, chance)
        to_mm = lambda values: tuple(round(value * 1000) for value in values)  # noqa: E731
        points.append(ControlPoint(to_mm(source), to_mm(target), i < used))
    return points


def millimetres(value: int) -> str:
    sign = "-" if value < 0 else ""
    return f"{sign}{abs(value) // 1000}.{abs(value) % 1000:03}"


def adjust(program: str, folder: Path, points: list[ControlPoint], keyword: str, solution: str):
    file = folder / "points.dat"
    file.write_text(
        "".join(
            f"P{i} {' '.join(map(millimetres, (*point.source, *point.target)))}\n"
            for i, point in enumerate(points)
        )
    )
    excluded = [x for i, p in enumerate(points) if not p.used for x in ("--exclude", f"P{i}")]
    command = [program, "adjust", str(file), "--type", keyword, "--json", "--solution", solution]
    done = subprocess.run([*command, *excluded], capture_output=True, text=True, check=False)
    return json.loads(done.stdout) if done.stdout else None


def solve_in_integers(rows: list[list[int]], unknowns: int) -> list[list[Fraction]] | None:
    """Bareiss elimination; nothing for a singular system. Each row ends in its right-hand sides."""
    before = 1
    for k in range(unknowns):
        pivot = next((i for i in range(k, unknowns) if rows[i][k] != 0), None)
        if pivot is None:
            return None
        rows[k], rows[pivot] = rows[pivot], rows[k]
        for i in range(k + 1, unknowns):
            rows[i] = [
                (rows[k][k] * a - rows[i][k] * b) // before
                for a, b in zip(rows[i], rows[k], strict=True)
            ]
        before = rows[k][k]
    sides = len(rows[0]) - unknowns
    solution = [[Fraction(0)] * sides for _ in range(unknowns)]
    for k in reversed(range(unknowns)):
        for side in range(sides):
            rest = Fraction(rows[k][unknowns + side])
            rest -= sum(rows[k][j] * solution[j][side] for j in range(k + 1, unknowns))
            solution[k][side] = rest / rows[k][k]
    return solution


def exact_solution(points: list[ControlPoint], keyword: str):
    """A function from a place in millimetres to its image in metres; nothing without a solution."""
    used = [point for point in points if point.used]
    if keyword in exact_fit.MATRICES:
        pairs = [
            tuple(tuple(Fraction(c, 1000) for c in place) for place in (p.source, p.target))
            for p in used
        ]
        if len({pair[0] for pair in pairs}) < 2:
            return None
        try:
            fit = exact_fit.fit(keyword, pairs)
        except (ZeroDivisionError, ArithmeticError):
            return None
        return lambda y, x: fit.image((Fraction(y, 1000), Fraction(x, 1000)))
    origin = [sum(column) // len(used) for column in zip(*(p.source for p in used), strict=True)]
    terms = TERMS[keyword]
    columns = [
        [(p.source[0] - origin[0]) ** i * (p.source[1] - origin[1]) ** j for p in used]
        for i, j in terms
    ]
    targets = list(zip(*(p.target for p in used), strict=True))
    rows = [
        [sum(a * b for a, b in zip(one, other, strict=True)) for other in [*columns, *targets]]
        for one in columns
    ]
    solution = solve_in_integers(rows, len(terms))
    if solution is None:
        return None

    def image(y, x):
        values = [(y - origin[0]) ** i * (x - origin[1]) ** j for i, j in terms]
        return tuple(
            sum(c[side] * value for c, value in zip(solution, values, strict=True)) / 1000
            for side in range(2)
        )

    return image


def image_of_record(parameters: dict, keyword: str):
    a = [Fraction(parameters[f"dA{k}"]) for k in range(22)]
    b = [Fraction(parameters[f"dB{k}"]) for k in range(22)]
    if keyword in exact_fit.MATRICES or keyword == "affine":
        return lambda y, x: tuple(
            c[0] + (c[1] * Fraction(y) + c[2] * Fraction(x)) / 1000 for c in (a, b)
        )

    def image(y, x):
        u, v = Fraction(y, 1000) - a[0], Fraction(x, 1000) - b[0]
        values = [u**i * v**j for i, j in TERMS[keyword]]
        return tuple(sum(c[k + 1] * value for k, value in enumerate(values)) for c in (a, b))

    return image


def places_between(points: list[ControlPoint]):
    """The points in use, and places between them and their middle."""
    used = [point.source for point in points if point.used]
    middle = [sum(column) // len(used) for column in zip(*used, strict=True)]
    for place in used:
        yield place
        yield tuple((3 * m + p) // 4 for m, p in zip(middle, place, strict=True))
        yield tuple((m + p) // 2 for m, p in zip(middle, place, strict=True))


def true_error(record, exact, points: list[ControlPoint]) -> float:
    greatest = 0.0
    for place in places_between(points):
        first, second = (float(r - e) for r, e in zip(record(*place), exact(*place), strict=True))
        greatest = max(greatest, math.hypot(first, second))
    return greatest


def judge(report: dict, points: list[ControlPoint], keyword: str) -> tuple[str, float, float]:
    """The verdict, the error that the program states, and the true one."""
    check = report["check"]
    stated = check["e_hull"] if check["e_hull"] is not None else math.inf
    exact = exact_solution(points, keyword)
    if exact is None:
        return ("told" if check["undetermined"] else "silent"), stated, math.inf
    if report["parameters"]["dA1"] is None:
        return "told" if check["level"] == "severe" else "silent", stated, math.inf
    error = true_error(image_of_record(report["parameters"], keyword), exact, points)
    if check["undetermined"]:
        return "told", stated, error
    for limit in LIMITS:
        if error >= 2 * limit and stated < limit:
            return "miss", stated, error
        # Places that nothing determines are another matter: their warning stands anyway.
        if stated >= 2 * limit and error < limit / 2 and (check["hull_factor"] or math.inf) < 100:
            return "false alarm", stated, error
    return ("right" if error < 1e-6 else "told"), stated, error


def sweep(program: str, seeds: int, solution: str, verbose: bool) -> Counter:
    verdicts: Counter = Counter()
    with tempfile.TemporaryDirectory() as name:
        for seed in range(seeds):
            chance = random.Random(seed)
            for geometry, places, used in geometries(chance):
                points = control_points(places, used, chance)
                for keyword, needed in NEEDED.items():
                    if used < needed:
                        continue
                    report = adjust(program, Path(name), points, keyword, solution)
                    verdict, stated, error = judge(report, points, keyword)
                    verdicts[verdict] += 1
                    bad = verdict in ("miss", "false alarm", "silent")
                    if verbose or bad:
                        print(f"{verdict:12} {geometry} {seed} {keyword}: {stated:.2e} {error:.2e}")
    return verdicts


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("program")
    parser.add_argument("--seeds", type=int, default=1)
    parser.add_argument("--solution", default="documented")
    parser.add_argument("--verbose", action="store_true")
    arguments = parser.parse_args()
    verdicts = sweep(arguments.program, arguments.seeds, arguments.solution, arguments.verbose)
    print(", ".join(f"{count} {verdict}" for verdict, count in sorted(verdicts.items())))
    return 1 if any(verdicts[bad] for bad in ("miss", "false alarm", "silent")) else 0


if __name__ == "__main__":
    sys.exit(main())
