"""Calls that the package never makes: the extension module answers them with exceptions all the same."""

from __future__ import annotations

from typing import Any

import pytest

from phoneme import _core

core: Any = _core  # what the stubs do not allow


@pytest.mark.parametrize("arguments", [(), ("ni3hao3",), ("ni3hao3", "mandarin", 1)])
def test_a_call_with_too_few_or_too_many_arguments(arguments: tuple[object, ...]) -> None:
    with pytest.raises(TypeError, match=rf"^expected \d arguments, got {len(arguments)}$"):
        core.py2code(*arguments)


@pytest.mark.parametrize("record", ["Phone", "Syllable"])
def test_a_record_without_its_arguments(record: str) -> None:
    with pytest.raises(TypeError, match="language"):
        getattr(core, record)()
