"""Fits, transformations and files as values: their conversion, ownership and errors."""

import concurrent.futures
import copy
import pickle
import re

import kv_tr
import numpy as np
import pytest
from conftest import LAYOUTS

TYPES = {"helmert": 0, "affine": -1, "helmert3": -2, "affine5": -3, "bilinear": 6}
TYPES |= {f"poly{n}": n for n in range(1, 6)}
FIGURES = {"rms": "dRmsErr", "rms_first": "dRmsErrX", "rms_second": "dRmsErrY"}
FIGURES |= {"mean_first": "dMiddleErrX", "mean_second": "dMiddleErrY"}

# A shift, a slight turn and a bend, with a few centimetres of noise that never change.
GRID = np.array([(y, x) for y in range(0, 3000, 500) for x in range(0, 2500, 500)], float)
IDS = [f"P{n}" for n in range(len(GRID))]
BENDS = GRID[:, :1] * GRID[:, ::-1] * [1e-6, -1e-6]
NOISE = np.random.default_rng(5).normal(0, 0.02, GRID.shape)
TARGET = GRID @ [[1, 0.001], [-0.001, 1]] + [100, -50] + BENDS + NOISE


@pytest.fixture(params=["affine", "bilinear"])
def result(request):
    return kv_tr.fit(GRID, TARGET, request.param, ids=IDS)


def bits(array):
    return np.ascontiguousarray(array).tobytes()


def same(one, other):
    """Whether two fits agree bit for bit."""
    arrays = bits(one.residuals) == bits(other.residuals)
    facts = [(r.transformation, r.type, r.statistics, r.outcome) for r in (one, other)]
    return arrays and facts[0] == facts[1]


@pytest.mark.filterwarnings("ignore::kv_tr.FitWarning")  # poly5 on six by five points
def test_fits_are_those_of_the_published_engine():
    engine = kv_tr.clsTrCalc()
    engine.AddXY4Tr([(i, *a, *b) for i, a, b in zip(IDS, GRID.tolist(), TARGET.tolist())], False)
    for word, number in TYPES.items():
        result = kv_tr.fit(GRID, TARGET, word, ids=IDS)
        t, engine.udtTrPrm = result.transformation, kv_tr.TR_PRM(number)
        engine.DoCalcTr()
        for series, name in ((t.a, "dA"), (t.b, "dB")):
            assert [getattr(engine.udtTrPrm, f"{name}{k}") for k in range(22)] == list(series)
        figures = {name: getattr(engine, member) for name, member in FIGURES.items()}
        assert figures == result.statistics._asdict() and result.type == word
        assert [[p.dXerr, p.dYerr] for p in engine.GetAllXYs()] == result.residuals.tolist(), word
        assert bits(result.residuals) == bits(t.transform(GRID) - TARGET)
        assert same(result, kv_tr.fit(GRID, TARGET, engine.eTrType))


def test_excluding_is_fitting_with_a_mark_and_including_takes_it_back(result):
    used = np.array([name not in ("P3", "P17") for name in IDS])
    without = result.exclude("P3", "P17")
    assert same(without, kv_tr.fit(GRID, TARGET, result.type, used=used))
    assert without.used.tolist() == used.tolist() and without.ids == tuple(IDS)
    assert same(without, result.exclude("P17").exclude("P3").exclude("P3"))
    assert not same(without, result) and result.used.all()
    assert same(without.include("P17", "P3"), result)
    rows, numbers = (kv_tr.fit(GRID, TARGET, "affine", ids=n) for n in (None, np.arange(30) + 100))
    assert same(rows.exclude(4), numbers.exclude(104)) and type(numbers.ids[0]) is int
    twice = kv_tr.fit(GRID, TARGET, "affine", ids=["A", "A"] + IDS[2:]).exclude("A")
    assert twice.used.tolist() == [False, False] + [True] * 28


def test_no_memory_order_or_number_type_changes_a_bit(result):
    whole = np.round(TARGET)
    fitted = kv_tr.fit(GRID, whole, result.type)
    t, images = result.transformation, result.transformation.transform(whole)
    for layout in LAYOUTS:
        assert same(kv_tr.fit(layout(GRID), layout(whole), result.type), fitted)
        assert bits(t.transform(layout(whole))) == bits(images)
        assert bits(t.transform(layout(whole[7]))) == bits(images[7])
    assert t.transform([]).shape == (0, 2) and t.transform([1, 2]).shape == (2,)


