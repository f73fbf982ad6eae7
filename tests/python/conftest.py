"""A component of its own for each test: English, messages kept, no files of the user's."""

import subprocess
import sys

import kv_tr
import numpy as np
import pytest

ENGLISH = 2057
SQUARE = [("A", 0, 0), ("B", 1000, 0), ("C", 1000, 800), ("D", 0, 800), ("E", 300, 500)]

# What numpy makes arrays of numbers of, by functions of such an array.
LAYOUTS = [
    lambda a: a.tolist(),
    np.asfortranarray,
    lambda a: np.repeat(a, 2, axis=0)[::2],
    lambda a: a.astype(">f8"),
    lambda a: a.astype("f4"),
    lambda a: a.astype(object),
    lambda a: np.ndarray(a.shape, "f8", b"_" + a.tobytes(), 1),  # unaligned
    lambda a: np.frombuffer(a.tobytes()).reshape(a.shape),  # read-only
]


def run(*arguments, code=0, **options):
    """What Python says when it is run, or complains of when it is to fail."""
    command = [sys.executable, *map(str, arguments)]
    ended = subprocess.run(command, capture_output=True, text=True, timeout=100, **options)
    assert ended.returncode == code, ended.stdout + ended.stderr
    assert code or not ended.stderr, ended.stderr
    return ended.stderr or ended.stdout


@pytest.fixture(autouse=True)
def messages():
    """The messages shown, as text; the platform is back to that of the console afterwards."""
    shown = []
    keep = lambda message: shown.append(message.text)
    kv_tr.install_platform(messages=keep, settings={}, language=ENGLISH)
    yield shown
    kv_tr.install_platform(settings={})


@pytest.fixture
def engine():
    """Five points shifted by 100 and -50."""
    engine = kv_tr.clsTrCalc()
    engine.AddXY4Tr([(name, y, x, y + 100, x - 50) for name, y, x in SQUARE], False)
    return engine
