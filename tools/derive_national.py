#!/usr/bin/env python3
"""Derives the coefficients of the 24 national transformations (types 10 to 33).

    python3 tools/derive_national.py tests/data/national          writes the files anew
    python3 tools/derive_national.py --check tests/data/national  compares; 1 on a difference
    python3 tools/derive_national.py --report                     prints what they are worth

The files are coefficients.csv, the 24 records, and checkpoints.csv, points whose images come
from the formulas and not from the records. Needs mpmath (Debian: python3-mpmath) and less than a
minute. Computing with 30 digits, it writes the same bytes on every machine.

Systems (first, second coordinate)
    STG            stereographic projection of Budapest             Y west, X south
    HER, HKR, HDR  northern, middle, southern oblique cylinder      Y west, X south
    BOV            own system of the city of Budapest               Y west, X south
    EOV            unified national projection                      Y east, X north
STG and the cylinders are drawn on the old Gaussian sphere of the Bessel ellipsoid, EOV on the new
Gaussian sphere of the ellipsoid IUGG 1967. A plane point is the complex number first + i second,
lengths are metres, angles radians.

Indices 0 to 3 of each record are published decimals, which are copied. The others are derived so
that the whole polynomial follows the exact conversion as well as the published part allows:
    10 to 19  two projections of one sphere: a closed formula;
    26 to 33  two datums: a chain of formulas, and what the published constants tell of the
              distortion of the old network (NetworkDistortion);
    20 to 25  the city: the same geometry and the curvature that the published constants of the
              six records imply (city_curvature).
docs/national-transformations.md says what accuracy results.
"""

import argparse
import sys
from collections.abc import Callable, Iterable, Iterator
from pathlib import Path
from typing import NamedTuple

from mpmath import (
    asin, atan, atan2, atanh, cos, exp, expj, floor, lu_solve, matrix, mp, mpc, mpf, nstr, pi,
    sin, sqrt, tan,
)  # fmt: skip

mp.dps = 30

Map = Callable[[mpc], mpc]
Pair = tuple[mpc, mpc]  # a point and its image

# The published constants: name, highest index in use, a0 b0, a1 a2 a3, b1 b2 b3.
PUBLISHED = """
10 TR_STG_HER 21 0.0 0.0 0.0 1.0002297296 -3.12292e-05 136720.801 3.12292e-05 1.0002297296
11 TR_STG_HKR 21 0.0 0.0 0.0 1.0000175248 -3.12225e-05 -37762.549 3.12225e-05 1.0000175248
12 TR_STG_HDR 21 0.0 0.0 0.0 1.0005536545 -3.12393e-05 -212243.221 3.12393e-05 1.0005536545
13 TR_HER_STG 19 0.0 0.0 -4.268 1.0001148515 3.12256e-05 -136715.567 -3.12256e-05 1.0001148498
14 TR_HKR_STG 19 0.0 0.0 1.179 1.0000087624 3.12223e-05 37762.439 -3.12223e-05 1.0000087624
15 TR_HDR_STG 19 0.0 0.0 6.626 1.0002767502 3.12306e-05 212223.64 -3.12306e-05 1.00027674
16 TR_HER_HKR 15 0.0 0.0 0.0 1.0003742151 0.0 -174494.422 0.0 1.0003742151
17 TR_HKR_HER 15 0.0 0.0 0.0 1.0003742151 0.0 174494.422 0.0 1.0003742151
18 TR_HDR_HKR 15 0.0 0.0 0.0 1.0003740824 0.0 174463.486 0.0 1.0003740824
19 TR_HKR_HDR 15 0.0 0.0 0.0 1.0003740824 0.0 -174463.486 0.0 1.0003740824
20 TR_BOV_EOV 21 0.0 0.0 650000.01 -0.9999431616 6.41643e-05 238104.731 -6.39637e-05 -0.9999440672
21 TR_EOV_BOV 21 654032.3814 239723.9586 -4032.7082 -1.0000596317 -6.1885015625e-05 -1619.0649 5.9046905841e-05 -1.0000516772
22 TR_BOV_HKR 21 -4032.756 -1619.045 -4032.8606 1.0000333849 -2.956978e-05 -39381.7022 3.267485e-05 1.0000412098
23 TR_HKR_BOV 21 -4032.833 -39381.724 -4032.7228 0.9999673258 3.032635e-05 -1619.0663 -3.267239e-05 0.9999587908
24 TR_STG_BOV 21 -4032.832 -1619.026 -4032.7488 0.999986316 2.902544e-06 -1619.0648 -5.186079e-06 0.9999776124
25 TR_BOV_STG 21 -4032.756 -1619.045 -4032.8392 1.0000136841 -2.902664e-06 -1619.0057 5.186256e-06 1.000022388
26 TR_STG_EOV_10e 21 -39068.0367 36349.4927 689066.6165 -0.999902005 3.331401194e-05 201760.405 -3.4890557e-05 -0.9998994398
27 TR_HER_EOV_10e 21 -39067.4165 173058.7313 689050.9264 -0.9995515403 -0.00014658404403 201778.5077 0.0001449672909 -0.999549033
28 TR_HKR_EOV_10e 21 -39069.2847 -1407.8961 689067.1695 -0.999919483 2.090902813e-05 201754.5197 -2.248000935e-05 -0.9999169092
29 TR_HDR_EOV_10e 21 -39100.3789 -175844.6258 689083.4086 -0.999539623 0.0001884206545 201730.5205 -0.0001900178416 -0.999537069
30 TR_EOV_STG_10e 21 689067.5321 201754.4133 -39068.9522 -1.0000980058 -3.332218515e-05 36355.49 3.489896156e-05 -1.00010057
31 TR_EOV_HER_10e 21 689067.5321 201754.4133 -39084.0331 -1.000448737 0.0001467904561 173082.8342 -0.0001451731851 -1.000451245
32 TR_EOV_HKR_10e 21 689067.5321 201754.4133 -39069.6473 -1.000080522 -2.091233449e-05 -1407.7896 2.248366639e-05 -1.000083097
33 TR_EOV_HDR_10e 21 689067.5321 201754.4132 -39084.4996 -1.00046066 -0.0001885295899 -175868.5327 0.0001901293941 -1.000463218
"""  # noqa: E501