def test_images_go_where_they_are_wanted():
    t = kv_tr.fit(GRID, TARGET, "poly3").transformation
    many = np.random.default_rng(1).random((30_000, 2)) * 2000
    images = t.transform(many)
    whole, kept, frozen = np.zeros((30_001, 2)), many.copy(), many.copy()
    for points, place in ((many, whole[1:]), (kept, kept)):
        assert t.transform(points, out=place) is place and bits(place) == bits(images)
    frozen.flags.writeable = False
    for out in (whole, whole[1:].T, many.astype("f4"), frozen, [[0, 0]], np.zeros((15_000, 4))):
        with pytest.raises(ValueError, match=r"out must be .* shape \(30000, 2\)"):
            t.transform(many, out=out)
    with pytest.raises(ValueError, match="apart"):
        t.transform(whole[1:], out=whole[:-1])
    whole[20_000, 1] = np.nan
    with pytest.raises(ValueError, match=r"xy\[20000, 1\] is nan"):
        t.transform(whole)


def test_inverses_and_directions():
    t = kv_tr.fit(GRID, TARGET, "affine5").transformation
    back = t.inverse()
    there = pytest.approx(GRID, abs=1e-8)
    assert back.type == t.type and back.transform(t.transform(GRID)) == there
    assert back.direction(t.direction(1.25, GRID[3]), [0, 0]) == pytest.approx(1.25)
    for word, kind in (("poly1", kv_tr.NoInverseError), ("affine", ValueError)):
        with pytest.raises(kind, match=f"no inverse: .*{word} transformation"):
            kv_tr.Transformation(word, [0, 1, 2], [0, 2, 4]).inverse()


def test_polynomials_are_inverted_within_the_area_of_the_points_in_use():
    t = kv_tr.fit(GRID, TARGET, "poly2", used=GRID[:, 0] < 2500).transformation
    back, images = t.inverse(), t.transform(GRID)
    assert back.domain == ((-1000, -1000), (3000, 3000)) and back.forward == t
    assert back.transform(images) == pytest.approx(GRID, abs=1e-9)
    assert np.array_equal(back.transform(images[7]), back.transform(images)[7])
    far = np.vstack([images[:4], [1e6, 0]])
    with pytest.warns(kv_tr.NoInverseWarning, match="1 of 5 points"):
        assert np.isnan(back.transform(far, out=far)).tolist() == [[False] * 2] * 4 + [[True] * 2]
    assert back.reasons([[1e5, 0], images[3]]).tolist() == ["outside the domain", ""]
    with pytest.raises(kv_tr.NoInverseError, match="outside the domain"):
        back.transform([1e5, 0])
    with pytest.raises(ValueError, match=r"xy\[1, 0\] is inf"):
        back.transform([[0, 0], [np.inf, 0]])
    free = kv_tr.Transformation(t.type, t.a, t.b).inverse()
    assert free.domain is None and free != back and free.transform([1e5, 0])[0] > 3000
    for same_back in (pickle.loads(pickle.dumps(back)), copy.deepcopy(back)):
        assert same_back == back and hash(same_back) == hash(back)
    assert pickle.loads(pickle.dumps(t)).inverse() == back, "a domain is pickled"


def test_distortions_are_arrays_of_the_shape_of_the_points():
    mirrored = kv_tr.Transformation("affine", [100, -0.8, 0.1], [50, 0.2, 0.9])
    assert mirrored.distortion(GRID).greatest_scale == pytest.approx(np.full(30, 0.9338445032002))
    one = mirrored.distortion([1, 2])
    figures = [one.least_scale, one.area_scale, one.rotation, one.greatest_angle_change]
    figures += [one.direction_source, one.direction_target]
    expected = [0.79242314696295, -0.74, 0.78539816339745, 0.16403021319561]
    assert figures == pytest.approx(expected + [1.09076114559205, 1.8761593089895])
    assert one.rotation.shape == ()
    same_scale = kv_tr.Transformation("helmert", [0, 1], [0, 0, 1])
    assert np.isnan(same_scale.distortion(GRID).direction_source).all()
    with pytest.raises(ValueError, match=r"xy\[0, 1\] is nan"):
        mirrored.distortion([[0, np.nan]])


