"""Plane coordinate transformations fitted to control points.

    import kv_tr

    with kv_tr.clsTr() as tr:
        engine = tr.oCalcTr
        engine.AddXY4Tr([("A", 0, 0, 100, 200), ("B", 10, 0, 110, 200)], False)
        engine.DoCalcTr()
        tr.udtTrPrm = engine.udtTrPrm
        print(tr.TrXY(5, 5), engine.dRmsErr)

Coordinates are metres, directions radians. Objects belong to one thread. What the user must know
is shown through install_platform's messages; what the caller did wrong raises.
"""

from kv_tr._kv_tr import *
from kv_tr._kv_tr import __version__

# A star import must not hide Python's own RuntimeError, which kv_tr.RuntimeError derives from.
__all__ = [name for name in dir() if not name.startswith("_") and name != "RuntimeError"]