class Affine(NamedTuple):
    """The map z -> value + per_first * first(d) + per_second * second(d), d = z - origin."""

    origin: mpc
    value: mpc
    per_first: mpc
    per_second: mpc

    def __call__(self, z: mpc) -> mpc:
        d = z - self.origin
        return self.value + self.per_first * d.real + self.per_second * d.imag

    def less(self, other: "Affine") -> "Affine":
        """The difference of two maps with the same origin."""
        return Affine(self.origin, *(a - b for a, b in zip(self[1:], other[1:], strict=True)))

    def slopes_along(self, other: "Affine") -> list[mpc]:
        """The directional derivatives along the slopes of another map."""
        return [self.per_first * d.real + self.per_second * d.imag for d in other[2:]]

    def inverse(self) -> "Affine":
        p, q = self.per_first, self.per_second
        determinant = p.real * q.imag - q.real * p.imag
        slopes = mpc(q.imag, -p.imag) / determinant, mpc(-q.real, p.real) / determinant
        return Affine(self.value, self.origin, *slopes)


def tangent(f: Map, z: mpc) -> Affine:
    """The affine map that touches f at z, by central differences over a metre."""
    h = mpf(1)
    per_first = (f(z + h) - f(z - h)) / (2 * h)
    per_second = (f(z + mpc(0, h)) - f(z - mpc(0, h))) / (2 * h)
    return Affine(z, f(z), per_first, per_second)


class Record(NamedTuple):
    """The published part of a record."""

    code: int
    constant: str
    source: str
    target: str
    last: int  # highest index in use
    text: dict[int, tuple[str, str]]  # the decimals of A(k) and B(k), k = 0 to 3
    affine: Affine

    @property
    def origin(self) -> mpc:
        return self.affine.origin

    @property
    def value(self) -> mpc:
        return self.affine.value

    @staticmethod
    def parse(line: str) -> "Record":
        code, constant, last, *decimals = line.split()
        _, source, target = constant.split("_")[:3]
        a0, b0, a1, a2, a3, b1, b2, b3 = decimals
        text = {0: (a0, b0), 1: (a1, b1), 2: (a2, b2), 3: (a3, b3)}
        affine = Affine(*(mpc(mpf(a), mpf(b)) for a, b in text.values()))
        return Record(int(code), constant, source, target, int(last), text, affine)


RECORDS = {record.code: record for record in map(Record.parse, PUBLISHED.strip().splitlines())}

TO_EOV = {"STG": 26, "HER": 27, "HKR": 28, "HDR": 29}
FROM_EOV = {"STG": 30, "HER": 31, "HKR": 32, "HDR": 33}
OLD = list(TO_EOV)


def degrees(d, minutes=0, seconds=0) -> mpf:
    return (mpf(d) + mpf(minutes) / 60 + mpf(seconds) / 3600) * pi / 180


ARC_SECOND = pi / 648000

OLD_RADIUS = mpf("6378512.966")
GELLERTHEGY = degrees(47, 26, "21.1372")  # latitude on the old sphere
CYLINDER_ORIGIN = {"HER": degrees(48, 40, 2), "HKR": degrees(47, 6), "HDR": degrees(45, 31, 59)}
# The network of the cylinders (1909) was oriented anew: their meridian of Gellérthegy makes this
# angle with the X axis of STG.
ROTATION = mpf("6.44") * ARC_SECOND

# A point of the sphere is s = tan(distance / 2) * direction, seen from Gellérthegy, with the real
# axis west and the imaginary axis south along the meridian of the cylinders. A conversion between
# two projections of the sphere is then a composition of holomorphic functions.


def plane_to_sphere(system: str, z: mpc, radius: mpf = OLD_RADIUS) -> mpc:
    if system == "STG":
        return expj(ROTATION) * z / (2 * radius)
    t = tan((CYLINDER_ORIGIN[system] - GELLERTHEGY) / 2)
    h = tan(z / (2 * radius))  # as s, but seen from the origin of the cylinder
    return (h - 1j * t) / (1 - 1j * t * h)


def sphere_to_plane(system: str, s: mpc, radius: mpf = OLD_RADIUS) -> mpc:
    if system == "STG":
        return expj(-ROTATION) * 2 * radius * s
    t = tan((CYLINDER_ORIGIN[system] - GELLERTHEGY) / 2)
    return 2 * radius * atan((s + 1j * t) / (1 + 1j * t * s))


def convert(source: str, target: str, z: mpc, radius: mpf = OLD_RADIUS) -> mpc:
    """The exact conversion between two of STG, HER, HKR, HDR."""
    return sphere_to_plane(target, plane_to_sphere(source, z, radius), radius)


def radius_of_published_distances() -> mpf:
    """The radius of the old sphere that the published constants were computed with.

    a1 and b1 of 10, 11, 12, 16 and 18 are distances between the origins of two systems, that is,
    proportional to the radius. They are all shorter by the same 1.42e-8 than OLD_RADIUS gives (3 mm
    at most). With this radius the derived terms of 10 to 19 belong to the published ones.
    """
    above = below = mpf(0)
    for record in (RECORDS[code] for code in (10, 11, 12, 16, 18)):
        exact = convert(record.source, record.target, mpc(0)).imag
        above += exact * record.value.imag
        below += exact * exact
    return OLD_RADIUS * above / below


TABLE_RADIUS = radius_of_published_distances()


def sphere_to_geographic(s: mpc) -> tuple[mpf, mpf]:
    """Latitude and longitude (east of Gellérthegy) on the old sphere."""
    q = abs(s) ** 2
    west, south, up = 2 * s.real / (1 + q), 2 * s.imag / (1 + q), (1 - q) / (1 + q)
    return (
        asin(up * sin(GELLERTHEGY) - south * cos(GELLERTHEGY)),
        atan2(-west, up * cos(GELLERTHEGY) + south * sin(GELLERTHEGY)),
    )


def geographic_to_sphere(latitude: mpf, longitude: mpf) -> mpc:
    toward = cos(latitude) * cos(longitude)
    up = toward * cos(GELLERTHEGY) + sin(latitude) * sin(GELLERTHEGY)
    south = toward * sin(GELLERTHEGY) - sin(latitude) * cos(GELLERTHEGY)
    return mpc(-cos(latitude) * sin(longitude), south) / (1 + up)


def iterate(step: Callable[[mpf], mpf], value: mpf) -> mpf:
    """The fixed point of a contraction, to all but a few of the digits."""
    for _ in range(40):
        previous, value = value, step(value)
        if abs(value - previous) < mpf(10) ** (5 - mp.dps):
            break
    return value