def test_transformations_and_results_are_values(result):
    t = result.transformation
    copies = [pickle.loads(pickle.dumps(t, p)) for p in range(pickle.HIGHEST_PROTOCOL + 1)]
    copies += [copy.copy(t), copy.deepcopy(t), eval(repr(t), vars(kv_tr))]
    assert all(other == t and hash(other) == hash(t) for other in copies)
    assert len({t, *copies, kv_tr.Transformation(t.type, t.a, t.a)}) == 2
    assert t.type != t != kv_tr.Transformation("helmert", t.a, t.b)
    for again in (pickle.loads(pickle.dumps(result)), copy.deepcopy(result)):
        assert same(again, result) and again.ids == result.ids
    for holder in (t, result):
        with pytest.raises(AttributeError):
            holder.type = "poly1"
    for array in (result.source, result.target, result.used, result.residuals):
        with pytest.raises(ValueError, match="read-only"):
            array[0] = 0
    source, used = GRID.copy(), np.ones(len(GRID), bool)
    before = kv_tr.fit(source, TARGET, "poly2", used=used)
    source[:] = used[:] = 0
    assert same(before.exclude(4).include(4), before), "a result keeps its own points"


TROUBLES = {
    "no_points": (np.zeros((0, 2)), "poly1", "no points"),
    "no_start": ([(5, 5), (0, 0), (10, 0), (10, 10), (0, 10)], "affine5", "affine5 cannot begin"),
    "too_few_points": (GRID[:7], "poly3", "poly3 needs 10 points, 7 are in use"),
    "singular": ([(0, x) for x in range(6)], "affine", "do not determine affine"),
}


@pytest.mark.parametrize("word", TROUBLES)
def test_no_bad_fit_is_silent(word):
    points, kind, complaint = TROUBLES[word]
    with pytest.warns(kv_tr.FitWarning, match=complaint) as caught:
        bad = kv_tr.fit(points, points, kind)
    assert caught[0].filename == __file__
    assert word == bad.outcome.trouble is kv_tr.FitTrouble(word) and not bad.outcome.succeeded
    assert all(f"NOT TO BE TRUSTED: {bad.complaint}" in text for text in (bad.summary(), repr(bad)))
    with pytest.raises(kv_tr.FitError, match=complaint) as raised:
        bad.raise_for_trouble()
    assert raised.value.result is bad and bad.residuals.shape == (len(points), 2)
    if word.startswith("no_"):
        assert np.isnan(bad.statistics).all() and np.isnan(bad.residuals).all()
        with pytest.raises(ValueError):
            bad.transformation


def test_exclusion_below_the_minimum_warns_where_it_was_asked_for():
    good = kv_tr.fit(GRID[:3], TARGET[:3], "helmert", ids=["A", "B", "C"])
    with pytest.warns(kv_tr.FitWarning, match="helmert needs 2 points, 1 are in use") as caught:
        few = good.exclude("A", "C")
    assert caught[0].filename == __file__ and few.outcome.trouble == "too_few_points"
    assert few.include("A").raise_for_trouble().outcome.succeeded


def test_the_summary_shows_type_figures_and_every_residual():
    shifted = GRID[:4] + [10, 20]
    shifted[2:] += [[0.3, -0.4], [1e-5, 1e-5]]
    ids = ["17.1", "two\x1b[2Jlines\n", 3, "é"]
    lines = kv_tr.fit(GRID[:4], shifted, "helmert3", ids=ids).exclude(3).summary().splitlines()
    assert "helmert3, 3 of 4 points in use" == lines[0] and lines[1].startswith("rms 0.000 m")
    assert lines[5].split() == ["17.1", "0.000", "0.000", "0.000"] and "-0.000" not in str(lines)
    assert lines[6].startswith("two_[2Jlines_ ") and len(lines) == 9
    assert lines[7].split() == ["3", "-0.300", "0.400", "0.500", "excluded"]


