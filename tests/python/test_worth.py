"""What a fit is worth as Python shows it: shapes, undefined figures, ownership and errors."""

import concurrent.futures
import copy
import datetime
import hashlib
import json
import os
import pathlib
import pickle

import kv_tr
import numpy as np
import pytest
from conftest import run
from test_values import GRID, IDS, TARGET

CASES = pathlib.Path(__file__).parents[1] / "data" / "adjustment"


def case(name, **options):
    """A published case: what is known of it, and its fit."""
    known = json.loads((CASES / f"{name}.json").read_text())
    points = kv_tr.read_points(CASES / f"{name}.dat")
    if "excluded_ids" in known:
        options["used"] = [id not in known["excluded_ids"] for id in points.ids]
    return known, kv_tr.fit(points, known["type"], **options)


def test_the_statistics_are_those_published():
    known, result = case("swiss_helmert_9", sigma=np.full(9, 0.0002**0.5))
    reference, adjustment = known["reference"], result.adjustment
    facts = ("redundancy", "unknowns", "sum_pvv", "sigma0", "press", "aicc")
    near = lambda value: pytest.approx(value, rel=1e-6)
    assert [getattr(adjustment, f) for f in facts] == near([reference[f] for f in facts])
    assert [adjustment.loo, adjustment.global_test.p] == near(
        [reference["loo_rms"], reference["global_test"]["p_upper"]]
    )
    assert not adjustment.global_test.passes and result.sigma0 == 1
    for name, (value, sigma) in adjustment.derived.items():
        assert {"value": value, "sigma": sigma} == near(reference["derived"][name])
    row = {name: i for i, name in enumerate(adjustment.parameters.names)}
    for pair in ("dA1,dB2", "dB0,dB2"):
        cell = tuple(row[name] for name in pair.split(","))
        assert adjustment.correlations[cell] == near(reference["record_correlation"][pair])
    assert dict(zip(row, adjustment.parameters.sigmas)) == near(reference["record_sigma"])
    pairs = {"redundancy": "redundancy", "tau": "tau", "t": "t", "t_p": "p", "normalised": "w"}
    pairs |= {"gross_error": "loo", "mdb": "mdb"}
    for i, point in enumerate(reference["points"]):
        for name, column in pairs.items():
            expected = [point[f"{column}_{axis}"] for axis in ("first", "second")]
            assert getattr(adjustment.points, name)[i] == near(expected), name
        assert adjustment.points.cook[i] == near(point["cook"])
        assert adjustment.points.F[i] == near(point["omega"] / 2)  # sigma0 is known
    assert adjustment.critical.tau == near(reference["critical"]["tau_bonferroni"])
    at = [(p["y"], p["x"]) for p in reference["transformed"]]
    sigmas = [(p["sigma_first"], p["sigma_second"]) for p in reference["transformed"]]
    assert result.transformation.sigma(at) == near(np.array(sigmas))
    assert adjustment.suspect == "66.301" == result.warnings[0].point
    assert [w.id for w in result.warnings[:2]] == ["W8", "W9"]
    assert "66.301" in result.warnings[0].text and result.warnings[0].offer == "exclude"


def test_excluded_points_have_no_figures_and_options_stay():
    sigma = np.random.default_rng(3).uniform(0.01, 0.03, GRID.shape)
    options = {"solution": "accurate", "sigma": sigma, "sigma0": 2, "alpha": 0.01}
    result = kv_tr.fit(GRID, TARGET, "poly2", ids=IDS, **options).exclude("P3", "P17")
    assert (result.solution, result.sigma0, result.alpha) == ("accurate", 2, 0.01)
    assert np.array_equal(result.sigma, sigma) and result.adjustment.redundancy == 44
    for name, column in vars(result.adjustment.points).items():
        assert len(column) == 30 and not column.flags.writeable, name
        if name != "lever":
            known = np.isfinite(column).reshape(30, -1).all(axis=1)
            assert known.tolist() == result.used.tolist(), name
    assert result.adjustment.points.redundancy.shape == (30, 2)
    assert np.nansum(result.adjustment.points.redundancy) == pytest.approx(44)
    assert result.adjustment.returnable == ("P3", "P17")
    used = result.used
    direct = kv_tr.fit(kv_tr.ControlPoints(tuple(IDS), GRID, TARGET, sigma), "poly2", used=used)
    assert direct.sigma0 == 1 and direct.adjustment.sum_pvv == result.adjustment.sum_pvv