class Ellipsoid:
    """An ellipsoid and its Gaussian sphere, onto which it is mapped conformally (n, k)."""

    def __init__(self, a: str, inverse_flattening: str, n: str, k: str, meridian: mpf) -> None:
        f = 1 / mpf(inverse_flattening)
        self.a, self.n, self.k, self.meridian = mpf(a), mpf(n), mpf(k), meridian
        self.e2 = f * (2 - f)
        self.e = sqrt(self.e2)

    def _factor(self, latitude: mpf) -> mpf:
        u = self.e * sin(latitude)
        return ((1 - u) / (1 + u)) ** (self.n * self.e / 2)

    def to_sphere(self, latitude: mpf, longitude: mpf) -> tuple[mpf, mpf]:
        t = self.k * tan(pi / 4 + latitude / 2) ** self.n * self._factor(latitude)
        return 2 * atan(t) - pi / 2, self.n * (longitude - self.meridian)

    def from_sphere(self, latitude: mpf, longitude: mpf) -> tuple[mpf, mpf]:
        t = tan(pi / 4 + latitude / 2) / self.k
        on_ellipsoid = iterate(
            lambda phi: 2 * atan((t / self._factor(phi)) ** (1 / self.n)) - pi / 2, latitude
        )
        return on_ellipsoid, self.meridian + longitude / self.n

    def _normal(self, latitude: mpf) -> mpf:
        return self.a / sqrt(1 - self.e2 * sin(latitude) ** 2)

    def to_space(self, latitude: mpf, longitude: mpf) -> matrix:
        """Geocentric coordinates of a point on the ellipsoid."""
        normal = self._normal(latitude)
        x, y = normal * cos(latitude) * cos(longitude), normal * cos(latitude) * sin(longitude)
        return matrix([x, y, normal * (1 - self.e2) * sin(latitude)])

    def from_space(self, point: matrix) -> tuple[mpf, mpf]:
        x, y, z = point
        p = sqrt(x * x + y * y)
        latitude = iterate(
            lambda phi: atan2(z + self.e2 * self._normal(phi) * sin(phi), p),
            atan2(z, p * (1 - self.e2)),
        )
        return latitude, atan2(y, x)


# The meridians are the longitudes of Gellérthegy on HD1909 and on HD72.
BESSEL = Ellipsoid(
    "6377397.155", "299.1528128", "1.000751489594", "1.003016135133", degrees(19, 2, "56.9441")
)
IUGG67 = Ellipsoid(
    "6378160", "298.247167427", "1.000719704936", "1.003110007693", degrees(19, 2, "54.8584")
)


class Shift:
    """A seven-parameter shift to WGS 84: metres, arc seconds (coordinate frame), ppm."""

    def __init__(self, *parameters: str) -> None:
        tx, ty, tz, rx, ry, rz, ppm = map(mpf, parameters)
        rx, ry, rz = rx * ARC_SECOND, ry * ARC_SECOND, rz * ARC_SECOND
        self.turn = (1 + ppm / 1000000) * matrix([[1, rz, -ry], [-rz, 1, rx], [ry, -rx, 1]])
        self.turn_back = self.turn**-1
        self.move = matrix([tx, ty, tz])

    def forth(self, point: matrix) -> matrix:
        return self.turn * point + self.move

    def back(self, point: matrix) -> matrix:
        return self.turn_back * (point - self.move)


HD1909 = Shift("595.48", "121.69", "515.35", "-4.115", "2.9383", "-0.853", "-3.408")  # EPSG 3817
HD72 = Shift("52.684", "-71.194", "-13.975", "0.312", "0.1063", "0.3729", "1.0191")  # EPSG 1449

EOV_RADIUS = mpf("6379743.001")  # the new sphere
EOV_ORIGIN = degrees(47, 6)  # latitude on it
EOV_SCALE = mpf("0.99993")


def geographic_to_eov(latitude: mpf, longitude: mpf) -> mpc:
    """The EOV coordinates of a point of HD72."""
    phi, lam = IUGG67.to_sphere(latitude, longitude)
    sine = sin(phi) * cos(EOV_ORIGIN) - cos(phi) * sin(EOV_ORIGIN) * cos(lam)
    along = asin(cos(phi) * sin(lam) / sqrt(1 - sine**2))
    reduced = EOV_SCALE * EOV_RADIUS
    return mpc(650000 + reduced * along, 200000 + reduced * atanh(sine))


def sphere_to_eov(s: mpc) -> mpc:
    """From the old sphere to EOV: Bessel ellipsoid, WGS 84, ellipsoid IUGG 1967, new sphere."""
    in_space = BESSEL.to_space(*BESSEL.from_sphere(*sphere_to_geographic(s)))
    return geographic_to_eov(*IUGG67.from_space(HD72.back(HD1909.forth(in_space))))


def chain(system: str) -> Map:
    """The conversion from one of the old systems to EOV by published formulas alone."""
    return lambda z: sphere_to_eov(plane_to_sphere(system, z))


# The outline of Hungary, good to some kilometres: latitude and longitude in degrees.
OUTLINE = [
    (46.87, 16.11), (46.98, 16.29), (47.14, 16.45), (47.41, 16.44), (47.45, 16.65),
    (47.62, 16.66), (47.75, 16.42), (47.71, 16.75), (47.71, 17.05), (48.01, 17.16),
    (47.98, 17.30), (47.75, 17.90), (47.76, 18.15), (47.75, 18.45), (47.82, 18.78),
    (47.87, 18.85), (48.05, 18.80), (48.08, 19.05), (48.20, 19.50), (48.13, 19.75),
    (48.24, 20.05), (48.27, 20.35), (48.55, 20.55), (48.58, 20.85), (48.55, 21.20),
    (48.50, 21.60), (48.35, 21.75), (48.38, 22.10), (48.24, 22.33), (48.10, 22.60),
    (48.00, 22.90), (47.90, 22.75), (47.77, 22.45), (47.55, 22.00), (47.38, 22.00),
    (47.20, 21.80), (46.95, 21.62), (46.65, 21.42), (46.45, 21.30), (46.24, 21.05),
    (46.25, 20.70), (46.13, 20.50), (46.16, 20.25), (46.17, 19.70), (46.10, 19.45),
    (46.00, 19.10), (45.91, 18.85), (45.74, 18.45), (45.80, 17.90), (45.84, 17.65),
    (45.95, 17.30), (46.12, 17.10), (46.30, 16.88), (46.47, 16.70), (46.50, 16.52),
    (46.65, 16.40),
]  # fmt: skip
EDGES = list(zip(OUTLINE, OUTLINE[1:] + OUTLINE[:1], strict=True))


