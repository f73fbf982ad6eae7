#!/usr/bin/env python3
"""Least-squares fits in exact arithmetic, to judge the engine's double-precision ones by.

    python3 tools/exact_fit.py tests/data/exact

writes the control points (<set>.dat) and, for each type, the fit to them (<set>_<type>.txt).
The same call always writes the same bytes. Nothing here follows the engine's way of computing:
every fit minimises the plain sum of squared residuals of both coordinates,

    sum of |image(p) - q|^2 over all pairs (p, q),

with coordinates reduced by their exact centroids and rational numbers of unlimited length.
The only inexact steps are square roots, taken to 80 digits.
"""

import sys
from decimal import Context, Decimal, localcontext
from fractions import Fraction
from pathlib import Path
from typing import NamedTuple

DIGITS_OF_ROOTS = 80
DIGITS_WRITTEN = 25
CHECK_POINTS = 10

Point = tuple[Fraction, Fraction]
Pair = tuple[Point, Point]  # source and destination, metres
Term = tuple[int, int]  # the powers of u and v


def terms_of_order(order: int) -> list[Term]:
    """All powers of u and v up to a degree: 1, u, v, u^2, uv, v^2, ..."""
    return [(degree - j, j) for degree in range(order + 1) for j in range(degree + 1)]


class Fit(NamedTuple):
    """first' = sum first[k] u^i v^j, (i, j) = terms[k], (u, v) = p - origin; second' likewise."""

    origin: Point
    terms: list[Term]
    first: list[Fraction]
    second: list[Fraction]

    def image(self, point: Point) -> Point:
        u, v = minus(point, self.origin)
        values = [u**i * v**j for i, j in self.terms]
        return dot(self.first, values), dot(self.second, values)


def dot(left, right) -> Fraction:
    return sum(a * b for a, b in zip(left, right, strict=True))


def minus(point: Point, origin: Point) -> Point:
    return point[0] - origin[0], point[1] - origin[1]


def reduced(points: list[Point]) -> tuple[Point, list[Point]]:
    """The centroid and the points relative to it."""
    centroid = tuple(sum(column) / len(points) for column in zip(*points, strict=True))
    return centroid, [minus(point, centroid) for point in points]


def root(value: Fraction) -> Fraction:
    with localcontext(Context(prec=DIGITS_OF_ROOTS)):
        return Fraction((Decimal(value.numerator) / value.denominator).sqrt())


def unit(x: Fraction, y: Fraction) -> Point:
    """The direction of (x, y) as cosine and sine."""
    length = root(x * x + y * y)
    return x / length, y / length


def solve(rows: list[list[Fraction]]) -> list[list[Fraction]]:
    """The solutions of a square system, row k yielding unknown k for each right-hand side.

    A row holds its coefficients followed by its right-hand sides.
    """
    for k in range(len(rows)):
        pivot = next(i for i in range(k, len(rows)) if rows[i][k] != 0)
        rows[k], rows[pivot] = rows[pivot], rows[k]
        rows[k] = [value / rows[k][k] for value in rows[k]]
        for i in range(len(rows)):
            if i != k:
                rows[i] = [a - rows[i][k] * b for a, b in zip(rows[i], rows[k], strict=True)]
    return [row[len(rows) :] for row in rows]


def fit_terms(terms: list[Term], pairs: list[Pair]) -> Fit:
    """Both coordinates as linear combinations of terms: the solution of T^T T c = T^T q."""
    origin, sources = reduced([source for source, _ in pairs])
    targets = list(zip(*(target for _, target in pairs), strict=True))
    columns = [[u**i * v**j for u, v in sources] for i, j in terms]
    solution = solve([[dot(a, b) for b in [*columns, *targets]] for a in columns])
    return Fit(origin, terms, *map(list, zip(*solution, strict=True)))


