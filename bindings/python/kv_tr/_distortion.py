"""What a transformation does to lengths, areas and angles."""

from dataclasses import dataclass

import numpy as np


@dataclass(frozen=True, eq=False)
class Distortion:
    """The distortion at points, an array a figure, a number a point; angles are radians.

    greatest_scale        M, the greatest scale
    least_scale           N, the least scale, never negative
    area_scale            the determinant of the derivative: M N, negative for a mirrored image
    rotation              that of the nearest similarity, in (-pi, pi]
    greatest_angle_change by how much an angle may change, 2 arcsin((M - N) / (M + N))
    direction_source      the direction of M before the transformation, in [0, pi); nan where
                          M and N agree to 1e-12
    direction_target      the same after it
    """

    __module__ = "kv_tr"

    greatest_scale: np.ndarray
    least_scale: np.ndarray
    area_scale: np.ndarray
    rotation: np.ndarray
    greatest_angle_change: np.ndarray
    direction_source: np.ndarray
    direction_target: np.ndarray