def in_hungary(latitude: float, longitude: float) -> bool:
    inside = False
    for (y1, x1), (y2, x2) in EDGES:
        crosses = (y1 > latitude) != (y2 > latitude)
        if crosses and longitude < (x2 - x1) * (latitude - y1) / (y2 - y1) + x1:
            inside = not inside
    return inside


def place(latitude: float, longitude: float) -> mpc:
    """A point of the old sphere by degrees on the Bessel ellipsoid."""
    return geographic_to_sphere(*BESSEL.to_sphere(degrees(latitude), degrees(longitude)))


def country_grid(step_latitude: float, step_longitude: float) -> list[mpc]:
    nodes = [
        (45.7 + i * step_latitude, 16.05 + j * step_longitude)
        for i in range(int(3 / step_latitude) + 1)
        for j in range(int(7 / step_longitude) + 1)
    ]
    return [place(*node) for node in nodes if in_hungary(*node)]


def border(enlarged: float = 1.0) -> list[mpc]:
    """Corners and middles of the outline, which may be enlarged about the middle of Hungary."""
    nodes = [node for a, b in EDGES for node in (a, ((a[0] + b[0]) / 2, (a[1] + b[1]) / 2))]
    if enlarged != 1.0:
        nodes = [(47.17 + enlarged * (y - 47.17), 19.5 + enlarged * (x - 19.5)) for y, x in nodes]
    return [place(*node) for node in nodes]


def disc(radius: int, step: int) -> list[mpc]:
    n = radius // step
    nodes = [mpc(i * step, j * step) for i in range(-n, n + 1) for j in range(-n, n + 1)]
    return [node for node in nodes if abs(node) <= radius]


POWERS = [(degree - j, j) for degree in range(6) for j in range(degree + 1)]  # of index 1, 2, ...
UNIT = mpf(100000)  # lengths in this unit keep normal equations well conditioned

Coefficients = dict[int, mpc]  # A(k) + i B(k) by index


def monomials(d: mpc) -> list[mpf]:
    """The terms of index 1 to 21 at a reduced point, in powers of UNIT."""
    d /= UNIT
    u, v = [mpf(1)], [mpf(1)]
    for _ in range(5):
        u.append(u[-1] * d.real)
        v.append(v[-1] * d.imag)
    return [u[p] * v[q] for p, q in POWERS]


def least_squares(rows: list[list[mpf]], values: list) -> matrix:
    """The x that makes rows · x fit real or complex values best."""
    n = len(rows[0])
    normal, right = matrix(n, n), matrix(n, 1)
    for row, value in zip(rows, values, strict=True):
        for i in range(n):
            right[i] += row[i] * value
            for j in range(n):
                normal[i, j] += row[i] * row[j]
    return lu_solve(normal, right)


def fit(record: Record, pairs: list[Pair], symmetric: bool = False) -> Coefficients:
    """The coefficients from 4 up by least squares, the published ones being kept.

    symmetric: both systems have the line Y = 0 in common, so that Y2 is odd and X2 even in y.
    """
    indices = range(4, record.last + 1)
    terms = [monomials(z - record.origin) for z, _ in pairs]
    rest = [w - record.affine(z) for z, w in pairs]

    def solve(use: list[int], values: list[mpf]) -> dict[int, mpf]:
        x = least_squares([[row[i - 1] for i in use] for row in terms], values)
        return {i: x[k] / UNIT ** sum(POWERS[i - 1]) for k, i in enumerate(use)}

    odd = [i for i in indices if not symmetric or POWERS[i - 1][0] % 2 == 1]
    even = [i for i in indices if not symmetric or POWERS[i - 1][0] % 2 == 0]
    a = solve(odd, [r.real for r in rest])
    b = solve(even, [r.imag for r in rest])
    return {i: mpc(a.get(i, 0), b.get(i, 0)) for i in indices}


def series(f: Map, centre: mpc, order: int, radius: int = 50000) -> list[mpc]:
    """The Taylor coefficients of a holomorphic f, by Cauchy's integral over a circle."""
    count = 64
    values = [f(centre + radius * expj(2 * pi * k / count)) for k in range(count)]
    return [
        sum(v * expj(-2 * pi * k * n / count) for k, v in enumerate(values))
        / count
        / mpf(radius) ** n
        for n in range(order + 1)
    ]


def taylor(record: Record, f: Map) -> Coefficients:
    """The coefficients from 4 up from the Taylor series c0 + c1 (y + ix) + c2 (y + ix)² + ..."""
    c = series(f, record.origin, 5)
    result = {}
    for i in range(4, record.last + 1):
        p, q = POWERS[i - 1]
        result[i] = c[p + q] * mp.binomial(p + q, q) * mpc(0, 1) ** q
    return result


def decimal(value: mpf) -> str:
    """Twelve significant digits, with an exponent; "0.0" for zero."""
    if value == 0:
        return "0.0"
    text = nstr(value, 12, min_fixed=0, max_fixed=0, strip_zeros=True)
    return text if "e" in text else text + "e+00"


class Polynomial:
    """A complete record, as the decimals that are written."""

    def __init__(self, record: Record, derived: Coefficients) -> None:
        self.text = dict(record.text)
        for i in range(4, 22):
            c = derived.get(i, mpc(0))
            self.text[i] = decimal(c.real), decimal(c.imag)
        self._origin, *self._c = (complex(float(a), float(b)) for a, b in self.text.values())

    def __call__(self, z: mpc) -> mpc:
        """Evaluates in double precision."""
        d = complex(z) - self._origin
        terms = [d.real**p * d.imag**q for p, q in POWERS]
        return mpc(sum(c * t for c, t in zip(self._c, terms, strict=True)))


class Joined:
    """f plus the affine map that gives it value and slopes of the published part of a record."""

    def __init__(self, record: Record, f: Map) -> None:
        self.f = f
        self.correction = record.affine.less(tangent(f, record.origin))

    def __call__(self, z: mpc) -> mpc:
        return self.f(z) + self.correction(z)


# Assumptions of the collocation below: standard deviation of a coordinate and correlation length
# of the distortion of the old network, uncertainty of the chain's shift and slopes, and how
# exactly the four facts are known. The published constants are unsurprising under them: chi
# squared is 2 for 4 observations.
DISTORTION_SIGMA = mpf("0.4")
DISTORTION_LENGTH = mpf(100000)
CHAIN_SHIFT_SIGMA = mpf("0.3")
CHAIN_SLOPE_SIGMA = mpf("1.5e-6")
FACT_SIGMAS = [mpf("1e-3"), mpf("1e-8"), mpf("1e-8"), mpf("1e-2")]


