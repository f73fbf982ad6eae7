"""What a fit is worth: its check, its statistics, its warnings, and the types compared.

Lengths are metres of the target system, angles radians. Figures that are not defined, because
there is no redundancy or no control, are nan. The statistics are those of the accurate
least-squares solution, with the weights that the fit was given standard deviations for.
"""

import typing
from dataclasses import dataclass

import numpy as np

from kv_tr import _kv_tr


@dataclass(frozen=True)
class WeakGeometry:
    """What is wrong with the places of the points in use.

    kind      'places' (only count distinct ones), 'curve' (all near one curve), 'groups' (they
              stand in count groups), 'few_points' (few, badly spread) or 'spread'
    order     of the curve: 1 a line, 2 a conic; 0 for other kinds, as the following
    count     distinct places, or groups
    needed    how many places the type has coefficients for
    distance  the median distance from the curve, metres
    """

    __module__ = "kv_tr"

    kind: str
    order: int
    count: int
    needed: int
    distance: float


@dataclass(frozen=True)
class TruthCheck:
    """Whether a transformation is the least-squares solution, found by an independent method.

    level             'verified' (off by at most 1e-6 m), 'note' (at most 1e-4 m), 'warning' (digits
                      that are shown are affected) or 'severe' (not to be used)
    e_points          the greatest distance from the solution at points in use, metres
    e_hull            the same anywhere in the area that they span
    evaluation_noise  what rounding makes of the terms of the coefficients, metres
    condition         that of the scaled design
    rank              how many of the unknowns the points determine
    unknowns          of both coordinates together
    redundancy        twice the points in use, less the rank
    sigma0            of one coordinate, metres; nan without redundancy
    hull_factor       the greatest standard deviation of an image in the area, over sigma0
    weakest           where that is, source coordinates
    undetermined      whether unknowns are lost, or determined by rounding only
    other_minimum     whether 'helmert3' or 'affine5' missed a smaller sum of squares
    origin_distance   of the centroid of all points from that of those in use, in half extents
    cause             a WeakGeometry when unknowns are lost or hull_factor is above 10, or None

    What could not be computed is inf. Weights do not enter: the fit has none.
    """

    __module__ = "kv_tr"

    level: str
    e_points: float
    e_hull: float
    evaluation_noise: float
    condition: float
    rank: int
    unknowns: int
    redundancy: int
    sigma0: float
    hull_factor: float
    weakest: tuple
    undetermined: bool
    other_minimum: bool
    origin_distance: float
    cause: "WeakGeometry | None"


@dataclass(frozen=True)
class Finding:
    """A warning of a fit as data.

    id            'W1', 'W3a', ...; 'N1' and 'N2' are notes
    name          'inexact', 'undetermined', 'no_redundancy', 'weak', 'fold', 'near_fold',
                  'between', 'record', 'outlier', 'global_test', 'order' or 'not_checked'
    severity      'note', 'warning' or 'severe'
    text          in the language of the component, in English before that has one
    numbers       the figures of the text by their names, metres where the name ends in _m
    cause         'origin', 'conditioned', 'iteration', 'other_minimum', 'geometry' or None
    geometry      a WeakGeometry when that is the cause, or None
    place         source coordinates, or None
    point         the identifier of a point, or None
    offer         what would help: 'accurate' (the other solution), 'type', 'exclude' (the point),
                  'delete_excluded' (fit without the excluded points at all) or None
    offered_type  the Type that is offered, or None
    """

    __module__ = "kv_tr"

    id: str
    name: str
    severity: str
    text: str
    numbers: dict
    cause: "str | None"
    geometry: "WeakGeometry | None"
    place: "tuple | None"
    point: typing.Any
    offer: "str | None"
    offered_type: "_kv_tr.Type | None"


class Estimate(typing.NamedTuple):
    """A number and its standard deviation."""

    value: float
    sigma: float


@dataclass(frozen=True, eq=False)
class Parameters:
    """The k coefficients of a record, those of the first coordinate before those of the second.

    names           'dA0', 'dA1', ..., as the record has them
    values, sigmas  shape (k,), with their standard deviations
    at_edge         the coefficients' effects at the edge of the points, shape (k,), metres
    sigmas_at_edge  the standard deviations of those
    """

    __module__ = "kv_tr"

    names: tuple
    values: np.ndarray
    sigmas: np.ndarray
    at_edge: np.ndarray
    sigmas_at_edge: np.ndarray


@dataclass(frozen=True, eq=False)
class Centroid:
    """The centroid of the points in use: coordinates of shape (2,), metres.

    source, target  in both systems
    sigma           the standard deviation of the mean shift
    """

    __module__ = "kv_tr"

    source: np.ndarray
    target: np.ndarray
    sigma: np.ndarray


@dataclass(frozen=True)
class GlobalTest:
    """Whether the residuals are those of the stated accuracy (Koch 1999, section 4.2).

    value         the weighted sum of squares over sigma0²: chi-square of the redundancy
    lower, upper  the bounds of 95 %
    p             the probability of a greater value
    passes        whether value lies within the bounds
    """

    __module__ = "kv_tr"

    value: float
    lower: float
    upper: float
    p: float
    passes: bool


@dataclass(frozen=True)
class CriticalValues:
    """What test values of points are compared with, at the level alpha of the whole table.

    w, tau, t  for normalised, tau and t of a coordinate
    F          for F of a point
    """

    __module__ = "kv_tr"

    w: float
    tau: float
    t: float
    F: float


