"""Fits of arrays of control points, and their results."""

import os
import typing
import warnings
from dataclasses import dataclass

import numpy as np

from kv_tr import _kv_tr
from kv_tr._errors import FitError, FitWarning
from kv_tr._kv_tr import FitTrouble


@dataclass(frozen=True, eq=False)
class ControlPoints:
    """Points that are known in two systems, as fit takes them.

    ids     their identifiers, in the order of the rows
    source  coordinates in the source system, shape (n, 2), metres
    target  coordinates in the target system, likewise
    """

    __module__ = "kv_tr"

    ids: tuple
    source: np.ndarray
    target: np.ndarray

    def __len__(self):
        return len(self.ids)

    def __eq__(self, other):
        if not isinstance(other, ControlPoints):
            return NotImplemented
        same = np.array_equal(self.source, other.source), np.array_equal(self.target, other.target)
        return self.ids == other.ids and all(same)

    def __repr__(self):
        return f"<kv_tr.ControlPoints, {len(self)} points>"


def read_points(path, decimal_comma=False):
    """Reads a file of control points: a ControlPoints.

    A line has an identifier and four coordinates: first and second in the source system, then in
    the target system, metres. Blanks, tabs, commas, semicolons and quotes separate them; with
    decimal_comma a comma is a decimal sign. FileError, with file, line and cause, for a file that
    does not open and for a line that is none such, and for numbers that seem to have decimal
    commas when they should not: read as separators, these would give other numbers.
    """
    return ControlPoints(*_kv_tr._read_points(os.fspath(path), bool(decimal_comma)))


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
    _transformation: "_kv_tr.Transformation | None"

    @property
    def transformation(self):
        """The Transformation. FitError when nothing was computed."""
        if self._transformation is None:
            raise FitError(self)
        return self._transformation

    @property
    def complaint(self):
        """What is wrong with the fit, as a sentence; empty when nothing is."""
        trouble = self.outcome.trouble
        if trouble is FitTrouble.TOO_FEW_POINTS:
            needed = _kv_tr._minimum_points(self.type)
            in_use = np.count_nonzero(self.used)
            return f"{self.type} needs {needed} points, {in_use} are in use"
        return {
            FitTrouble.NONE: "",
            FitTrouble.NO_POINTS: "there are no points",
            FitTrouble.NO_START: f"{self.type} cannot begin: the first point lies on the centroid",
            FitTrouble.SINGULAR: f"the points in use do not determine {self.type}",
            FitTrouble.NOT_CONVERGED: f"{self.type} did not converge",
        }[trouble]

    def raise_for_trouble(self):
        """Raises FitError when the fit is not to be trusted; returns the result otherwise."""
        if not self.outcome.succeeded:
            raise FitError(self)
        return self

    def exclude(self, *ids):
        """A new result of the same type without some points, by their identifiers.

        Every point of an identifier is meant. KeyError, with its name, for one that no point has.
        The type stays: a fit with too few points left has that as its trouble, and warns.
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
        fitted = _kv_tr._fit(self.source, self.target, used, self.type)
        return _result(fitted, self.ids, stacklevel=4)

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

    def _in_short(self):
        text = f"{self.type}, {np.count_nonzero(self.used)} of {len(self.used)} points in use"
        return text if self.outcome.succeeded else f"{text}, NOT TO BE TRUSTED: {self.complaint}"

    def __repr__(self):
        return f"<kv_tr.FitResult {self._in_short()}, rms {self.statistics.rms:.3f} m>"


_TROUBLES = tuple(FitTrouble)
Statistics.__module__ = FitOutcome.__module__ = "kv_tr"


def fit(source, target=None, type=None, *, ids=None, used=None):
    """Fits a transformation of a type to control points by unweighted least squares.

        kv_tr.fit(source, target, "poly2")
        kv_tr.fit(kv_tr.read_points("points.dat"), "affine")

    source, target  coordinates of shape (n, 2), metres; anything numpy makes such arrays of
    type            'helmert', 'affine', 'helmert3', 'affine5', 'bilinear', 'poly1' to 'poly5', or
                    a Type or enuTR_TYPE
    ids             an identifier a point, anything hashable; otherwise the rows' numbers from 0
    used            a bool a point, whether the fit takes it; otherwise all

    The FitResult has the transformation, residuals and figures. A fit that is not to be trusted
    warns (FitWarning) and says so in its outcome; raise_for_trouble() of the result raises. Bad
    input is ValueError or TypeError: other shapes, coordinates that are not finite, types that
    cannot be fitted. Other threads run meanwhile.
    """
    if isinstance(source, ControlPoints):
        if ids is not None or (target is not None and type is not None):
            raise TypeError("ControlPoints have target and ids: give type and used only")
        type = target if type is None else type
        ids, target, source = source.ids, source.target, source.source
    elif target is None or type is None:
        raise TypeError("fit needs source, target and type, or ControlPoints and type")
    fitted = _kv_tr._fit(source, target, used, type)
    return _result(fitted, _ids(ids, len(fitted[3])), stacklevel=3)


def _ids(given, count):
    if given is None:
        return range(count)
    if isinstance(given, (str, bytes)):
        raise TypeError("ids must be a sequence with an identifier a point, not one text")
    ids = tuple(given.tolist() if hasattr(given, "tolist") else given)
    if len(ids) != count:
        raise ValueError(f"there are {count} points, ids has {len(ids)}")
    return ids


def _result(fitted, ids, stacklevel):
    type, *arrays, transformation, residuals, figures, trouble, converged, singular = fitted
    result = FitResult(
        type,
        ids,
        *arrays,
        residuals,
        Statistics(*figures),
        FitOutcome(_TROUBLES[trouble], converged, singular),
        transformation,
    )
    if not result.outcome.succeeded:
        text = f"this fit is not to be trusted: {result.complaint}"
        warnings.warn(text, FitWarning, stacklevel=stacklevel)
    return result


def _printable(id):
    return "".join(letter if letter.isprintable() else "_" for letter in str(id))


def _metres(value):
    text = f"{value:.3f}"
    return "0.000" if text == "-0.000" else text