def test_built_in_transformations():
    t = kv_tr.Transformation.national("STG_EOV_10e")
    record = kv_tr.clsTr()
    record.udtTrPrmByDAT2M1 = kv_tr.TR_STG_EOV_10e
    assert t.type is kv_tr.Type.STG_EOV_10e and (*t.transform([7, 0.3]),) == record.TrXY(7, 0.3)
    metres, fathoms = kv_tr.Transformation.fathom_to_metre(), kv_tr.Transformation.metre_to_fathom()
    assert metres.transform([1, 10]) == pytest.approx([1.89648384, 18.9648384])
    assert fathoms.transform([1.89648384, 0]) == pytest.approx([1, 0], rel=1e-8)


def test_parameter_files_keep_what_they_can(tmp_path, result, messages):
    kv_tr.DecimalSeparator(",")  # of the published classes only
    t = result.transformation
    polynomial = result.type == "bilinear"
    near = pytest.approx(t.transform(GRID), abs=1e-3 if polynomial else 0.05)
    for name in ("town.ALL",) if polynomial else ("town.trp", "Town.Prm"):
        path = tmp_path / name
        t.save(path)
        loaded = kv_tr.Transformation.load(str(path), type=result.type)
        assert loaded.type is result.type and loaded.transform(GRID) == near
        path.write_text(path.read_text().replace(".", ","))
        with pytest.raises(kv_tr.FileError, match="decimal_comma=True"):
            kv_tr.Transformation.load(path)
        assert kv_tr.Transformation.load(path, decimal_comma=True) == loaded
    for name, complaint in (("town.trp" if polynomial else "town.all", "hold"), ("a.txt", "end")):
        with pytest.raises(ValueError, match=complaint):
            t.save(tmp_path / name)
    assert messages == [] and kv_tr.DecimalSeparator() == ","
    kv_tr.DecimalSeparator(".")


def raised(call, *arguments, **options):
    with pytest.raises(kv_tr.FileError) as error:
        call(*arguments, **options)
    assert vars(pickle.loads(pickle.dumps(error.value))) == vars(error.value)
    return error.value


def test_bad_files_say_which_line_and_why(tmp_path, messages):
    cases = {
        "poïnts.dat": ("A 1 2 3 4\n\nB 5 6 7\n", 3, "too few fields"),
        "2.dat": ("A 1 2 3 f\x1b\n", 1, r"no number: .* column 9, in 'A 1 2 3 f\\x1b'"),
        "3.dat": ("A 1 2 3 4\nB 1,5 2,5 3,5 4,5\n", 2, "decimal commas; decimal_comma=True"),
        "bad.trp": ("1 2\n3 x", 2, "six numbers"),
    }
    load, save = kv_tr.Transformation.load, kv_tr.Transformation.national("STG_HER").save
    for name, (text, line, cause) in cases.items():
        path = tmp_path / name
        path.write_text(text)
        error = raised(kv_tr.read_points if path.suffix == ".dat" else load, path)
        assert (error.file, error.line) == (str(path), line) and re.search(cause, error.cause)
        assert str(error) == f"{path}, line {line}: {error.cause}"
    assert "no such file" in raised(kv_tr.read_points, tmp_path / "none").cause
    save(tmp_path / "town.all")
    assert "poly5, not of poly2" in raised(load, tmp_path / "town.all", type="poly2").cause
    assert load(tmp_path / "town.all", type="STG_HER").type == "STG_HER"
    assert raised(save, tmp_path / "nowhere" / "town.all").line is None
    assert messages == []


def test_points_of_a_file_are_fitted_as_they_are(tmp_path):
    path = tmp_path / "points.dat"
    lines = [f"{i} {a[0]} {a[1]} {b[0]!r} {b[1]!r}" for i, a, b in zip(IDS, GRID, TARGET.tolist())]
    path.write_text("\r\n".join(lines) + "\r\n")
    points = kv_tr.read_points(path)
    result = kv_tr.fit(points, "bilinear")
    assert same(result, kv_tr.fit(GRID, TARGET, "bilinear")) and result.ids == tuple(IDS)
    path.write_text(path.read_text().replace(".", ","))
    assert kv_tr.read_points(path, decimal_comma=True) == points
    assert points != kv_tr.ControlPoints(points.ids, points.source, points.source)