def fit_matrix(matrix_of, pairs: list[Pair]) -> Fit:
    """q' = q0 + M (p - p0), p0 and q0 being the centroids: the best shift, whatever M is.

    matrix_of yields the rows of M from sums of products of reduced coordinates:
    P1 = sum p1^2, P2 = sum p2^2, a = sum p1 q1, b = sum p1 q2, c = sum p2 q1, d = sum p2 q2.
    """
    (p0, sources), (q0, targets) = (reduced(points) for points in zip(*pairs, strict=True))
    p1, p2 = zip(*sources, strict=True)
    q1, q2 = zip(*targets, strict=True)
    products = [dot(p, q) for p in (p1, p2) for q in (q1, q2)]
    row1, row2 = matrix_of(dot(p1, p1), dot(p2, p2), *products)
    return Fit(p0, terms_of_order(1), [q0[0], *row1], [q0[1], *row2])


def helmert(P1, P2, a, b, c, d):
    """Turned and scaled: M = (m -n; n m), m = (a + d) / (P1 + P2), n = (b - c) / (P1 + P2)."""
    m, n = (a + d) / (P1 + P2), (b - c) / (P1 + P2)
    return (m, -n), (n, m)


def rotation(P1, P2, a, b, c, d):
    """Turned only: the direction of the Helmert solution with length 1."""
    cosine, sine = unit(a + d, b - c)
    return (cosine, -sine), (sine, cosine)


def scaled_axes(P1, P2, a, b, c, d):
    """Axes scaled by k1 and k2, then turned by t: M = R(t) diag(k1, k2).

    Turning the residuals back by t leaves their squares alone and separates the scales:
    k1 = (a cos t + b sin t) / P1, k2 = (d cos t - c sin t) / P2. What remains is to make
    k1^2 P1 + k2^2 P2 = A cos^2 t + 2 B cos t sin t + C sin^2 t as great as possible, that is, to
    give (cos t, sin t) half the angle of (A - C, 2 B). With t + 180 degrees both scales change
    their sign and M stays.
    """
    A = a * a / P1 + d * d / P2
    B = a * b / P1 - c * d / P2
    C = b * b / P1 + c * c / P2
    x, y = unit(A - C, 2 * B)
    cosine, sine = unit(1 + x, y) if x >= 0 else unit(y, 1 - x)
    k1, k2 = (a * cosine + b * sine) / P1, (d * cosine - c * sine) / P2
    return (k1 * cosine, -k2 * sine), (k1 * sine, k2 * cosine)


MATRICES = {"helmert": helmert, "helmert3": rotation, "affine5": scaled_axes}
TERMS = {"affine": terms_of_order(1), "bilinear": [(0, 0), (1, 0), (0, 1), (1, 1)]}
TERMS |= {f"poly{order}": terms_of_order(order) for order in range(1, 6)}
TYPES = [*MATRICES, *TERMS]


def fit(type_name: str, pairs: list[Pair]) -> Fit:
    if type_name in MATRICES:
        return fit_matrix(MATRICES[type_name], pairs)
    return fit_terms(TERMS[type_name], pairs)


class Area(NamedTuple):
    """A point set to make; lengths are whole millimetres, so that files carry them exactly."""

    name: str
    types: list[str]
    centre: tuple[int, int]
    size: tuple[int, int]
    cells: tuple[int, int]  # one control point in each
    target: tuple[int, int]  # the image of the centre
    half_turn: Fraction  # tangent of half the angle of rotation
    scales: tuple[Fraction, Fraction]  # along the two source axes
    bend: int  # greatest amount of a term of order 2 to 5 at the edge of the area
    noise: int  # greatest irregular part


COUNTRY = Area(
    "country", TYPES, (650_000_000, 200_000_000), (500_000_000, 300_000_000), (10, 6),
    (-4_217_350, 38_164_920), Fraction(-4321), (Fraction("1.000021"), Fraction("0.999987")),
    1500, 300,
)  # fmt: skip
TOWN = Area(
    "town", [name for name in TYPES if name not in ("poly3", "poly4", "poly5")],
    (653_000_000, 238_000_000), (5_000_000, 5_000_000), (4, 3),
    (12_345_678, -7_654_321), Fraction(3, 8), (Fraction("1.00012"), Fraction("0.99991")),
    150, 100,
)  # fmt: skip


class Numbers:
    """A linear congruential generator: the same integers on every machine and version."""

    def __init__(self) -> None:
        self.state = 1

    def between(self, low: int, high: int) -> int:
        self.state = (self.state * 6364136223846793005 + 1442695040888963407) % 2**64
        return low + (self.state >> 20) % (high - low + 1)


