#!/usr/bin/env python3
"""Draws the residual vectors of a fit over a map of the control points.

    plot_residuals.py control_points.csv residuals.png --type affine

Points that the limit excluded are hollow and have a number instead of a vector. The file's ending
decides the format: png, svg or pdf.
"""

import argparse
import math
import pathlib
import sys

import kv_tr
import matplotlib.pyplot as plt
import numpy as np
from fit_from_csv import TYPES, fit, read_points, stop


def nice(value):
    """The number 1, 2 or 5 times a power of ten that is not above the value."""
    power = 10.0 ** math.floor(math.log10(value))
    return max(step * power for step in (1, 2, 5) if step * power <= value)


def draw(engine, axes):
    """Points and vectors in the destination system; listings call the first coordinate Y."""
    pairs = engine.GetAllXYs()
    y, x = np.array([(pair.dXdest, pair.dYdest) for pair in pairs]).T
    dy, dx = np.array([(pair.dXerr, pair.dYerr) for pair in pairs]).T
    used = np.array([not pair.bNotUsed for pair in pairs])
    lengths = np.hypot(dy, dx)

    longest = lengths[used].max() or 1.0
    scale = 0.12 * max(np.ptp(y), np.ptp(x)) / longest
    vectors = axes.quiver(
        y[used], x[used], dy[used] * scale, dx[used] * scale,
        angles="xy", scale_units="xy", scale=1, width=0.004, color="tab:red",
    )  # fmt: skip
    axes.update_datalim(np.column_stack([y + used * dy * scale, x + used * dx * scale]))
    faces = np.where(used, "black", "white")
    axes.scatter(y, x, s=18, facecolors=faces, edgecolors="black", zorder=3)
    for pair, length in zip(pairs, lengths):
        axes.annotate(
            f"{pair.sId}\n{length * 1000:.0f} mm", (pair.dXdest, pair.dYdest),
            (-6 if pair.dXerr > 0 else 6, -6 if pair.dYerr > 0 else 6),  # away from the vector
            ha="right" if pair.dXerr > 0 else "left", va="top" if pair.dYerr > 0 else "bottom",
            textcoords="offset points", fontsize=8, color="gray" if pair.bNotUsed else "black",
        )  # fmt: skip

    shown = nice(longest)
    axes.quiverkey(vectors, 0.9, 1.03, shown * scale, f"{shown * 1000:g} mm", labelpos="W")
    axes.margins(0.15)
    axes.set_aspect("equal")
    axes.ticklabel_format(style="plain", useOffset=False)
    axes.tick_params(labelsize=8)
    axes.set(xlabel="Y2 [m]", ylabel="X2 [m]")
    axes.grid(alpha=0.3)


def main():
    parser = argparse.ArgumentParser(description="Draws the residual vectors of a fit.")
    parser.add_argument("points", help="CSV file with the columns id, y1, x1, y2, x2")
    parser.add_argument("picture", help="the file to write: png, svg or pdf")
    parser.add_argument("--type", choices=TYPES, default="helmert")
    parser.add_argument("--limit", type=float, help="greatest residual allowed, metres")
    options = parser.parse_args()

    kv_tr.install_platform(messages=stop, language=2057)
    engine = kv_tr.clsTrCalc()
    engine.AddXY4Tr(read_points(options.points), False)
    engine.eTrType = TYPES[options.type]
    if not engine.bXYCntIsValid4TrType(engine.eTrType):
        sys.exit(kv_tr.GetMlString(97))
    fit(engine, options.limit)

    figure, axes = plt.subplots(figsize=(9, 6.5), layout="constrained")
    draw(engine, axes)
    name = pathlib.Path(options.points).name
    figure.suptitle(f"{name}: {options.type}, rms {engine.dRmsErr * 1000:.1f} mm")
    figure.savefig(options.picture, dpi=150)


if __name__ == "__main__":
    try:
        main()
    except (OSError, ValueError, kv_tr.RuntimeError) as error:
        sys.exit(str(error))