def test_statistics_are_those_of_weighted_least_squares_and_of_fits_without_a_point():
    sigma = np.random.default_rng(4).uniform(0.01, 0.05, GRID.shape)
    weighted = kv_tr.fit(GRID, TARGET, "affine", sigma=sigma)
    design = np.column_stack([np.ones(30), GRID])
    squares, values, variances = 0, [], []
    for axis in (0, 1):
        rows, target = design / sigma[:, axis, None], TARGET[:, axis] / sigma[:, axis]
        solution, rest, *_ = np.linalg.lstsq(rows, target, rcond=None)
        squares, values = squares + rest[0], [*values, *solution]
        variances += [*np.diag(np.linalg.inv(rows.T @ rows))]
    adjustment = weighted.adjustment
    assert adjustment.sum_pvv == pytest.approx(squares)
    assert adjustment.parameters.names == ("dA0", "dA1", "dA2", "dB0", "dB1", "dB2")
    assert adjustment.parameters.values == pytest.approx(values)
    expected = np.sqrt(np.array(variances) * squares / 54)
    assert adjustment.parameters.sigmas == pytest.approx(expected)
    plain = kv_tr.fit(GRID, TARGET, "affine")
    assert weighted.transformation == plain.transformation, "weights are for statistics only"
    assert weighted.statistics == plain.statistics and plain.sigma0 is None
    for i in (0, 7, 29):
        without = plain.exclude(i).residuals[i]
        assert plain.adjustment.points.gross_error[i] == pytest.approx(without, rel=1e-8)


def test_many_threads_may_ask_for_the_first_time():
    expected = kv_tr.fit(GRID, TARGET, "poly3")
    known = expected.adjustment.aicc, expected.warnings, expected.advice().best
    sigmas = expected.transformation.sigma(GRID)
    fits = [kv_tr.fit(GRID, TARGET, "poly3") for _ in range(5)]

    def ask(i):
        fit = fits[i % 5]
        same = np.array_equal(fit.transformation.sigma(GRID), sigmas)
        return same and (fit.adjustment.aicc, fit.warnings, fit.advice().best) == known

    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        assert all(pool.map(ask, range(40)))


def test_checks_tell_a_fit_that_is_not_the_least_squares_solution():
    good = kv_tr.fit(GRID, TARGET, "poly2")
    assert (good.check.level, good.check.rank, good.check.cause) == ("verified", 12, None)
    assert good.complaint == "" and good.check.sigma0 == pytest.approx(good.adjustment.sigma0)
    with pytest.warns(kv_tr.FitWarning, match="not to be trusted: The computed") as caught:
        known, bad = case("truth_corner_poly5")
    assert len(caught) == 1 and bad.outcome.succeeded and bad.check.level == "severe"
    assert bad.check.e_hull == pytest.approx(known["error_of_the_default_m"], rel=0.5)
    first = bad.warnings[0]
    assert (first.id, first.name, first.severity) == ("W1", "inexact", "severe")
    assert first.numbers["error_m"] == bad.check.e_hull and first.text == bad.complaint
    with pytest.raises(kv_tr.FitError, match="least-squares"):
        bad.raise_for_trouble()
    assert case("truth_corner_poly5", solution="accurate")[1].check.level != "severe"
    with pytest.warns(kv_tr.FitWarning):
        ring = case("truth_ring_poly5")[1]
    assert ring.check.cause.kind == "curve" and ring.check.cause.order == 2


def test_advice_names_types_by_their_words():
    advice = case("greek_orders_15")[1].advice()
    assert advice.best == advice.advised == "poly2" and advice.simplest_passing is None
    rows = {row.type: row for row in advice.types}
    assert rows["poly2"].loo < rows["affine"].loo and rows["poly2"].eligible


