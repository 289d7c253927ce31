"""Calls that the package never makes: the extension module answers them with exceptions all the same."""

from __future__ import annotations

import re
from pathlib import Path
from typing import Any

import pytest

from phoneme import _core

core: Any = _core  # what the stubs do not allow

PACKAGE = Path(__file__).resolve().parents[1]


def test_the_line_for_debian_installs_what_the_build_requires() -> None:
    project = (PACKAGE / "pyproject.toml").read_text("utf-8")
    lists = re.findall(r"^(?:requires|dependencies) = \[(.*)\]$", project, re.MULTILINE)
    required = [name for names in lists for name in re.findall(r'"([a-z0-9]+)', names)]
    assert len(lists) == 2 and {"setuptools", "wheel", "pybind11", "numpy"} <= set(required)
    line = re.search(r"^    sudo apt install (.*)$", (PACKAGE / "README.md").read_text("utf-8"), re.MULTILINE)
    assert line and {f"python3-{name}" for name in required} <= set(line[1].split())


@pytest.mark.parametrize("arguments", [(), ("ni3hao3",), ("ni3", "mandarin", 1, 2)])
def test_a_call_with_too_few_or_too_many_arguments(arguments: tuple[object, ...]) -> None:
    with pytest.raises(TypeError, match=rf"^expected \d arguments, got {len(arguments)}$"):
        core.py2code(*arguments)


@pytest.mark.parametrize("record", ["Phone", "Syllable"])
def test_a_record_without_its_arguments(record: str) -> None:
    with pytest.raises(TypeError, match="missing required argument"):
        getattr(core, record)()
