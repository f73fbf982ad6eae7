#!/usr/bin/env python3
"""Transforms in an SQLite database, without taking the data out of it.

    transform_in_database.py town.sqlite parcels new_parcels --geometry geom --params town.json
    transform_in_database.py town.sqlite points new_points --params town.json

With --geometry SpatiaLite transforms the geometries by the exported pipeline; the new table has all
other columns too, and is registered with the SRID that --srid names. Without it the exported
formula maps the columns id, source_first and source_second to id, target_first and target_second,
which any SQL database does.
"""

import argparse
import contextlib
import pathlib
import sqlite3
import sys

import kv_tr
from transformations import add_options, chosen, pipeline_of, run


def quoted(name):
    return '"' + name.replace('"', '""') + '"'


def transform_geometries(connection, table, output, column, pipeline, srid):
    """Yields how many rows the new table has."""
    connection.enable_load_extension(True)
    connection.load_extension("mod_spatialite")
    names = [row[1] for row in connection.execute(f"pragma table_info({quoted(table)})")]
    if column not in names:
        raise ValueError(f"there is no table {table} with a column {column}")
    old, new = quoted(table), quoted(output)
    with connection:
        connection.execute("begin")
        connection.execute(f"create table {new} as select * from {old}")
        # The first SRID is that of the geometries, so that only the pipeline counts.
        connection.execute(
            f"update {new} set {quoted(column)} = SetSRID(ST_Transform({quoted(column)}, "
            f"ST_SRID({quoted(column)}), null, ?), ?) where {quoted(column)} is not null",
            (pipeline, srid),
        )
        count = "select count(*), count({}) from {}"
        rows, images = connection.execute(count.format(quoted(column), new)).fetchone()
        given = connection.execute(count.format(quoted(column), old)).fetchone()[1]
        if images != given:
            raise ValueError(f"{given - images} geometries could not be transformed")
        kinds = connection.execute(
            f"select distinct GeometryType({quoted(column)}), CoordDimension({quoted(column)}) "
            f"from {new} where {quoted(column)} is not null"
        ).fetchall()
        dimensions = {dimension for kind, dimension in kinds}
        if len(dimensions) == 1:  # a column that is registered has one
            kind = kinds[0][0].split()[0] if len(kinds) == 1 else "GEOMETRY"
            connection.execute(
                "select RecoverGeometryColumn(?, ?, ?, ?, ?)",
                (output, column, srid, kind, *dimensions),
            )
    return rows


def transform_columns(connection, table, output, formula):
    """Yields how many rows the new table has. The formula is a query over a table `points`."""
    with connection:
        connection.execute("begin")
        connection.execute(f"create temp view points as select * from {quoted(table)}")
        connection.execute(f"create table main.{quoted(output)} as {formula.rstrip().rstrip(';')}")
    return connection.execute(f"select count(*) from {quoted(output)}").fetchone()[0]


def main():
    parser = argparse.ArgumentParser(description="Transforms in an SQLite database.")
    parser.add_argument("database")
    parser.add_argument("table")
    parser.add_argument("output", help="name of the new table")
    add_options(parser)
    parser.add_argument("--geometry", metavar="COLUMN", help="transform this column by SpatiaLite")
    parser.add_argument("--srid", type=int, default=0, help="of the images; 0 is unknown")
    options = parser.parse_args()

    if not pathlib.Path(options.database).is_file():
        sys.exit(f"there is no file {options.database}")
    transformation = chosen(options)
    with contextlib.closing(sqlite3.connect(options.database)) as connection:
        if options.geometry:
            rows = transform_geometries(
                connection,
                options.table,
                options.output,
                options.geometry,
                pipeline_of(transformation),
                options.srid,
            )
        else:
            if isinstance(transformation, kv_tr.ExactInverse):
                sys.exit("an exact inverse is no formula; --geometry takes one")
            formula = transformation.to_text("sql")
            rows = transform_columns(connection, options.table, options.output, formula)
    print(f"{rows} rows transformed to {options.output}")


if __name__ == "__main__":
    try:
        run(main)
    except sqlite3.Error as error:
        sys.exit(str(error))