def test_sigmas_of_points_have_the_shape_of_the_points():
    t = kv_tr.fit(GRID, TARGET, "affine5").transformation
    sigma, covariance = t.sigma(GRID), t.covariance(GRID)
    assert sigma.shape == (30, 2) and covariance.shape == (30, 2, 2) and (sigma > 0).all()
    assert np.sqrt(np.diagonal(covariance, axis1=1, axis2=2)) == pytest.approx(sigma, rel=1e-12)
    assert np.array_equal(covariance, covariance.transpose(0, 2, 1))
    assert np.array_equal(t.sigma(GRID[4]), sigma[4]) and t.covariance(GRID[4]).shape == (2, 2)
    assert t.sigma([]).shape == (0, 2)
    inside = t.extrapolation(GRID)
    assert (inside.count, inside.farthest, inside.is_far) == (0, 0, False)
    far = t.extrapolation([[1000, 1000], [2500, 7000], [2600, 100]])
    assert (far.count, far.farthest, far.is_far) == (2, 5000, True)
    assert far.sigma == pytest.approx(np.sqrt(np.linalg.eigvalsh(t.covariance([2500, 7000]))[-1]))
    exact = [kv_tr.fit(GRID[:2], TARGET[:2], "helmert", sigma0=s) for s in (None, 0.02)]
    assert np.isnan(exact[0].transformation.sigma(GRID)).all()
    assert exact[1].transformation.sigma(GRID[:2]) == pytest.approx(np.full((2, 2), 0.02))
    loaded = kv_tr.Transformation(t.type, t.a, t.b)
    for call in (loaded.sigma, loaded.covariance, loaded.extrapolation):
        with pytest.raises(ValueError, match="no fit made this transformation"):
            call(GRID)
    with pytest.raises(ValueError, match=r"xy\[1, 0\] is nan"):
        t.sigma([[0, 0], [np.nan, 0]])


@pytest.mark.filterwarnings("ignore::kv_tr.FitWarning")
@pytest.mark.parametrize("kind", ["helmert", "affine", "affine5", "poly3"])
@pytest.mark.parametrize("points", [np.zeros((0, 2)), GRID[:1], np.ones((9, 2)), GRID[:5]])
def test_what_is_undetermined_is_not_a_number(kind, points):
    result = kv_tr.fit(points, points, kind)
    if points is not GRID[:5] and len(np.unique(points, axis=0)) < 2:
        assert not result.adjustment.determined and np.isnan(result.adjustment.sigma0)
        assert np.isnan(result.adjustment.points.tau).all()
        assert result.adjustment.parameters.names == () and result.advice().best is None
    if result.outcome.trouble in ("no_points", "no_start"):
        assert result.warnings == () and result.check.level == "severe"
    else:
        assert result.transformation.sigma(GRID).shape == GRID.shape


def test_what_a_fit_is_worth_is_a_value():
    result = kv_tr.fit(GRID, TARGET, "bilinear", ids=IDS, sigma=0.02)
    before = pickle.dumps(result)
    expected = result.transformation.sigma(GRID)
    result.adjustment, result.warnings
    for again in (pickle.loads(before), pickle.loads(pickle.dumps(result)), copy.deepcopy(result)):
        assert again.check == result.check and again.advice() == pytest.approx(again.advice())
        assert again.warnings == result.warnings and again.adjustment.aicc == result.adjustment.aicc
        assert np.array_equal(again.transformation.sigma(GRID), expected)
        assert again.exclude("P1").sigma0 == 0.02 and not again.source.flags.writeable
    t = pickle.loads(pickle.dumps(result.transformation))
    assert np.array_equal(t.sigma(GRID), expected)
    for holder in (result.check, result.adjustment, result.adjustment.points):
        with pytest.raises(AttributeError):
            holder.sigma0 = 0
    with pytest.raises(ValueError):
        result.source.resize((1, 2), refcheck=False)


NAN = float("nan")
REFUSED = [
    ({"sigma": 0}, "sigma is 0.0; standard deviations must be positive"),
    ({"sigma": NAN}, "sigma is nan; standard"),
    ({"sigma": [0.1] * 29 + [-1]}, r"sigma\[29\] is -1.0; standard"),
    ({"sigma": [[0.1, 0.1]] * 29 + [[0.1, NAN]]}, r"sigma\[29, 1\] is nan"),
    ({"sigma": [0.1] * 29}, r"shape \(30,\) or \(30, 2\), not \(29,\)"),
    ({"sigma": [[0.1, 0.2]] * 30}, "helmert3 share unknowns"),
    ({"sigma": 0.1, "sigma0": 1}, "single sigma is the sigma0"),
    ({"sigma0": 1e-200}, "sigma0 is 1e-200; standard"),
    ({"alpha": 1}, "alpha must lie between"),
    ({"solution": "best"}, "'documented' or 'accurate', not 'best'"),
]