def control_point_moments() -> tuple[mpc, mpc]:
    """The means E2 of d² and E3 of d³ over the control points of 26 to 33, in STG.

    d is the complex distance from the centroid. The reduction origins of 26 to 29 are the
    centroids of the same points in the four old systems, and an exact conversion
    c0 + c1 d + c2 d² + c3 d³ moves the centroid by c2 E2 + c3 E3 off its own image. The three
    cylinders give six equations for the four unknowns.
    """
    centroid = RECORDS[26].origin
    unit2, unit3 = UNIT**2, UNIT**3
    rows, values = [], []
    for system in OLD[1:]:
        c = series(lambda z, system=system: convert("STG", system, z), centroid, 3)
        off, c2, c3 = RECORDS[TO_EOV[system]].origin - c[0], c[2] * unit2, c[3] * unit3
        rows += [[c2.real, -c2.imag, c3.real, -c3.imag], [c2.imag, c2.real, c3.imag, c3.real]]
        values += [off.real, off.imag]
    x = least_squares(rows, values)
    return mpc(x[0], x[1]) * unit2, mpc(x[2], x[3]) * unit3


def weights_for_moments(distances: list[mpc], e2: mpc, e3: mpc) -> list[mpf]:
    """The most equal weights, of sum 1, that give points the centroid 0 and the moments e2, e3."""
    n = len(distances)
    d = [p / UNIT for p in distances]
    e2, e3 = e2 / UNIT**2, e3 / UNIT**3
    features = [
        [mpf(1), p.real, p.imag, (p * p).real, (p * p).imag, (p**3).real, (p**3).imag] for p in d
    ]
    wanted = [mpf(1), 0, 0, e2.real, e2.imag, e3.real, e3.imag]
    gram = matrix(7, 7)
    for f in features:
        for i in range(7):
            for j in range(7):
                gram[i, j] += f[i] * f[j] / n
    equal = [sum(column) / n for column in zip(*features, strict=True)]
    x = lu_solve(gram, matrix([w - e for w, e in zip(wanted, equal, strict=True)]))
    return [(1 + sum(x[i] * f[i] for i in range(7))) / n for f in features]


class NetworkDistortion:
    """What the published constants of 26 to 30 add to the datum chain, in the EOV plane.

    Seven parameters cannot hold the distortions of the old network. Four facts tell of them:
    value and two slopes at the centroid of the control points, where published constants and chain
    differ, and an average. A polynomial fitted by least squares maps its control points without
    error on average; what of
        centroid in EOV - published value
    the curvature of the chain does not explain is therefore the average, over the control points,
    of the terms of the distortion above the first order.

    The result is the polynomial of order 5 that is most likely under these facts if the distortion
    is a random field (least-squares collocation): some decimetres.
    """

    def __init__(self, points: list[mpc]) -> None:
        self.origin = RECORDS[30].origin
        self.facts, moments = self._observe()
        distances = [w - self.origin for w in points]
        rows = matrix([monomials(d) for d in distances])

        signal = matrix(len(points), len(points))
        for i, p in enumerate(points):
            for j, q in enumerate(points):
                d = abs(p - q) / DISTORTION_LENGTH
                signal[i, j] = DISTORTION_SIGMA**2 * exp(-d * d / 2)
        project = (rows.T * rows) ** -1 * rows.T  # the best polynomial for a field at the points
        covariance = project * signal * project.T
        covariance[0, 0] += CHAIN_SHIFT_SIGMA**2
        for k in (1, 2):
            covariance[k, k] += (CHAIN_SLOPE_SIGMA * UNIT) ** 2

        design = matrix(4, 21)  # the four facts as functions of the 21 coefficients
        design[0, 0], design[1, 1], design[2, 2] = 1, 1 / UNIT, 1 / UNIT
        weights = matrix([weights_for_moments(distances, *moments)])
        design[3, :] = weights * rows

        s = design * covariance * design.T
        for k, sigma in enumerate(FACT_SIGMAS):
            s[k, k] += sigma**2
        gain = covariance * design.T * s**-1
        first, second = matrix([f.real for f in self.facts]), matrix([f.imag for f in self.facts])
        self.coefficients = [mpc(a, b) for a, b in zip(gain * first, gain * second, strict=True)]
        self.chi_squared = [(y.T * s**-1 * y)[0] for y in (first, second)]
        self._remaining = covariance - gain * design * covariance

    def _observe(self) -> tuple[list[mpc], tuple[mpc, mpc]]:
        """The four facts, means over the four systems, and the moments of the points in EOV."""
        e2, e3 = control_point_moments()
        observed = []
        for system in OLD:
            record, f = RECORDS[TO_EOV[system]], chain(system)
            to_system = [0, 1, 0]
            if system != "STG":
                to_system = series(
                    lambda z, system=system: convert("STG", system, z), RECORDS[26].origin, 2
                )
            _, c1, c2 = to_system
            e2_here, e3_here = c1**2 * e2 + 2 * c1 * c2 * e3, c1**3 * e3
            _, f1, f2, f3 = series(f, record.origin, 3)
            average = self.origin - record.value - f2 * e2_here - f3 * e3_here
            if system == "STG":
                moments = f1**2 * e2 + 2 * f1 * f2 * e3, f1**3 * e3

            own = tangent(f, record.origin)
            more = record.affine.less(own)
            observed.append((more.value, *more.slopes_along(own.inverse()), average))
        value, per_first, per_second, average = (sum(v) / 4 for v in zip(*observed, strict=True))
        return [value, per_first, per_second, value + average], moments

    def __call__(self, w: mpc) -> mpc:
        terms = monomials(w - self.origin)
        return sum(c * t for c, t in zip(self.coefficients, terms, strict=True))

    def expected_error(self, w: mpc) -> mpf:
        """How far off the result is to be expected at a point (both coordinates, rms)."""
        terms = matrix(monomials(w - self.origin))
        return sqrt(2 * (terms.T * self._remaining * terms)[0])


BUDAPEST_AREA = mpf(525) * 1000000  # square metres
Quadratic = list[mpc]  # coefficients of y², yx, x²


def quadratic(q: Quadratic, d: mpc) -> mpc:
    return q[0] * d.real**2 + q[1] * d.real * d.imag + q[2] * d.imag**2