def metres(*millimetres: int) -> Point:
    return tuple(Fraction(value, 1000) for value in millimetres)


def make_points(area: Area) -> tuple[list[Pair], list[Point]]:
    """Control points, a random one in each cell of a grid, and check points among them."""
    between = Numbers().between
    bends = [
        (i, j, [between(-area.bend, area.bend) for _ in range(2)])
        for i, j in terms_of_order(5)
        if i + j >= 2
    ]
    cosine = (1 - area.half_turn**2) / (1 + area.half_turn**2)
    sine = 2 * area.half_turn / (1 + area.half_turn**2)
    (width, height), (columns, rows) = area.size, area.cells

    def control_point(column: int, row: int) -> Pair:
        p1 = (between(0, width) + column * width) // columns - width // 2
        p2 = (between(0, height) + row * height) // rows - height // 2
        x, y = p1 * area.scales[0], p2 * area.scales[1]
        straight = cosine * x - sine * y, sine * x + cosine * y
        u, v = Fraction(2 * p1, width), Fraction(2 * p2, height)
        target = [
            round(area.target[k] + straight[k] + sum(bend[k] * u**i * v**j for i, j, bend in bends))
            + between(-area.noise, area.noise)
            for k in (0, 1)
        ]
        return metres(area.centre[0] + p1, area.centre[1] + p2), metres(*target)

    pairs = [control_point(column, row) for row in range(rows) for column in range(columns)]
    checks = [
        metres(*(c + between(-s, s) * 9 // 20 for c, s in zip(area.centre, area.size, strict=True)))
        for _ in range(CHECK_POINTS)
    ]
    return pairs, checks


def decimals(values) -> list[str]:
    """Numbers with DIGITS_WRITTEN significant digits and without exponent."""
    with localcontext(Context(prec=DIGITS_WRITTEN)):
        return [f"{Decimal(value.numerator) / value.denominator:f}" for value in values]


def coordinates(values) -> list[str]:
    """Whole millimetres as metres with three decimals."""
    return [f"{Decimal(int(value * 1000)).scaleb(-3):f}" for value in values]


def fit_text(area: Area, type_name: str, pairs: list[Pair], checks: list[Point]) -> str:
    """The fit as check points with their images, residuals and accuracy figures.

    dRmsErr^2 = (sum dX^2 + sum dY^2) / (c - 1) for c pairs, dRmsErrX and dRmsErrY likewise.
    """
    image = fit(type_name, pairs).image
    residuals = [minus(image(source), target) for source, target in pairs]
    first, second = (sum(d * d for d in column) for column in zip(*residuals, strict=True))
    squares = [value / (len(pairs) - 1) for value in (first + second, first, second)]
    lines = [
        f"# Exact least-squares fit, type {type_name}, to the points of {area.name}.dat.",
        "# Made, like the points, by tools/exact_fit.py; lengths in metres.",
        "# point: first and second source coordinate, first and second of the image",
        "# residual: index of the pair from 0, dX and dY, computed minus measured",
        "# rms: dRmsErr dRmsErrX dRmsErrY, divisor number of pairs less one",
        *(" ".join(["point", *coordinates(p), *decimals(image(p))]) for p in checks),
        *(" ".join(["residual", str(k), *decimals(d)]) for k, d in enumerate(residuals)),
        " ".join(["rms", *decimals(map(root, squares))]),
    ]
    return "\n".join(lines) + "\n"


def main(folder: Path) -> None:
    folder.mkdir(parents=True, exist_ok=True)
    for area in (COUNTRY, TOWN):
        pairs, checks = make_points(area)
        rows = [[str(n), *coordinates([*p, *q])] for n, (p, q) in enumerate(pairs, 1)]
        points = "".join("".join(f"{field:>15}" for field in row) + "\n" for row in rows)
        (folder / f"{area.name}.dat").write_bytes(points.encode())
        for type_name in area.types:
            text = fit_text(area, type_name, pairs, checks)
            (folder / f"{area.name}_{type_name}.txt").write_bytes(text.encode())


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("usage: exact_fit.py FOLDER")
    main(Path(sys.argv[1]))