@pytest.mark.parametrize("options, words", REFUSED)
def test_bad_accuracy_is_refused(options, words):
    with pytest.raises(ValueError, match=words):
        kv_tr.fit(GRID, TARGET, "helmert3", **options)


def test_files_bring_standard_deviations(tmp_path):
    path = tmp_path / "points.dat"
    rows = zip(IDS, GRID, TARGET.tolist())
    lines = [f"{i} {a[0]} {a[1]} {b[0]!r} {b[1]!r} 0.02 0.03" for i, a, b in rows]
    path.write_text("\n".join([*lines, "X 1 2 3 4 0.05"]))
    points = kv_tr.read_points(path, sigmas=True)
    assert points.sigma.tolist() == [[0.02, 0.03]] * 30 + [[0.05, 0.05]]
    assert kv_tr.read_points(path).sigma is None and kv_tr.read_points(path) != points
    assert kv_tr.fit(points, "affine").sigma.tolist() == points.sigma.tolist()
    with pytest.raises(TypeError, match="give no sigma"):
        kv_tr.fit(points, "affine", sigma=1)
    path.write_text("A 1 2 3 4\n")
    with pytest.raises(kv_tr.FileError, match="line 1: .*standard deviations"):
        kv_tr.read_points(path, sigmas=True)


def test_reports_are_written_whole_in_the_language_of_the_component(tmp_path, monkeypatch):
    monkeypatch.setenv("SOURCE_DATE_EPOCH", "86400")
    points, path = CASES / "swiss_helmert_9.dat", tmp_path / "r.html"
    result = kv_tr.fit(kv_tr.read_points(points), "helmert", solution="accurate", sigma0=0.02)
    result.report(path, date=datetime.date(2026, 5, 31), limit=0.0625, files=[points])
    html = path.read_text(encoding="utf-8")
    checksum = hashlib.sha256(points.read_bytes()).hexdigest()
    told = ["2026-05-31", "0.0625 m", points.name, checksum, "W8: Point 66.301"]
    told += ["Accurate solution", "Global test", kv_tr.__version__]
    assert [text for text in told if text not in html] == []
    kv_tr.install_platform(settings={}, language=1038)
    kv_tr.fit(GRID, TARGET, "affine", ids=[("a", i) for i in range(30)]).report(os.fsencode(path))
    html = path.read_text(encoding="utf-8")
    assert all(text in html for text in ('lang="hu"', "1970-01-02", "('a', 7)"))
    try:
        result.report(tmp_path / "r.pdf", date="2026-05-31")
        assert (tmp_path / "r.pdf").read_bytes().startswith(b"%PDF")
    except ValueError as error:
        assert "built without PDF" in str(error)
    refused = [({"path": tmp_path / "r.txt"}, ValueError), ({"date": "2026-02-30"}, ValueError)]
    refused += [({"date": 5}, TypeError), ({"files": "x"}, TypeError), ({"limit": "1"}, TypeError)]
    refused += [({"limit": NAN}, ValueError), ({"limit": -1}, ValueError)]
    refused += [({"path": tmp_path / "no" / "r.html"}, OSError), ({"files": ["no"]}, OSError)]
    for options, error in refused:
        with pytest.raises(error):
            result.report(**{"path": path, **options})
    with pytest.warns(kv_tr.FitWarning), pytest.raises(kv_tr.FitError):
        kv_tr.fit(GRID[:0], TARGET[:0], "affine").report(path)
    assert path.read_text(encoding="utf-8") == html and not list(tmp_path.glob(".kv_tr*"))


def test_texts_are_in_the_language_of_the_component():
    fits = [kv_tr.fit(GRID[[0, 1, 5]], TARGET[[0, 1, 5]], "affine") for _ in range(2)]
    assert fits[0].warnings[0].text.startswith("No point is in surplus")
    kv_tr.install_platform(settings={}, language=1038)
    assert fits[1].warnings[0].text != fits[0].warnings[0].text
    alone = "import kv_tr; p = [[0, 0], [1, 2]]; print(kv_tr.fit(p, p, 'helmert').warnings[0].text)"
    assert run("-c", alone).startswith("No point is in surplus")
