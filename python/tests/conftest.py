"""What several tests need."""

from __future__ import annotations

import os
from pathlib import Path

import pytest


@pytest.fixture(scope="session")
def tool() -> str:
    path = os.environ.get("PHONEME_TOOL")
    if not path:
        pytest.fail("PHONEME_TOOL is not set: it is to be the path of the tool phoneme")
    return str(Path(path).resolve())