def city_curvature(geometry: Joined, area: mpf = BUDAPEST_AREA) -> tuple[Quadratic, Quadratic]:
    """The curvatures that the published constants of 20 to 25 imply.

    The first bends BOV -> EOV, about the origin of BOV; the second BOV -> STG, about the centroid.
    The inverse of record 21 gives value and slopes of BOV -> EOV at the centroid of its control
    points, record 20 gives them at the origin of BOV; and the centroids of the points in BOV, EOV,
    STG and HKR (reduction origins of 22, 21, 24 and 23) give averages over the points, as in
    NetworkDistortion. The averages need the second moments of the points. E2, that is their
    difference and their mixed part, follows from the exact conversion STG -> HKR; their sum is that
    of an ellipse with the area of the city.
    """
    bov, eov = RECORDS[22].origin, RECORDS[21].origin
    stg, hkr = RECORDS[24].origin, RECORDS[23].origin
    c = series(lambda z: convert("STG", "HKR", z, TABLE_RADIUS), stg, 2, 10000)
    e2 = (hkr - c[0]) / c[2]
    # With the semi-axes p and q: |E2| = (p² - q²) / 4, sum of the moments = (p² + q²) / 4.
    total = sqrt((2 * abs(e2)) ** 2 + (area / pi) ** 2) / 2
    yy, yx, xx = (total + e2.real) / 2, e2.imag / 2, (total - e2.real) / 2

    # BOV -> EOV is the geometry plus a quadratic that vanishes, slopes too, at the origin.
    back = RECORDS[21].affine.inverse()
    own = tangent(geometry, bov)
    bend = series(geometry.f, bov, 2, 10000)[2]
    y, x = bov.real, bov.imag
    rows = [[y * y, y * x, x * x], [2 * y, x, 0], [0, y, 2 * x], [yy, yx, xx]]
    wanted = [
        back(bov) - own.value,
        back.per_first - own.per_first,
        back.per_second - own.per_second,
        eov - back(bov) - bend * e2,
    ]
    sigmas = [mpf("0.001"), mpf("1e-7"), mpf("1e-7"), mpf("0.005")]
    rows = [[v / sigma for v in row] for row, sigma in zip(rows, sigmas, strict=True)]
    to_eov = list(least_squares(rows, [w / s for w, s in zip(wanted, sigmas, strict=True)]))

    # BOV -> STG has no curvature of geometry: the opposite of the above (the axes of EOV point the
    # other way), plus the most likely rest that makes the average right. The second derivatives of
    # an isotropic random field are correlated as (3, 1, 1).
    rest = stg - RECORDS[25].value + (to_eov[0] * yy + to_eov[1] * yx + to_eov[2] * xx)
    shape = (3 * yy + xx) / 4, yx, (yy + 3 * xx) / 4
    average = shape[0] * yy + shape[1] * yx + shape[2] * xx
    to_stg = [rest * s / average - q for s, q in zip(shape, to_eov, strict=True)]
    return to_eov, to_stg


class Derivation:
    """All 24 records, with what the report needs to judge them."""

    def __init__(self) -> None:
        self.country = country_grid(0.15, 0.21) + border()
        self.records: dict[int, Polynomial] = {}
        self.targets: dict[int, list[Pair]] = {}  # what 20 to 33 were fitted to
        for code in range(10, 20):
            self._derive_zone(code)
        self._derive_national()
        self._derive_city()

    def _derive_zone(self, code: int) -> None:
        """Taylor series where all orders are complete, else least squares over the country.

        Where terms are absent the others have to make up for them, which Taylor terms do not.
        """
        record = RECORDS[code]
        source, target = record.source, record.target
        if record.last == 21:
            derived = taylor(record, lambda z: convert(source, target, z, TABLE_RADIUS))
        else:
            points = [sphere_to_plane(source, s, TABLE_RADIUS) for s in self.country]
            pairs = [(z, convert(source, target, z, TABLE_RADIUS)) for z in points]
            derived = fit(record, pairs, symmetric="STG" not in (source, target))
        self.records[code] = Polynomial(record, derived)

    def _derive_national(self) -> None:
        """Least squares on chain and distortion; the way back on the same pairs."""
        self.distortion = NetworkDistortion([sphere_to_eov(s) for s in country_grid(0.3, 0.42)])
        self.joined = {}
        for system in OLD:
            there, back = TO_EOV[system], FROM_EOV[system]

            def distorted(z: mpc, undistorted: Map = chain(system)) -> mpc:
                w = undistorted(z)
                return w + self.distortion(w)

            joined = self.joined[system] = Joined(RECORDS[there], distorted)
            points = [sphere_to_plane(system, s) for s in self.country]
            pairs = [(z, joined(z)) for z in points]
            self._fit(there, pairs)
            self._fit(back, [(w, z) for z, w in pairs])

    def _fit(self, code: int, pairs: list[Pair]) -> None:
        self.targets[code] = pairs
        self.records[code] = Polynomial(RECORDS[code], fit(RECORDS[code], pairs))

    def _derive_city(self) -> None:
        """All six records on points around the origin of BOV.

        The curvature is all that 25 has: above order 2 its coefficients are what rounding leaves,
        1e-41 and less. They are written as they come out.
        """
        self.city = disc(45000, 4500)
        geometry = Joined(RECORDS[20], chain("STG"))
        bend_eov, bend_stg = self.curvatures = city_curvature(geometry)
        to_stg = RECORDS[25].affine
        eov = [geometry(p) + quadratic(bend_eov, p) for p in self.city]
        stg = [to_stg(p) + quadratic(bend_stg, p - to_stg.origin) for p in self.city]
        hkr = [convert("STG", "HKR", z, TABLE_RADIUS) for z in stg]
        points = {"BOV": self.city, "EOV": eov, "STG": stg, "HKR": hkr}
        for code in range(20, 26):
            source, target = points[RECORDS[code].source], points[RECORDS[code].target]
            self._fit(code, list(zip(source, target, strict=True)))

        self.other_curvatures = {
            area: city_curvature(geometry, mpf(area) * 1000000) for area in (400, 700)
        }


# Rough positions of towns on the Bessel ellipsoid, degrees.
PLACES = {
    "Baja": (46.181, 18.954), "Barcs": (45.960, 17.460), "Budapest": (47.498, 19.040),
    "Békéscsaba": (46.679, 21.091), "Debrecen": (47.530, 21.639), "Esztergom": (47.792, 18.740),
    "Győr": (47.684, 17.635), "Miskolc": (48.103, 20.778), "Nagykanizsa": (46.453, 16.991),
    "Pécs": (46.076, 18.228), "Salgótarján": (48.098, 19.803), "Sopron": (47.685, 16.583),
    "Szeged": (46.253, 20.148), "Szolnok": (47.175, 20.176), "Sátoraljaújhely": (48.396, 21.656),
    "Zalaegerszeg": (46.845, 16.847), "Záhony": (48.409, 22.176),
}  # fmt: skip

