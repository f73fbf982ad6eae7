#!/usr/bin/env python3
"""Transforms drawings that ezdxf makes, reads them again with ezdxf and GDAL, and compares places along the entities.

Usage: compare_drawings.py PROGRAM. Exit code 77 where ezdxf is not installed.
"""
import math
import subprocess
import sys
import tempfile
from pathlib import Path

try:
    import ezdxf
    from ezdxf import path
    from ezdxf.enums import TextEntityAlignment
    from ezdxf.math import Vec3
except ImportError:
    sys.exit(77)
try:
    from osgeo import ogr
except ImportError:
    ogr = None

TOLERANCE = 0.001
FLAT = 5e-4  # of the curves that are compared; ezdxf draws circles to 3e-4 of their radius
BELOW = {"extrusion": (0, 0, -1)}


def linear(a0, a1, a2, b0, b1, b2):
    return lambda v: Vec3(a0 + a1 * v.x + a2 * v.y, b0 + b1 * v.x + b2 * v.y, v.z)


def bent(v):
    x, y = v.x, v.y
    return Vec3(1000 + 1.2 * x - 0.3 * y + 1e-3 * x * x, 2000 + 0.25 * x + 0.9 * y - 5e-4 * x * y, v.z)


MAPS = {
    "helmert": linear(1000, 1.1, -0.4, 2000, 0.4, 1.1),
    "mirror": linear(1000, 1.1, 0.4, 2000, 0.4, -1.1),
    "affine": linear(1000, 1.2, -0.3, 2000, 0.25, 0.9),
    "poly2": bent,
}
NEARLY = {"INSERT", "DIMENSION", "TEXT", "ATTRIB", "MTEXT"}  # unless the map is a similarity


def make(version):
    doc = ezdxf.new(version, setup=True)
    msp = doc.modelspace()
    block = doc.blocks.new("SYM")
    block.add_line((0, 0), (2, 1))
    block.add_line((2, 1), (0, 3))
    msp.add_line((1, 2, 3), (11, 7, 4))
    msp.add_circle((20, 10, 2), 1)
    msp.add_arc((30, 10), 1, 350, 80)
    msp.add_arc((30, 20), 1, 20, 100, dxfattribs=BELOW)
    msp.add_text("left", dxfattribs={"insert": (3, 3), "height": 1.5})
    msp.add_text("below", dxfattribs={"insert": (-3, 13), "height": 1.5, "rotation": 20, **BELOW})
    msp.add_text("middle", dxfattribs={"height": 2, "rotation": 30}).set_placement(
        (10, 12), align=TextEntityAlignment.MIDDLE_CENTER)
    msp.add_blockref("SYM", (40, 40), dxfattribs={"rotation": 25, "xscale": 2, "yscale": 3})
    msp.add_blockref("SYM", (45, 50), dxfattribs={
        "xscale": -1, "column_count": 2, "row_count": 2, "column_spacing": 3, "row_spacing": 4, "rotation": 10, **BELOW})
    msp.add_solid([(0, 0), (3, 0), (0, 3), (3, 3)])
    msp.add_3dface([(0, 0, 1), (3, 0, 2), (3, 3, 3), (0, 3, 4)])
    bulges = [(0, 0, 0, 0, 0), (3, 0, 0.2, 0.4, 0.5), (3, 3, 0, 0, -0.3), (0, 3, 0, 0, 0)]
    msp.add_polyline2d(bulges, format="xyseb", close=True)
    msp.add_polyline3d([(0, 0, 1), (5, 5, 2), (9, 1, 3)])
    msp.add_linear_dim(base=(3, 22), p1=(0, 20), p2=(10, 20)).render()
    if version == "R12":
        return doc
    msp.add_lwpolyline(bulges, format="xyseb", close=True, dxfattribs={"elevation": 3})
    msp.add_lwpolyline([(0, 0, 1, 1, 0.7), (-3, 0, 0, 0, 0)], format="xyseb", dxfattribs=BELOW)
    msp.add_ellipse((50, 10, 1), (1, 0.3, 0), 0.4, 0.5, 4)
    msp.add_ellipse((50, 30), (1, 0.3), 0.6, 1, 2, dxfattribs=BELOW)
    msp.add_open_spline([(0, 0, 0), (3, 5, 0), (8, 5, 0), (10, 0, 0), (14, 2, 0)])
    msp.add_rational_spline([(0, 0, 0), (3, 5, 1), (8, 5, 0), (10, 0, 4)], [1, 2, 3, 1])
    msp.add_mtext("turned", dxfattribs={"insert": (7, 9), "char_height": 0.8, "rotation": 40})
    msp.add_leader([(0, 0), (5, 5), (8, 5)])
    hatch = msp.add_hatch()
    hatch.paths.add_polyline_path([(0, 0, 0.5), (3, 0, 0), (3, 3, -0.2), (0, 3, 0)], is_closed=True)
    hatch.set_pattern_fill("ANSI31", scale=0.5)
    for ccw in (True, False):
        edges = msp.add_hatch().paths.add_edge_path()
        edges.add_arc((20, 10), 1, 10, 200, ccw=ccw)
        edges.add_ellipse((10, 5), (1, 0.3), 0.5, 20, 300, ccw=ccw)
        edges.add_spline(control_points=[(0, 0), (3, 5), (8, 5), (10, 0)], knot_values=[0] * 4 + [1] * 4, degree=3)
    return doc


