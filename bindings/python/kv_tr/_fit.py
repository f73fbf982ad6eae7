"""Fits of arrays of control points, and their results."""

import datetime
import hashlib
import os
import typing
import warnings
from dataclasses import dataclass

import numpy as np

from kv_tr import _kv_tr
from kv_tr._errors import FitError, FitWarning
from kv_tr._kv_tr import FitTrouble
from kv_tr._worth import TruthCheck


@dataclass(frozen=True, eq=False)
class ControlPoints:
    """Points that are known in two systems, as fit takes them.

    ids     their identifiers, in the order of the rows
    source  coordinates in the source system, shape (n, 2), metres
    target  coordinates in the target system, likewise
    sigma   standard deviations of the target coordinates, likewise, or None
    used    which points fits take, shape (n,), or None for all of them
    """

    __module__ = "kv_tr"

    ids: tuple
    source: np.ndarray
    target: np.ndarray
    sigma: "np.ndarray | None" = None
    used: "np.ndarray | None" = None

    def __len__(self):
        return len(self.ids)

    def __eq__(self, other):
        if not isinstance(other, ControlPoints):
            return NotImplemented
        arrays = [(p.source, p.target, p.sigma, p.used) for p in (self, other)]
        return self.ids == other.ids and all(map(np.array_equal, *arrays))

    def __repr__(self):
        return f"<kv_tr.ControlPoints, {len(self)} points>"


def read_points(path, decimal_comma=False, sigmas=False, format=None, *, axes="en"):
    """Reads a file of control points: a ControlPoints.

    The format is recognised by the content, or is one of 'listing', 'csv', 'qgis', 'gcp', 'vrt',
    'link', 'cad', 'grass' and 'geojson'; docs/file-formats.md describes them. A line of a listing has
    an identifier and four coordinates: first and second in the source system, then in the target
    system, metres. With sigmas it goes on with the standard deviation of the target coordinates, or
    with one for each of them, metres, which become the points' sigma; columns that a header names
    so do in any case. Blanks, tabs, commas, semicolons and quotes separate fields; with
    decimal_comma a comma is a decimal sign. Points that the file marks as not used have False in
    used. Formats other than listings and CSV have map coordinates (of GeoJSON the target only): axes
    tells where the first and the second coordinate of the points shall point to, as for
    Transformation.to_text. FileError, with file, line and cause, for a file that does not open and for a line that
    does not belong to the format, and for a listing whose numbers seem to have decimal commas when
    they should not: read as separators, these would give other numbers.
    """
    read = _kv_tr._read_points(os.fspath(path), bool(decimal_comma), bool(sigmas), format or "", axes)
    return ControlPoints(*read)


def write_points(path, points, format=None, *, axes="en"):
    """Writes a ControlPoints in one of the formats of read_points.

    Without a format the ending of the name tells it (.dat, .csv, .points, .vrt, .wld, .geojson).
    Each number is the shortest text that reads back to the same double. What a format cannot hold
    (points that are not used, identifiers, standard deviations) is left out with a UserWarning.
    axes is as for read_points. FileError for a file that cannot be written, which then stays as it was.
    """
    count = len(points)
    source, target = np.ascontiguousarray(points.source, float), np.ascontiguousarray(points.target, float)
    sigma = points.sigma
    if sigma is not None:
        sigma = np.asarray(sigma, float)
        sigma = np.ascontiguousarray(np.broadcast_to(sigma.reshape(count, -1), (count, 2)))
    if source.shape != (count, 2) or target.shape != (count, 2):
        raise ValueError(f"source and target must have the shape ({count}, 2)")
    used = [] if points.used is None else np.asarray(points.used, bool).tolist()
    if used and len(used) != count:
        raise ValueError(f"there are {count} points, used has {len(used)}")
    ids = [str(each) for each in points.ids]
    name = os.fspath(path)
    for lost in _kv_tr._write_points(name, ids, source, target, used, sigma, format or "", axes):
        warnings.warn(f"{name}: {lost}", UserWarning, stacklevel=2)


class Statistics(typing.NamedTuple):
    """Accuracy figures over the points in use, metres of the target system.

    Root mean squares have the number of points in use less one as divisor; rms is that of a point,
    rms² = rms_first² + rms_second². The means are those of the residuals.
    """

    rms: float
    rms_first: float
    rms_second: float
    mean_first: float
    mean_second: float


