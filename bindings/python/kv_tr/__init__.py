"""Plane coordinate transformations fitted to control points.

    import kv_tr

    points = kv_tr.read_points("points.dat")     # or two arrays of shape (n, 2)
    result = kv_tr.fit(points, "affine")
    print(result.summary())
    for finding in result.warnings:              # what a user must know about the fit
        print(finding.text)
    result = result.exclude("17")
    images = result.transformation.transform(coordinates)
    result.transformation.save("town.trp")

Coordinates are metres, directions radians. What the caller did wrong raises. Results and
transformations never change, so that any number of threads may use them.

The published classes are clsTr and clsTrCalc with their records. Their objects belong to one
thread, and what the user must know is shown through install_platform's messages.
"""

from kv_tr._distortion import Distortion
from kv_tr._errors import FileError, FitError, FitWarning, NoInverseError, NoInverseWarning
from kv_tr._fit import (
    ControlPoints,
    FitOutcome,
    FitResult,
    Statistics,
    fit,
    read_points,
    write_points,
)
from kv_tr._kv_tr import *
from kv_tr._kv_tr import __version__
from kv_tr._worth import (
    Adjustment,
    Centroid,
    CriticalValues,
    Estimate,
    Extrapolation,
    Finding,
    GlobalTest,
    Parameters,
    PointFigures,
    TruthCheck,
    TypeAdvice,
    TypeFigures,
    WeakGeometry,
)

# A star import must not hide Python's own RuntimeError, which kv_tr.RuntimeError derives from.
__all__ = [name for name in dir() if not name.startswith("_") and name != "RuntimeError"]