# Where each system is checked.
CHECKED = {
    "HER": ("Sopron", "Esztergom", "Salgótarján", "Miskolc", "Sátoraljaújhely", "Záhony"),
    "HKR": ("Zalaegerszeg", "Győr", "Budapest", "Szolnok", "Békéscsaba", "Debrecen"),
    "HDR": ("Barcs", "Pécs", "Nagykanizsa", "Baja", "Szeged", "Békéscsaba"),
    "STG": ("Győr", "Pécs", "Salgótarján", "Szeged", "Debrecen", "Nagykanizsa"),
}

# A textbook's worked example of the middle cylinder: on the old sphere 47°38'25.3000" north,
# 1°55'32.8000" east of Gellérthegy (Bácsatyai, Magyarországi vetületek).
TEXTBOOK_POINT = geographic_to_sphere(degrees(47, 38, "25.3"), degrees(1, 55, "32.8"))
TEXTBOOK_HKR = mpc("-144443.573", "-61935.473")


def fixed(value: mpf, digits: int) -> str:
    n = int(floor(abs(value) * mpf(10) ** digits + mpf("0.5")))
    sign = "-" if value < 0 and n else ""
    return f"{sign}{n // 10**digits}.{n % 10**digits:0{digits}}"


def town(system: str, name: str) -> mpc:
    """A town's coordinates in one of the old systems, whole millimetres."""
    z = sphere_to_plane(system, place(*PLACES[name]))
    return mpc(*(floor(v * 1000 + mpf("0.5")) / 1000 for v in (z.real, z.imag)))


class CheckPoint(NamedTuple):
    code: int
    source: mpc
    image: mpc
    tolerance: str  # metres
    basis: str


def check_points(derivation: Derivation) -> Iterator[CheckPoint]:
    """Points whose images do not come from the records, and how well the records meet them."""
    textbook_radius = "exact formulas with R=6378512.966"
    table_radius = "exact formulas with R=" + fixed(TABLE_RADIUS, 4)
    for code in range(10, 20):
        source, target = RECORDS[code].source, RECORDS[code].target
        names = CHECKED[target if source == "STG" else source]
        points = [town(source, name) for name in names]
        for z in points:
            yield CheckPoint(code, z, convert(source, target, z), "0.0035", textbook_radius)
        for z in points[::2]:
            w = convert(source, target, z, TABLE_RADIUS)
            yield CheckPoint(code, z, w, "0.0007", table_radius)
    for code in (14, 17, 19):
        w = convert("HKR", RECORDS[code].target, TEXTBOOK_HKR)
        yield CheckPoint(code, TEXTBOOK_HKR, w, "0.0035", "textbook point; " + textbook_radius)
    for system in OLD:
        points = [town(system, name) for name in CHECKED[system]]
        for f, chosen, tolerance, basis in (
            (derivation.joined[system], points, "0.006",
             "datum chain joined to the published constants"),
            (chain(system), points[1::2], "0.8", "published datum parameters only"),
        ):  # fmt: skip
            for z in chosen:
                w = f(z)
                yield CheckPoint(TO_EOV[system], z, w, tolerance, basis)
                yield CheckPoint(FROM_EOV[system], w, z, tolerance, basis)
    # What the published constants of the city say of one another.
    bov, to_stg, to_hkr = RECORDS[22].origin, RECORDS[25].value, RECORDS[22].value
    to_eov = RECORDS[21].affine.inverse()(bov)
    yield CheckPoint(20, bov, to_eov, "0.005", "published constants of 21 solved backwards")
    yield CheckPoint(24, to_stg, bov, "0.002", "published constants of 25")
    yield CheckPoint(23, to_hkr, bov, "0.008", "published constants of 22")
    by_stg = convert("STG", "HKR", to_stg)
    yield CheckPoint(22, bov, by_stg, "0.007", "25 and the exact STG to HKR")


def files(derivation: Derivation) -> dict[str, str]:
    coefficients = ["code,constant,index,dA,dB"]
    for code, record in sorted(derivation.records.items()):
        for index, (a, b) in record.text.items():
            coefficients.append(f"{code},{RECORDS[code].constant},{index},{a},{b}")
    points = ["code,Y1,X1,Y2,X2,tolerance_m,basis"]
    for point in check_points(derivation):
        z, w = point.source, point.image
        coordinates = [fixed(v, 5) for v in (z.real, z.imag, w.real, w.imag)]
        points.append(",".join([str(point.code), *coordinates, point.tolerance, point.basis]))
    return {
        "coefficients.csv": "\n".join(coefficients) + "\n",
        "checkpoints.csv": "\n".join(points) + "\n",
    }


def figures(errors: Iterable, unit: float = 1000, digits: int = 2) -> str:
    """Root mean square and greatest length, in millimetres or another part of a metre."""
    lengths = [float(abs(e)) * unit for e in errors]
    rms = (sum(e * e for e in lengths) / len(lengths)) ** 0.5
    return f"{rms:9.{digits}f}{max(lengths):9.{digits}f}"


def heading(title: str, *columns: str) -> None:
    print(f"\n{title}: rms and greatest")
    if columns:
        print(" " * 12 + "".join(f"{column:>19}" for column in columns))


def report(d: Derivation) -> None:
    """Prints the figures that docs/national-transformations.md states."""
    print("Radius of the published distances, m:", nstr(TABLE_RADIUS, 14))
    value, per_first, per_second, average = d.distortion.facts
    print("Published constants of 26 to 30 less chain, at the centroid, m:", nstr(value, 3))
    print("    slopes:", nstr(per_first, 3), nstr(per_second, 3))
    print("    average at the control points, m:", nstr(average, 3))
    print("    chi squared, first and second:", [nstr(v, 2) for v in d.distortion.chi_squared])
    report_zones(d)
    report_national(d)
    report_closure(d)
    report_city(d)


def report_zones(d: Derivation) -> None:
    heading("10 to 19 over Hungary, mm", "exact formulas", "enlarged by 1/4", "R = 6378512.966")
    for code in range(10, 20):
        source, target = RECORDS[code].source, RECORDS[code].target
        columns = []
        for points, radius in (
            (d.country, TABLE_RADIUS), (border(1.25), TABLE_RADIUS), (d.country, OLD_RADIUS)
        ):  # fmt: skip
            planes = [[sphere_to_plane(p, s, radius) for p in (source, target)] for s in points]
            columns.append(figures(d.records[code](z) - w for z, w in planes))
        print(f"{code:<12}", *columns)


