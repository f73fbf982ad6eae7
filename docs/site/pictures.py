#!/usr/bin/env python3
"""Makes the pictures of the gallery from what its sessions left behind.

pictures.py RUN FOLDER: of each report in RUN its plan, as NAME.svg in FOLDER, of each folder of layers a map, and what
is a picture already.
"""

import json
import re
import sys
from pathlib import Path

COLOURS = """
svg { background: #fff; } path { fill: none; stroke-width: .7; } text { font: 7px "DejaVu Sans", Verdana, sans-serif; }
.frame { stroke: #777; } text.frame { stroke: none; fill: #777; } .point { stroke: #111; } text.point { stroke: none; }
.excluded { stroke: #777; } text.excluded { stroke: none; fill: #777; }
.residual { stroke: #0645ad; } text.residual { stroke: none; fill: #0645ad; }
.suspect { stroke: #c00; } text.suspect { stroke: none; fill: #c00; }
.area { stroke: #0645ad; fill: #dbe7f7; stroke-width: 1; }
"""


def plan(report):
    """The plan of a report, with the colours for white paper."""
    picture = re.search(r"<svg[^>]*>.*?</svg>", report, re.DOTALL)[0]
    return re.sub(r"(<svg[^>]*>)", rf"\1<style>{COLOURS}</style>", picture, count=1)


def parts(geometry):
    """The lines and rings of a geometry, each a list of points."""
    if "geometries" in geometry:
        return [line for part in geometry["geometries"] for line in parts(part)]
    depth = {"LineString": 0, "MultiLineString": 1, "Polygon": 1, "MultiPolygon": 2}.get(geometry["type"])
    if depth is None:
        return []
    lines = [geometry["coordinates"]]
    for _ in range(depth):
        lines = [line for level in lines for line in level]
    return lines


def map_of(layers):
    """The lines and areas of GeoJSON files as a picture, 490 wide."""
    features = [each for layer in layers for each in json.loads(layer.read_text(encoding="utf-8"))["features"]]
    lines = [line for feature in features if feature["geometry"] for line in parts(feature["geometry"])]
    first, second = ([point[axis] for line in lines for point in line] for axis in (0, 1))
    scale = 470 / (max(first) - min(first))
    height = (max(second) - min(second)) * scale + 20
    paths = "".join(
        "M" + "L".join(f"{10 + (y - min(first)) * scale:.2f} {10 + (max(second) - x) * scale:.2f}" for y, x, *_ in line)
        for line in lines
    )
    head = f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 490 {height:.2f}"><style>{COLOURS}</style>'
    return f'{head}<path class="area" fill-rule="evenodd" d="{paths}"/></svg>'


def main():
    run, folder = map(Path, sys.argv[1:])
    folder.mkdir(parents=True)
    for file in run.glob("*.html"):
        (folder / f"{file.stem}.svg").write_text(plan(file.read_text(encoding="utf-8")), encoding="utf-8")
    for layers in {file.parent for file in run.rglob("*.geojson")}:
        (folder / f"{layers.name}.svg").write_text(map_of(sorted(layers.glob("*.geojson"))), encoding="utf-8")
    for file in run.glob("*.svg"):
        (folder / file.name).write_bytes(file.read_bytes())


main()
