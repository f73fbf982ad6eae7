#!/usr/bin/env python3
"""Makes examples/parcels.gpkg: invented parcels, boundaries with arcs and a table around the Swiss
control points of swiss_helmert_9.dat. Needs GDAL's Python package."""

import sys

from osgeo import gdal, ogr, osr

gdal.UseExceptions()
target = sys.argv[1] if len(sys.argv) > 1 else "examples/parcels.gpkg"
source = gdal.GetDriverByName("GPKG").Create(target, 0, 0, 0, gdal.GDT_Unknown)
source.SetMetadataItem("made_by", "tools/make_parcels.py; everything in it is invented")
source.AddFieldDomain(
    ogr.CreateCodedFieldDomain("use", "what a parcel is used for", ogr.OFTString, ogr.OFSTNone,
                               {"F": "field", "G": "garden", "W": "wood"}))

plane = osr.SpatialReference('LOCAL_CS["Undefined Cartesian SRS"]')
parcels = source.CreateLayer("parcels", plane, ogr.wkbPolygon, ["FID=number", "GEOMETRY_NAME=shape"])
parcels.SetMetadataItem("DESCRIPTION", "Parcels, old survey")
for name, kind, width in (("owner", ogr.OFTString, 40), ("area_m2", ogr.OFTReal, 0),
                          ("since", ogr.OFTDate, 0), ("use", ogr.OFTString, 1)):
    field = ogr.FieldDefn(name, kind)
    field.SetWidth(width)
    if name == "use":
        field.SetDomainName("use")
    parcels.CreateField(field)
for number, east, north, use, owner in ((101, 594000, 254500, "F", "Meier"),
                                        (102, 594125.25, 254500, "G", "Ńovák"),
                                        (205, 594000, 254610.5, "W", None)):
    feature = ogr.Feature(parcels.GetLayerDefn())
    feature.SetFID(number)
    if owner:
        feature["owner"] = owner
    feature["since"] = "1912/05/04"
    feature["use"] = use
    ring = f"{east} {north},{east + 120.125} {north},{east + 120.125} {north + 100},{east} {north + 100},{east} {north}"
    hole = f",({east + 10} {north + 10},{east + 20} {north + 10},{east + 20} {north + 20},{east + 10} {north + 10})"
    feature.SetGeometry(ogr.CreateGeometryFromWkt(f"POLYGON(({ring}){hole if use == 'W' else ''})"))
    feature["area_m2"] = feature.GetGeometryRef().GetArea()
    parcels.CreateFeature(feature)

edges = source.CreateLayer("edges", plane, ogr.wkbCompoundCurveZM)
edges.CreateField(ogr.FieldDefn("kind", ogr.OFTString))
for kind, wkt in (
        ("kerb", "COMPOUNDCURVE ZM(CIRCULARSTRING ZM(594000 254500 410.5 0,594050 254480 411 55,594100 254500 411.5 110),"
                 "(594100 254500 411.5 110,594200.1 254500.7 412 210))"),
        ("wall", "COMPOUNDCURVE ZM((594000 254600 0.1 0,594010 254600 0.2 10))"),
        ("lost", None)):
    feature = ogr.Feature(edges.GetLayerDefn())
    feature["kind"] = kind
    if wkt:
        feature.SetGeometry(ogr.CreateGeometryFromWkt(wkt))
    edges.CreateFeature(feature)

owners = source.CreateLayer("owners", None, ogr.wkbNone)
owners.CreateField(ogr.FieldDefn("name", ogr.OFTString))
owners.CreateField(ogr.FieldDefn("paid", ogr.OFTInteger64))
for name, paid in (("Meier", 2**40), ("Ńovák", -1)):
    feature = ogr.Feature(owners.GetLayerDefn())
    feature["name"], feature["paid"] = name, paid
    owners.CreateFeature(feature)