class FitOutcome(typing.NamedTuple):
    """What became of a fit.

    trouble           a FitTrouble; it equals its word, 'none' or 'singular'
    converged         whether the passes of helmert3 or affine5 sufficed
    singular_systems  how many systems of equations had no solution
    """

    trouble: FitTrouble
    converged: bool
    singular_systems: int

    @property
    def succeeded(self):
        """Whether there is no trouble, so that the result may be trusted."""
        return self.trouble is FitTrouble.NONE


@dataclass(frozen=True, eq=False, repr=False)
class FitResult:
    """A fit: what went in, what came out and how good it is. It never changes.

    type        the Type that was fitted
    ids         the identifiers, in the order of the rows
    source      coordinates in the source system, shape (n, 2), metres, read-only
    target      coordinates in the target system, likewise
    used        whether the fit took each point, shape (n,)
    residuals   computed minus measured target coordinates, shape (n, 2), metres; excluded points
                have them too; nan where nothing was computed
    statistics  a Statistics; nan where nothing was computed
    outcome     a FitOutcome: look at it, or call raise_for_trouble, before you use the rest
    check       a TruthCheck: whether the transformation is the least-squares solution
    solution    'documented' or 'accurate'
    sigma       standard deviations of the target coordinates, shape (n, 2), metres, read-only, or
                None where none were given for each point
    sigma0      the standard deviation of unit weight when it is known beforehand, or None
    alpha       the level of the tests

    What takes longer is computed when it is asked for first: adjustment, warnings and advice().
    """

    __module__ = "kv_tr"

    type: _kv_tr.Type
    ids: tuple
    source: np.ndarray
    target: np.ndarray
    used: np.ndarray
    residuals: np.ndarray
    statistics: Statistics
    outcome: FitOutcome
    check: TruthCheck
    solution: str
    sigma: "np.ndarray | None"
    sigma0: "float | None"
    alpha: float
    _transformation: "_kv_tr.Transformation | None"
    _points: "_kv_tr._FittedPoints"

    @property
    def adjustment(self):
        """The statistics of the fit, an Adjustment: sigma0, parameters, tests of every point."""
        return self._once("_adjustment", lambda: _kv_tr._assess(self._points, self.ids))

    @property
    def warnings(self):
        """What a user must know about the fit, a tuple of Finding, the gravest first.

        Their texts are in the language that the component has when they are asked for first. There
        are none where nothing was computed: the outcome says why.
        """
        return self._once("_warnings", lambda: self._found(only_checked=False))

    def advice(self):
        """Which type the points in use warrant, a TypeAdvice; the fit stays as it is."""
        return self._once("_advice", lambda: _kv_tr._advise(self._points))

    def _once(self, name, compute):
        """What is computed when it is asked for first, and kept."""
        if name not in self.__dict__:
            self.__dict__[name] = compute()
        return self.__dict__[name]

    def __setstate__(self, state):
        self.__dict__.update(state)
        for name in ("source", "target", "used", "sigma"):  # copies may be changed, these not
            self.__dict__[name] = getattr(self._points, name)
        self.residuals.flags.writeable = False

    def _found(self, only_checked):
        if self._transformation is None:
            return ()
        accurate, converged = self.solution == "accurate", self.outcome.converged
        fit = self._points, self._transformation, converged, accurate, self.ids
        return _kv_tr._warnings(*fit, only_checked)

    @property
    def transformation(self):
        """The Transformation. FitError when nothing was computed."""
        if self._transformation is None:
            raise FitError(self)
        return self._transformation

    @property
    def complaint(self):
        """Why the fit is not to be trusted, as a sentence; empty when it may be.

        That is the trouble of its outcome, otherwise the texts of its severe warnings.
        """
        if not self._is_bad():
            return ""
        trouble = self.outcome.trouble
        if trouble is FitTrouble.NONE:
            found = self._found(only_checked=True)
            return " ".join(finding.text for finding in found if finding.severity == "severe")
        if trouble is FitTrouble.TOO_FEW_POINTS:
            needed = _kv_tr._minimum_points(self.type)
            in_use = np.count_nonzero(self.used)
            return f"{self.type} needs {needed} points, {in_use} are in use"
        return {
            FitTrouble.NO_POINTS: "there are no points",
            FitTrouble.NO_START: f"{self.type} cannot begin: the first point lies on the centroid",
            FitTrouble.SINGULAR: f"the points in use do not determine {self.type}",
            FitTrouble.NOT_CONVERGED: f"{self.type} did not converge",
        }[trouble]

    def raise_for_trouble(self):
        """Raises FitError when the fit is not to be trusted; returns the result otherwise."""
        if self._is_bad():
            raise FitError(self)
        return self

    def _is_bad(self):
        severe = self.check.undetermined or self.check.level == "severe"
        return severe or not self.outcome.succeeded

    def exclude(self, *ids):
        """A new result of the same type without some points, by their identifiers.

        Every point of an identifier is meant. KeyError, with its name, for one that no point has.
        Type, solution, standard deviations and alpha stay: a fit with too few points left has that as its trouble, and warns.
        """
        return self._with(ids, False)

    def include(self, *ids):
        """A new result that takes excluded points back; identifiers as in exclude."""
        return self._with(ids, True)

    def _with(self, ids, use):
        known = set(self.ids)
        for id in ids:
            if id not in known:
                raise KeyError(f"no control point has the identifier {id!r}")
        wanted = set(ids)
        chosen = np.array([id in wanted for id in self.ids], dtype=bool)
        used = np.where(chosen, use, self.used)
        points = _kv_tr._FittedPoints(
            self.source, self.target, used, self.type, self.sigma, self.sigma0, self.alpha
        )
        return _result(points, self.ids, self.solution, stacklevel=4)

    def summary(self):
        """Type, figures and residuals as a table, metres with three decimals."""
        rows = [("point", "first", "second", "length", "")]
        for id, (first, second), used in zip(self.ids, self.residuals.tolist(), self.used):
            figures = map(_metres, (first, second, np.hypot(first, second)))
            rows.append((_printable(id), *figures, "" if used else "excluded"))
        widths = [max(map(len, column)) for column in zip(*rows)]
        lines = [
            f"{id:<{widths[0]}}  {first:>{widths[1]}}  {second:>{widths[2]}}"
            f"  {length:>{widths[3]}}  {note}".rstrip()
            for id, first, second, length, note in rows
        ]
        s = self.statistics
        head = [
            self._in_short(),
            f"rms {s.rms:.3f} m, first {s.rms_first:.3f}, second {s.rms_second:.3f}",
            f"mean residual first {_metres(s.mean_first)}, second {_metres(s.mean_second)}",
        ]
        return "\n".join([*head, "", *lines])

    def report(self, path, *, date=None, limit=None, files=()):
        """Writes the report of the adjustment, which a surveyor signs, as .html or .pdf.

            result.report("report.html", limit=0.05, files=["points.dat"])

        date   a datetime.date or "YYYY-MM-DD"; otherwise today, or the day of SOURCE_DATE_EPOCH
        limit  residuals that reach it are marked, metres
        files  the paths that the points come from; the report has their names and SHA-256

        The texts are in the language of the component, the identifiers those of the result. An
        older file is replaced when the new one is complete. ValueError for another ending, for
        .pdf where the package was built without it, and for what is no date or limit; FitError
        when nothing was computed; OSError when a file cannot be read or written.
        """
        if self._transformation is None:
            raise FitError(self)
        if isinstance(files, (str, bytes, os.PathLike)):
            raise TypeError("files must be a sequence of paths, not one path")
        _kv_tr._report(
            self._points,
            [str(id) for id in self.ids],
            self.solution == "accurate",
            os.fspath(path),
            _day(date),
            limit,
            [_named(file) for file in files],
        )

    def _in_short(self):
        text = f"{self.type}, {np.count_nonzero(self.used)} of {len(self.used)} points in use"
        return f"{text}, NOT TO BE TRUSTED: {self.complaint}" if self._is_bad() else text

    def __repr__(self):
        return f"<kv_tr.FitResult {self._in_short()}, rms {self.statistics.rms:.3f} m>"


