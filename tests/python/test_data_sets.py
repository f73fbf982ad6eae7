"""The examples for whole data sets, where their packages are installed."""

import concurrent.futures
import csv
import multiprocessing
import pathlib
import sqlite3
import sys

import kv_tr
import numpy as np
import pytest
from conftest import run

EXAMPLES = pathlib.Path(__file__).parents[2] / "examples"
PYTHON = EXAMPLES / "python"
sys.path.insert(0, str(PYTHON))
POINTS = kv_tr.read_points(EXAMPLES / "swiss_helmert_9.dat")
FITTED = kv_tr.fit(POINTS, "poly2").transformation
AFFINE = kv_tr.fit(POINTS, "affine").transformation
LOW, HIGH = POINTS.source.min(axis=0), POINTS.source.max(axis=0)
PLACES = np.random.default_rng(1).uniform(LOW, HIGH, (1000, 2))  # among the control points


def bits(array):
    return np.ascontiguousarray(array).tobytes()


@pytest.fixture
def town(tmp_path):
    (tmp_path / "town.json").write_text(FITTED.to_text("json"))
    return "--params", tmp_path / "town.json"


def write_csv(name, points):
    with open(name, "w", newline="") as file:
        rows = csv.writer(file)
        rows.writerow(["id", "y", "x", "remark"])
        rows.writerows([f"{n:03}", y, x, 'NA, "so"'] for n, (y, x) in enumerate(points.tolist()))


@pytest.mark.parametrize("transformation", [FITTED, FITTED.inverse(), AFFINE.inverse()])
def test_a_pickled_transformation_gives_the_same_bits_in_another_process(transformation):
    points = PLACES if transformation == FITTED else FITTED.transform(PLACES)
    spawn = multiprocessing.get_context("spawn")  # nothing is inherited
    with concurrent.futures.ProcessPoolExecutor(1, spawn) as pool:
        images = pool.submit(transformation.transform, points).result(timeout=100)
    assert bits(images) == bits(transformation.transform(points))


def test_a_layer_keeps_types_heights_and_attributes(tmp_path, town):
    geopandas = pytest.importorskip("geopandas", reason="needs python3-geopandas")
    wkt = pytest.importorskip("shapely.wkt")
    from transform_layer import transformed_frame

    shapes = ["POINT (0 0)", "LINESTRING Z (0 0 5, 9 4 7)", "POLYGON ((0 0, 9 0, 9 9, 0 0))", None]
    shapes += ["POLYGON Z ((0 0 1, 9 0 2, 9 9 3, 0 0 1), (4 1 0, 5 1 0, 5 2 0, 4 1 0))"]
    shapes += ["MULTIPOINT (1 2, 3 4)", "MULTILINESTRING ((0 0, 1 1), (5 6, 7 8))"]
    shapes += ["MULTIPOLYGON (((0 0, 9 0, 9 9, 0 0)))", "POLYGON EMPTY"]
    shapes += ["GEOMETRYCOLLECTION Z (POINT Z (1 2 3), LINESTRING Z (0 0 1, 1 1 2))"]
    old = [shape and wkt.loads(shape) for shape in shapes]
    frame = geopandas.GeoDataFrame({"name": shapes}, geometry=old, crs="EPSG:4326")
    for swap in (False, True):
        new = transformed_frame(frame, AFFINE, "EPSG:2100", swap)
        assert new.crs == "EPSG:2100" and list(new.name) == shapes
        for before, after in zip(old, new.geometry):
            if not before:
                assert after == before
                continue
            assert (after.geom_type, after.has_z) == (before.geom_type, before.has_z)
            numbers = [part.wkt.replace(",", " ").replace("(", " ").replace(")", " ").split()
                       for part in (before, after)]
            ends = [[float(text) for text in part if text[-1].isdigit()] for part in numbers]
            width = 3 if before.has_z else 2
            start, end = (np.reshape(part, (-1, width)) for part in ends)
            order = [1, 0] if swap else [0, 1]
            assert AFFINE.transform(start[:, order]) == pytest.approx(end[:, order], abs=1e-6)
            assert np.array_equal(start[:, 2:], end[:, 2:])

    points = geopandas.points_from_xy(*PLACES.T, z=np.arange(1000.0))
    geopandas.GeoDataFrame({"n": range(1000)}, geometry=points).to_file(tmp_path / "old.gpkg")
    command = (PYTHON / "transform_layer.py", tmp_path / "old.gpkg", tmp_path / "new.gpkg", *town)
    command += ("--crs", "EPSG:21781")
    run(*command)
    new = geopandas.read_file(tmp_path / "new.gpkg")
    images = np.column_stack((new.geometry.x, new.geometry.y))
    assert bits(images) == bits(FITTED.transform(PLACES))
    assert list(new.geometry.z) == list(new.n) == list(range(1000)) and new.crs == "EPSG:21781"
    assert "exists" in run(*command, code=1)


