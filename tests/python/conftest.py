"""A component of its own for each test: English, messages kept, no files of the user's."""

import kv_tr
import pytest

ENGLISH = 2057
SQUARE = [("A", 0, 0), ("B", 1000, 0), ("C", 1000, 800), ("D", 0, 800), ("E", 300, 500)]


@pytest.fixture(autouse=True)
def messages():
    """The messages shown, as text; the platform is back to that of the console afterwards."""
    shown = []
    kv_tr.install_platform(
        messages=lambda message: shown.append(message.text), settings={}, language=ENGLISH
    )
    yield shown
    kv_tr.install_platform(settings={})


@pytest.fixture
def engine():
    """Five points shifted by 100 and -50."""
    engine = kv_tr.clsTrCalc()
    engine.AddXY4Tr([(name, y, x, y + 100, x - 50) for name, y, x in SQUARE], False)
    return engine