_TROUBLES = tuple(FitTrouble)
Statistics.__module__ = FitOutcome.__module__ = "kv_tr"


def fit(
    source,
    target=None,
    type=None,
    *,
    ids=None,
    used=None,
    solution="documented",
    sigma=None,
    sigma0=None,
    alpha=0.05,
):
    """Fits a transformation of a type to control points by unweighted least squares.

        kv_tr.fit(source, target, "poly2")
        kv_tr.fit(kv_tr.read_points("points.dat"), "affine", sigma=0.02)

    source, target  coordinates of shape (n, 2), metres; anything numpy makes such arrays of
    type            'helmert', 'affine', 'helmert3', 'affine5', 'bilinear', 'poly1' to 'poly5', or
                    a Type or enuTR_TYPE
    ids             an identifier a point, anything hashable; otherwise the rows' numbers from 0
    used            a bool a point, whether the fit takes it; otherwise all
    solution        'documented', that of normal equations, or 'accurate', that of an orthogonal
                    factorisation, for points that the former loses digits with
    sigma           how exact target coordinates are known to be, metres: one number for all, or
                    standard deviations of shape (n,) or (n, 2), excluded points' included
    sigma0          the standard deviation of unit weight when it is known: with an array of sigma
                    1 unless given, otherwise metres, the same as a single sigma
    alpha           the probability that the tests blame any of all points wrongly

    The FitResult has the transformation, residuals and figures. sigma, sigma0 and alpha are for
    its adjustment, warnings and advice: an array of sigma weights those, and what transformation
    .sigma says, but never the transformation itself.

    A fit that is not to be trusted, for its outcome or a severe warning, warns (FitWarning) and
    says why in its complaint; raise_for_trouble() of the result raises. Bad input is ValueError or
    TypeError: other shapes, coordinates that are not finite, types that cannot be fitted, standard
    deviations that are not positive or that differ within a point where the coordinates of the
    type share unknowns. Other threads run meanwhile.
    """
    if isinstance(source, ControlPoints):
        if ids is not None or (target is not None and type is not None):
            raise TypeError("ControlPoints have target and ids: give type and used only")
        if source.sigma is not None:
            if sigma is not None:
                raise TypeError("these ControlPoints have standard deviations: give no sigma")
            sigma = source.sigma
        used = source.used if used is None else used
        type = target if type is None else type
        ids, target, source = source.ids, source.target, source.source
    elif target is None or type is None:
        raise TypeError("fit needs source, target and type, or ControlPoints and type")
    points = _kv_tr._FittedPoints(source, target, used, type, sigma, sigma0, alpha)
    return _result(points, _ids(ids, len(points.used)), solution, stacklevel=3)