def test_proj_agrees_with_the_exported_pipeline(tmp_path, town):
    pytest.importorskip("pyproj", reason="needs python3-pyproj")
    script = PYTHON / "compare_with_proj.py"
    write_csv(tmp_path / "old.csv", PLACES)
    write_csv(tmp_path / "new.csv", FITTED.transform(PLACES))
    assert "1000 points" in run(script, tmp_path / "old.csv", *town)
    run(script, tmp_path / "new.csv", "--inverse", *town, "--limit", 1e-6)
    assert "limit" in run(script, tmp_path / "old.csv", *town, "--limit", -1, code=1)


def test_a_database_transforms_columns_and_geometries(tmp_path, town):
    script, name = PYTHON / "transform_in_database.py", tmp_path / "town.sqlite"
    database = sqlite3.connect(name)
    database.execute("create table old (id text, source_first real, source_second real)")
    rows = [(f"{n:03}", *place) for n, place in enumerate(PLACES.tolist())]
    database.executemany("insert into old values (?, ?, ?)", rows)
    database.commit()
    run(script, name, "old", "new", *town)
    new = database.execute("select id, target_first, target_second from new order by id").fetchall()
    assert [row[0] for row in new] == [row[0] for row in rows]
    assert bits([row[1:] for row in new]) == bits(FITTED.transform(PLACES))
    assert "exists" in run(script, name, "old", "new", *town, code=1)
    try:
        database.enable_load_extension(True)
        database.load_extension("mod_spatialite")
    except (AttributeError, sqlite3.Error) as error:
        pytest.skip(f"needs libsqlite3-mod-spatialite: {error}")
    database.execute("select InitSpatialMetaData(1)")
    database.execute("create table lots as select id, MakePointZ(source_first, source_second, 7, "
                     "4326) as geom from old union all select 'none', null")
    database.commit()
    assert "1001 rows" in run(script, name, "lots", "moved", "--geometry", "geom", *town,
                              "--srid", 2100)
    new = database.execute("select ST_X(geom), ST_Y(geom), ST_Z(geom), ST_SRID(geom) from moved "
                           "where geom is not null order by id").fetchall()
    assert [row[:2] for row in new] == pytest.approx(FITTED.transform(PLACES), abs=1e-9)
    assert {row[2:] for row in new} == {(7, 2100)}
    found = database.execute("select f_table_name, srid from geometry_columns").fetchall()
    assert found == [("moved", 2100)]
    assert "wrong" in run(script, name, "lots", "lost", "--geometry", "wrong", *town, code=1)
    assert not database.execute("select 1 from sqlite_master where name = 'lost'").fetchall()


@pytest.mark.parametrize("ending", ["csv", "parquet"])
def test_partitions_have_the_bits_of_one_process(tmp_path, town, ending):
    pytest.importorskip("dask.dataframe", reason="needs python3-dask and python3-pandas")
    if ending == "parquet":
        pytest.importorskip("pyarrow", reason="needs pyarrow")
    import pandas

    script = PYTHON / "transform_partitions.py"
    for part in range(4):
        write_csv(tmp_path / f"{part}.csv", PLACES[part * 250 : part * 250 + 250])
        if ending == "parquet":
            old = pandas.read_csv(tmp_path / f"{part}.csv", dtype={"id": str})
            old.to_parquet(tmp_path / f"{part}.parquet", engine="pyarrow")
    command = (script, tmp_path / f"[0-9].{ending}", tmp_path / "new", *town, "--workers", 2)
    run(*command, "--blocksize", "4kB")
    read = pandas.read_parquet if ending == "parquet" else pandas.read_csv
    how = {} if ending == "parquet" else {"dtype": {"id": str}, "float_precision": "round_trip",
                                          "keep_default_na": False}
    parts = sorted((tmp_path / "new").iterdir())
    new = pandas.concat(read(part, **how) for part in parts).sort_values("id", key=lambda n: n)
    assert len(parts) > 4 or ending == "parquet"
    assert sorted(new.id) == sorted(f"{n:03}" for n in range(250) for _ in range(4))
    assert set(new.remark) == {'NA, "so"'}
    assert {*map(tuple, new[["y", "x"]].to_numpy())} == {*map(tuple, FITTED.transform(PLACES))}
    assert "exists" in run(*command, code=1)
    assert "no column z" in run(*command[:2], tmp_path / "none", *town, "--columns", "y", "z",
                                code=1)
    assert not (tmp_path / "none").exists() and not (tmp_path / "none.part").exists()
