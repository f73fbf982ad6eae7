#!/usr/bin/env python3
"""Fits a transformation through the component of Windows: fit_points.py POINTS.dat

Needs Windows, a registered kv_tr_com.dll of the same size as Python (64 bit usually) and the package pywin32. It was
not run by its author, who had no Windows; docs/windows-macros.md tells what was run. Programs in Python that need not
go through COM use the package kv_tr instead.
"""

import sys

import win32com.client

HELMERT = 0
ENGLISH = 2057


class Events:
    """What the engine raises while points are excluded."""

    def OnTypeChanched(self, eTrType):
        print(f"Too few points are in use; the type is {eTrType} from now on.")


def main():
    transformation = win32com.client.Dispatch("KV_Tr.clsTr")
    engine = transformation.oCalcTr
    listener = win32com.client.WithEvents(engine, Events)
    engine.setLanguageID(ENGLISH)
    loaded = engine.bLoadXYsFromFile(sys.argv[1], False)
    # A member that changes an argument yields it behind its own result.
    if not (loaded[0] if isinstance(loaded, tuple) else loaded):
        sys.exit(1)
    engine.eTrType = HELMERT
    engine.DoCalcTr()
    print(f"Root mean square error of a point: {engine.dRmsErr:.3f} m")

    transformation.udtTrPrm = engine.udtTrPrm
    fields = transformation.vTrPrm  # the type, A0 to A21, B0 to B21
    print(f"A0, A1, A2: {fields[1]:.4f} {fields[2]:.9f} {fields[3]:.9f}")
    for name, *_, first_residual, second_residual, excluded in engine.vXYs:
        print(f"{name:>12} {first_residual:9.3f} {second_residual:9.3f}{'  excluded' if excluded else ''}")
    del listener
    transformation.TearDown()


main()