def _ids(given, count):
    if given is None:
        return range(count)
    if isinstance(given, (str, bytes)):
        raise TypeError("ids must be a sequence with an identifier a point, not one text")
    ids = tuple(given.tolist() if hasattr(given, "tolist") else given)
    if len(ids) != count:
        raise ValueError(f"there are {count} points, ids has {len(ids)}")
    return ids


def _result(points, ids, solution, stacklevel):
    fitted = _kv_tr._fit(points, solution)
    transformation, residuals, figures, trouble, converged, singular, check = fitted
    result = FitResult(
        points.type,
        ids,
        points.source,
        points.target,
        points.used,
        residuals,
        Statistics(*figures),
        FitOutcome(_TROUBLES[trouble], converged, singular),
        check,
        solution,
        points.sigma,
        points.sigma0,
        points.alpha,
        transformation,
        points,
    )
    if result._is_bad():
        text = f"this fit is not to be trusted: {result.complaint}"
        warnings.warn(text, FitWarning, stacklevel=stacklevel)
    return result


def _day(date):
    """A date as text, which a text already is."""
    if isinstance(date, datetime.datetime):
        date = date.date()
    if isinstance(date, datetime.date):
        return date.isoformat()
    if date is None or isinstance(date, str):
        return date
    raise TypeError(f"date must be a datetime.date or a text, not {type(date).__name__}")


def _named(path):
    """The name of a file, without its folder, and its SHA-256."""
    with open(path, "rb") as file:
        checksum = hashlib.sha256(file.read()).hexdigest()
    return os.path.basename(os.fsdecode(path)), checksum


def _printable(id):
    return "".join(letter if letter.isprintable() else "_" for letter in str(id))


def _metres(value):
    text = f"{value:.3f}"
    return "0.000" if text == "-0.000" else text