def report_national(d: Derivation) -> None:
    heading("26 to 33 over Hungary, mm", "target", "bare chain", "same less affine")
    for system in OLD:
        there = [(sphere_to_plane(system, s), sphere_to_eov(s)) for s in d.country]
        back = [(w, z) for z, w in there]
        for code, pairs in ((TO_EOV[system], there), (FROM_EOV[system], back)):
            polynomial = d.records[code]
            to_chain = [polynomial(z) - w for z, w in pairs]
            rows = [monomials(z - RECORDS[code].origin)[:3] for z, _ in pairs]
            affine = least_squares(rows, to_chain)
            rest = [e - (matrix([row]) * affine)[0] for e, row in zip(to_chain, rows, strict=True)]
            to_target = [polynomial(z) - w for z, w in d.targets[code]]
            print(f"{code:<12}", *map(figures, (to_target, to_chain, rest)))

    heading("26 to 33, expected error, m")
    error, centre = d.distortion.expected_error, d.distortion.origin
    country = [sphere_to_eov(s) for s in d.country]
    areas = {"Hungary": country}
    for low, high in ((0, 50), (50, 100), (100, 150), (150, 200), (200, 300)):
        ring = [w for w in country if low * 1000 <= abs(w - centre) < high * 1000]
        areas[f"{low} to {high} km off centre"] = ring
    for part in (0.15, 0.30):
        areas[f"outline enlarged by {part}"] = [sphere_to_eov(s) for s in border(1 + part)]
    areas["Gellérthegy"] = [sphere_to_eov(mpc(0))]
    for name, points in areas.items():
        print(f"{name:24}", figures(map(error, points), 1))


def in_use(system: str, s: mpc) -> bool:
    """Whether a point lies in the belt of a cylinder; STG and EOV were in use everywhere."""
    north, south = degrees("47.9167"), degrees("46.3667")
    latitude, _ = sphere_to_geographic(s)
    if system == "HKR":
        return south <= latitude <= north
    return {"HER": latitude >= north, "HDR": latitude <= south}.get(system, True)


def report_closure(d: Derivation) -> None:
    use = d.records
    heading("There and back, mm", "Hungary", "belt of use")
    for there in (10, 11, 12, 16, 18, 26, 27, 28, 29):
        source, target = RECORDS[there].source, RECORDS[there].target
        back = next(r.code for r in RECORDS.values() if (r.source, r.target) == (target, source))
        belts = [system for system in (source, target) if system in CYLINDER_ORIGIN] or ["EOV"]
        errors = []
        for s in d.country:
            z = sphere_to_plane(source, s)
            errors.append((use[back](use[there](z)) - z, any(in_use(b, s) for b in belts)))
        name = f"{there}-{back}"
        columns = [e for e, _ in errors], [e for e, inside in errors if inside]
        print(f"{name:<12}", *map(figures, columns))

    heading("One way against another over Hungary, mm")
    points = [sphere_to_plane("STG", s) for s in d.country]
    for a, b, direct in ((10, 16, 11), (12, 18, 11), (10, 27, 26), (11, 28, 26), (12, 29, 26)):
        name = f"{a}-{b} / {direct}"
        print(f"{name:<12}", figures(use[b](use[a](z)) - use[direct](z) for z in points))


def report_city(d: Derivation) -> None:
    use = d.records
    routes: dict[str, Map] = {
        "20-21": lambda p: use[21](use[20](p)) - p,
        "22-23": lambda p: use[23](use[22](p)) - p,
        "25-24": lambda p: use[24](use[25](p)) - p,
        "25-11 / 22": lambda p: use[11](use[25](p)) - use[22](p),
        "25-26 / 20": lambda p: use[26](use[25](p)) - use[20](p),
        "22-28 / 20": lambda p: use[28](use[22](p)) - use[20](p),
    }
    radii = (15, 30, 45)
    heading("City around Gellérthegy, mm", *(f"{radius} km" for radius in radii))
    for name, route in routes.items():
        near = [[route(p) for p in d.city if abs(p) <= radius * 1000] for radius in radii]
        print(f"{name:<12}", *map(figures, near), "  mean", nstr(sum(near[1]) / len(near[1]), 3))

    heading("City, curvature at a distance from the centroid, mm", "to EOV", "to STG",
            *(f"change at {area} km²" for area in d.other_curvatures))  # fmt: skip
    (to_eov, to_stg), centre = d.curvatures, RECORDS[22].origin
    for radius in (8, 15, 30, 45):
        ring = [radius * 1000 * expj(pi * k / 18) for k in range(36)]
        bends = [[quadratic(q, p) for p in ring] for q in (to_eov, to_stg)]
        bends += [
            [quadratic(q, centre + p) - quadratic(to_eov, centre + p) for p in ring]
            for q, _ in d.other_curvatures.values()
        ]
        print(f"{radius} km{'':7}", *(figures(bend, digits=0) for bend in bends))


def verify_formulas() -> None:
    """Stops if the projections miss the textbook's example or do not lead back."""
    if abs(sphere_to_plane("HKR", TEXTBOOK_POINT) - TEXTBOOK_HKR) > mpf("0.0007"):
        sys.exit("the textbook's example is missed")
    for system in OLD:
        z = mpc(12345, -67890)
        if abs(sphere_to_plane(system, plane_to_sphere(system, z)) - z) > mpf(10) ** -15:
            sys.exit(f"{system} does not lead back")


def differs(file: Path, text: str) -> bool:
    if file.is_file() and file.read_bytes() == text.encode():
        return False
    print(f"differs from what is derived: {file}", file=sys.stderr)
    return True


def main() -> int:
    parser = argparse.ArgumentParser(description="Derives the national transformations.")
    parser.add_argument("folder", nargs="?", type=Path, help="of the two CSV files")
    parser.add_argument("--check", action="store_true", help="compare the files, write nothing")
    parser.add_argument("--report", action="store_true", help="print misfit, closure and the like")
    arguments = parser.parse_args()
    if arguments.folder is None and (arguments.check or not arguments.report):
        parser.error("which folder?")

    verify_formulas()
    derivation = Derivation()
    if arguments.report:
        report(derivation)
    if arguments.folder is None:
        return 0
    contents = files(derivation)
    if arguments.check:
        return int(any([differs(arguments.folder / name, contents[name]) for name in contents]))
    arguments.folder.mkdir(parents=True, exist_ok=True)
    for name, text in contents.items():
        (arguments.folder / name).write_bytes(text.encode())
    return 0


if __name__ == "__main__":
    sys.exit(main())
