"""What several tests need."""

from __future__ import annotations

import os
import signal
from pathlib import Path

import pytest

# A shell lets no interrupt through to what it starts in the background; programs that the tests
# start are to have it.
signal.signal(signal.SIGINT, signal.default_int_handler)


@pytest.fixture(scope="session")
def tool() -> str:
    path = os.environ.get("PHONEME_TOOL")
    if not path:
        pytest.fail("PHONEME_TOOL is not set: it must be the path of the tool phoneme")
    return str(Path(path).resolve())