@dataclass(frozen=True, eq=False)
class PointFigures:
    """Figures of each of the n points; nan (lever: False) for excluded ones.

    Of shape (n, 2), a column a coordinate:

    residual     of the accurate solution, computed minus measured, metres
    redundancy   0 to 1, which part of an error the residual shows (Baarda 1968; Förstner 1979)
    normalised   w, the residual over its standard deviation from a known sigma0 (Baarda 1968)
    tau          the same with the sigma0 of the fit (Pope 1976)
    t            the same with the sigma0 of the other points (Cook and Weisberg 1982)
    t_p          the probability of such a t, two-sided
    t_separate   t with a variance of its own for each coordinate, where they share no unknowns
    gross_error  the residual against the fit without the point, metres
    mdb          the least error that the test finds with 80 %, metres (Baarda 1968); inf where only
                 this point determines something

    Of shape (n,):

    F            the test of both coordinates (Koch 1999, section 4.4); with a known sigma0
                 chi-square(2) / 2
    p            the probability of such a value if the point is right
    adjusted_p   the same among as many points as there are
    cook         Cook's distance (1977); above 1 the point decides
    lever        whether its leverage is above twice the mean
    """

    __module__ = "kv_tr"

    residual: np.ndarray
    redundancy: np.ndarray
    normalised: np.ndarray
    tau: np.ndarray
    t: np.ndarray
    t_p: np.ndarray
    t_separate: np.ndarray
    F: np.ndarray
    p: np.ndarray
    adjusted_p: np.ndarray
    gross_error: np.ndarray
    mdb: np.ndarray
    cook: np.ndarray
    lever: np.ndarray


@dataclass(frozen=True, eq=False)
class Adjustment:
    """The statistics of a fit's accurate least-squares solution.

    determined       whether the points determine the type; otherwise nothing below is defined
    fits_exactly     whether the residuals are rounding only, so that there are no tests
    used             the points in use
    unknowns         of both coordinates together
    redundancy       twice the points in use, less the unknowns
    sum_pvv          the weighted sum of the squared residuals
    sigma0           √(sum_pvv / redundancy), of one coordinate: metres without weights
    sigma0_separate  of each coordinate, shape (2,), where they share no unknowns
    rms_point        the root mean square of the residuals of a point, not weighted, metres
    press            the weighted sum of the squared leave-one-out errors (Allen 1974)
    loo              their root mean square of a point, not weighted: the error to expect at a
                     new point, metres
    uncontrolled     how many points have no leave-one-out error
    aicc             Akaike's criterion, corrected (Hurvich and Tsai 1989)
    axes_p           the probability of such different variances of both coordinates
    global_test      a GlobalTest where sigma0 was known, or None
    parameters       the Parameters with their standard deviations
    correlations     of the parameters, shape (k, k)
    derived          'scale', 'rotation', 'scale_first_axis', 'scale_second_axis', 'shear' of linear
                     types: an Estimate each
    centroid         the Centroid of the points in use
    points           PointFigures, a row a point
    critical         CriticalValues for them
    suspect          the identifier of the point that fits worst, when its adjusted_p is below
                     alpha, or None. One at a time: exclude, and look again
    returnable       identifiers of excluded points that the test would not reject now
    """

    __module__ = "kv_tr"

    determined: bool
    fits_exactly: bool
    used: int
    unknowns: int
    redundancy: int
    sum_pvv: float
    sigma0: float
    sigma0_separate: np.ndarray
    rms_point: float
    press: float
    loo: float
    uncontrolled: int
    aicc: float
    axes_p: float
    global_test: "GlobalTest | None"
    parameters: Parameters
    correlations: np.ndarray
    derived: dict
    centroid: Centroid
    points: PointFigures
    critical: CriticalValues
    suspect: typing.Any
    returnable: tuple


@dataclass(frozen=True)
class TypeFigures:
    """What a type makes of the points in use.

    type                a Type
    determined          whether the points determine it, all over their area
    eligible            whether they leave enough redundancy to compare it
    redundancy, sigma0, loo, aicc
                        as in Adjustment
    excess              of its squared leave-one-out errors over those of the best type, in
                        standard errors
    F, F_p              against the next simpler type, and the probability of such an F
    passes_global_test  with a known sigma0 only
    """

    __module__ = "kv_tr"

    type: _kv_tr.Type
    determined: bool
    eligible: bool
    redundancy: int
    sigma0: float
    loo: float
    excess: float
    aicc: float
    F: float
    F_p: float
    passes_global_test: bool


@dataclass(frozen=True)
class TypeAdvice:
    """Which type the points warrant.

    types             TypeFigures, from the simplest on, of those that the points are enough for
    best              the Type with the least leave-one-out error, or None
    advised           the simplest one whose squared leave-one-out errors exceed those of the best
                      by no more than their standard error (Breiman et al. 1984; Hastie et al.
                      2009, section 7.10), or None
    simplest_passing  with a known sigma0 the simplest one that the global test passes, or None
    """

    __module__ = "kv_tr"

    types: tuple
    best: "_kv_tr.Type | None"
    advised: "_kv_tr.Type | None"
    simplest_passing: "_kv_tr.Type | None"


@dataclass(frozen=True)
class Extrapolation:
    """How far points lie outside the control points in use.

    count     how many of them are outside the convex hull
    farthest  the greatest distance from the hull, metres of the source system; 0 inside
    sigma     the greatest standard deviation of those, metres; nan where there is none
    is_far    whether one is farther than a tenth of the hull's diameter, or determined more than
              three times worse than a control point
    """

    __module__ = "kv_tr"

    count: int
    farthest: float
    sigma: float
    is_far: bool


Estimate.__module__ = "kv_tr"
