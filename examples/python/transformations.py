"""What the examples share: the transformation that their options name, and how they end."""

import pathlib
import sys

import kv_tr
import numpy as np


def add_options(parser):
    source = parser.add_mutually_exclusive_group(required=True)
    source.add_argument(
        "--params", help="file of parameters: .trp, .prm, .all, a JSON record or a PROJ string"
    )
    names = [info.name for info in kv_tr.NationalInfos()]
    source.add_argument("--national", choices=names, metavar="SOURCE_DESTINATION")
    parser.add_argument("--inverse", action="store_true", help="from the destination to the source")


def chosen(options):
    """The transformation, or its inverse."""
    if options.national:
        transformation = kv_tr.Transformation.national(options.national)
    elif pathlib.Path(options.params).suffix.lower() in (".trp", ".prm", ".all"):
        transformation = kv_tr.Transformation.load(options.params)
    else:
        text = pathlib.Path(options.params).read_text(encoding="utf-8-sig")
        try:
            transformation = kv_tr.Transformation.from_text(text)
        except ValueError as error:
            raise ValueError(f"{options.params}: {error}") from None
    return transformation.inverse() if options.inverse else transformation


def pipeline_of(transformation):
    """The PROJ string of a transformation, or of an exact inverse, which PROJ then searches."""
    if isinstance(transformation, kv_tr.ExactInverse):
        return "+proj=pipeline +step +inv " + pipeline_of(transformation.forward)
    return transformation.to_text("proj").strip()


def images_of(transformation, points):
    """The images of points. ValueError where one has no inverse, so that nothing is lost unseen."""
    images = transformation.transform(points)
    lost = np.isnan(images).any(axis=1)
    if lost.any():
        place = ", ".join(f"{value:.3f}" for value in np.asarray(points)[lost][0])
        raise ValueError(f"{lost.sum()} points have no inverse, the first one at {place}")
    return images


def run(main):
    """Runs a program; what a user can mend ends it with one line and exit code 1."""
    try:
        main()
    except (OSError, ValueError, RuntimeError, kv_tr.FileError) as error:
        sys.exit(str(error))