def test_values_serve_many_threads():
    t, fits = kv_tr.fit(GRID, TARGET, "poly4").transformation, kv_tr.fit(GRID, TARGET, "affine5")
    many = np.random.default_rng(2).random((100_000, 2)) * 2500

    def work(_):
        return bits(t.transform(many)), same(kv_tr.fit(GRID, TARGET, "affine5"), fits)

    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        assert set(pool.map(work, range(20))) == {(bits(t.transform(many)), True)}


def test_texts_of_other_programs_keep_every_bit_and_refuse_what_they_cannot_hold(result):
    t = result.transformation
    assert t.to_text("json", source_crs="old").count("\n") > 10
    back = kv_tr.Transformation.from_text(t.to_text("json", axes="ne"))
    assert back == t and '"used": 30' in t.to_text("json")
    assert back.type == t.type and t.to_text("gcps").count("-gcp") == len(GRID)
    space = {}
    exec(t.to_text("python"), space)
    assert bits(np.column_stack(space["transform"](*GRID.T))) == bits(t.transform(GRID))
    proj = kv_tr.Transformation.from_text(t.to_text("proj", axes="ne,en"))
    assert bits(proj.transform(GRID)) == bits(t.transform(GRID))
    if t.type == "affine":
        assert kv_tr.Transformation.from_text("1 2 3 4 5 6", "world", "helmert").type == "helmert"
        with pytest.raises(ValueError, match="affine, not poly1"):
            kv_tr.Transformation.from_text(t.to_text("proj"), type="poly1")
    else:
        with pytest.raises(ValueError, match="six parameters only"):
            t.to_text("wkt2")
    for arguments, message in [(["kml"], "one of json, proj"), (["proj", "+proj=merc"], "merc")]:
        with pytest.raises(ValueError, match=message):
            kv_tr.Transformation.from_text(arguments[-1], arguments[0])
    for text in ["", "1 2 3 4 5 6", "nothing"]:
        with pytest.raises(ValueError, match="shows no format"):
            kv_tr.Transformation.from_text(text)
    with pytest.raises(ValueError, match="only written"):
        kv_tr.Transformation.from_text("x", "sql")
    with pytest.raises(ValueError, match="axes must be"):
        t.to_text("proj", axes="up")


def test_points_go_to_other_formats_and_back_with_their_marks(tmp_path):
    used = np.arange(len(GRID)) != 3
    points = kv_tr.ControlPoints(tuple(IDS), GRID, TARGET, np.full_like(TARGET, 0.02), used)
    for name in ("a.csv", "b.geojson"):
        kv_tr.write_points(tmp_path / name, points)
        assert kv_tr.read_points(tmp_path / name) == points
    assert kv_tr.fit(points, "affine").used.tolist() == used.tolist()
    with pytest.warns(UserWarning, match="identifiers|standard deviations"):
        kv_tr.write_points(tmp_path / "c.points", points)
    bare = kv_tr.read_points(tmp_path / "c.points", format="qgis")
    assert bits(bare.target) == bits(points.target) and bare.used.tolist() == used.tolist()
    kv_tr.write_points(tmp_path / "e.vrt", kv_tr.ControlPoints(tuple(IDS), GRID, TARGET), axes="ne,sw")
    maps, own = (kv_tr.read_points(tmp_path / "e.vrt", axes=axes) for axes in ("en", "ne,sw"))
    assert bits(maps.source) == bits(GRID[:, ::-1]) and bits(maps.target) == bits(-TARGET[:, ::-1])
    assert bits(own.source) == bits(GRID) and bits(own.target) == bits(TARGET)
    with pytest.raises(ValueError, match="axes must be"):
        kv_tr.read_points(tmp_path / "e.vrt", axes="up")
    for name, format, cause in (("a.txt", None, "ending"), ("a", "xls", "geojson"), ("d.wld", None, "two")):
        with pytest.raises(ValueError, match=cause):
            kv_tr.write_points(tmp_path / name, points, format)
    assert raised(kv_tr.write_points, tmp_path / "no" / "x.csv", points).line is None
    (tmp_path / "bad.csv").write_text("id;y1;x1;y2;x2\nA;1;2;3;4\nB;1;2;x;4\n")
    assert raised(kv_tr.read_points, tmp_path / "bad.csv").line == 3
