#!/usr/bin/env python3
"""Transforms a layer of a data set with GeoPandas: geometries of all types; heights stay.

    transform_layer.py parcels.gpkg new.gpkg --params town.json --crs EPSG:23700

The new layer has the system that --crs names, or none. x is the first coordinate of the
transformation, or with --swap the second one.
"""

import argparse
import os
import sys

import geopandas
import numpy as np
import shapely.ops
from transformations import add_options, chosen, images_of, run


def transformed_geometry(geometry, transformation, swap=False):
    """The image of a geometry of any type; a missing or empty one stays as it is."""

    def image(x, y, z=None):
        first, second = images_of(transformation, np.column_stack((y, x) if swap else (x, y))).T
        plane = (second, first) if swap else (first, second)
        return plane if z is None else (*plane, z)

    return geometry if geometry is None else shapely.ops.transform(image, geometry)


def transformed_frame(frame, transformation, crs=None, swap=False):
    """A GeoDataFrame with the images of all geometries, in the system given."""
    images = [transformed_geometry(each, transformation, swap) for each in frame.geometry]
    return frame.set_geometry(geopandas.GeoSeries(images, frame.index), crs=crs)


def main():
    parser = argparse.ArgumentParser(description="Transforms a layer of a data set.")
    parser.add_argument("data", help="whatever GDAL reads: GeoPackage, Shapefile, GeoJSON ...")
    parser.add_argument("output", help="a new file; the ending names the format")
    add_options(parser)
    parser.add_argument("--layer", help="which one; needed where there are several")
    parser.add_argument("--crs", help="the system of the images, such as EPSG:23700")
    parser.add_argument("--swap", action="store_true", help="y is the first coordinate")
    options = parser.parse_args()

    if os.path.exists(options.output):
        sys.exit(f"{options.output} exists")
    frame = geopandas.read_file(options.data, layer=options.layer)
    if "geometry" not in frame or frame.geometry.isna().all():
        sys.exit(f"{options.data} has no geometries")
    images = transformed_frame(frame, chosen(options), options.crs, options.swap)
    images.to_file(options.output)
    print(f"{len(images)} features transformed to {options.output}")


if __name__ == "__main__":
    run(main)