def places(entity):
    kind = entity.dxftype()
    if kind == "TEXT":  # the base line, and where the text is
        start = entity.ocs().to_wcs(entity.dxf.insert)
        along = Vec3.from_deg_angle(entity.dxf.rotation)
        return [start, start + entity.ocs().to_wcs(along) * entity.dxf.height]
    if kind == "MTEXT":
        return [Vec3(entity.dxf.insert)]
    if kind == "LINE":
        return [entity.dxf.start, entity.dxf.end]
    if kind == "POINT":
        return [entity.dxf.location]
    if kind in ("SOLID", "3DFACE"):
        return entity.wcs_vertices()
    if kind == "LEADER":
        return [Vec3(v) for v in entity.vertices]
    if kind == "SPLINE":
        curve = entity.construction_tool()
        return list(curve.points([curve.max_t * i / 300 for i in range(301)]))
    if kind == "INSERT":
        inserts = [entity] if entity.mcount == 1 else entity.multi_insert()
        return [p for insert in inserts for part in insert.virtual_entities() for p in places(part)]
    if kind == "DIMENSION":
        parts = [p for part in entity.virtual_entities() for p in places(part)]
        return [entity.dxf.defpoint, entity.dxf.defpoint2, entity.dxf.defpoint3] + parts
    if kind == "HATCH":
        return [p for edge in path.from_hatch(entity) for p in edge.flattening(FLAT)]
    return list(path.make_path(entity).flattening(FLAT))


def distance(place, line):
    best = math.inf
    for a, b in zip(line, line[1:]):
        side = b - a
        size = side.dot(side)
        t = max(0.0, min(1.0, (place - a).dot(side) / size)) if size else 0.0
        best = min(best, (place - a - side * t).magnitude)
    return best


def departure(wanted, found, same):
    if same and len(wanted) == len(found):
        return max((a - b).magnitude for a, b in zip(wanted, found))
    def some(line):
        return line[::max(1, len(line) // 20)]

    return max(max(distance(p, found) for p in some(wanted)), max(distance(p, wanted) for p in some(found)))


def main(program):
    failures = 0
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        for version, form in (("R12", "asc"), ("R2000", "bin"), ("R2018", "asc")):
            source = folder / f"{version}.dxf"
            make(version).saveas(source, fmt=form)
            before = list(ezdxf.readfile(source).modelspace())
            for which, function in MAPS.items():
                pairs = folder / "pairs.dat"
                grid = [Vec3(x * 10, y * 10) for x in range(-1, 6) for y in range(-1, 6)]
                pairs.write_text("".join(
                    f"P{i} {p.x!r} {p.y!r} {function(p).x!r} {function(p).y!r}\n" for i, p in enumerate(grid)))
                fit = {"mirror": "affine"}.get(which, which)
                target = folder / f"{version}_{which}.dxf"
                done = subprocess.run([program, "transform", source, "--output", target, "--points", pairs, "--type", fit],
                                      capture_output=True, text=True)
                if done.returncode != 0:
                    print(version, which, done.stderr)
                    return 1
                result = ezdxf.readfile(target)
                after = list(result.modelspace())
                problems = result.audit().errors
                if problems or len(before) != len(after):
                    print(version, which, [p.message for p in problems], len(before), len(after))
                    failures += 1
                    continue
                drawing = ogr.Open(str(target)) if ogr is not None and form == "asc" else None
                if drawing is not None and drawing.GetLayer(0).GetFeatureCount() == 0:
                    print(version, which, "GDAL finds no entities")
                    failures += 1
                similar = which in ("helmert", "mirror")
                for a, b in zip(before, after):
                    kind = a.dxftype()
                    if not similar and kind in NEARLY:
                        continue
                    if similar and b.dxftype() != kind:
                        print(version, which, kind, "became", b.dxftype())
                        failures += 1
                    wanted = [function(Vec3(p)) for p in places(a)]
                    found = [Vec3(p) for p in places(b)]
                    same = kind in ("LINE", "SOLID", "3DFACE", "LEADER", "TEXT", "MTEXT", "INSERT", "DIMENSION", "POINT")
                    far = departure(wanted, found, same)
                    if far > 1e-6 if same else far > TOLERANCE + 1e-3:
                        print(version, which, kind, a.dxf.handle, "departs by", far)
                        failures += 1
    return 1 if failures else 0


sys.exit(main(sys.argv[1]))
