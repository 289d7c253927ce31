"""Batches against single conversions, and every form in which texts can come."""

from __future__ import annotations

import sys
from collections import Counter
from typing import Any, Iterator, cast

import numpy as np
import pandas as pd
import phoneme
import pytest

TEXTS = ["ni3hao3", "", "xyz3", "Xi'an", "漢字", "nǐ3", "\ud800", "er2 ma5", "ni3" * 50, "hello"]
PRONUNCIATIONS = ["n i 3, h ao 3", "", "n", "E 3", "h ao 3, xx 1", "n i 3, aa", "a 1 2"]


def _lists(values: Any, offsets: Any) -> list[list[int]]:
    assert offsets[0] == 0 and offsets[-1] == len(values)
    return [values[a:b].tolist() for a, b in zip(offsets, offsets[1:])]


def _same(a: Any, b: Any) -> bool:
    return type(a) is type(b) and all(
        x.dtype == y.dtype and x.tolist() == y.tolist() for x, y in zip(a, b)
    )


@pytest.mark.parametrize("language", ["mandarin", "cantonese", "english", 12345])
def test_codes_and_syllables(language: Any) -> None:
    singles = [phoneme.py2ph(text, language, errors="none") for text in TEXTS]
    codes: Any = phoneme.py2code_batch(TEXTS, language)
    batch: Any = phoneme.py2ph_batch(TEXTS, language)
    assert [array.dtype.name for array in codes] == ["uint16", "int64", "uint8"]
    assert [array.dtype.name for array in batch] == [
        "uint8", "int64", "uint16", "int8", "int64", "uint8"
    ]  # fmt: skip
    flat = [syllable for single in singles for syllable in single or []]
    expected = [[syllable.code for syllable in single or []] for single in singles]
    assert _lists(codes.codes, codes.offsets) == _lists(batch.codes, batch.offsets) == expected
    assert batch.tones.tolist() == [syllable.tone for syllable in flat]
    assert _lists(batch.phones, batch.phone_offsets) == [
        [phone.id for phone in syllable.phones if phone] for syllable in flat
    ]
    status = [int(single is None) for single in singles]
    assert codes.status.tolist() == batch.status.tolist() == status
    assert 0 < sum(status) < len(status)


@pytest.mark.parametrize("language", ["mandarin", "cantonese", "english", 12345])
def test_phone_ids(language: Any) -> None:
    batch: Any = phoneme.pr2ph_batch(PRONUNCIATIONS, language)
    singles = [
        phoneme.pr2ph(text, language, as_ids=True, errors="none") for text in PRONUNCIATIONS
    ]
    assert [array.dtype.name for array in batch] == ["uint8", "int64", "uint8"]
    assert _lists(batch.ids, batch.offsets) == [list(single or b"") for single in singles]
    assert batch.status.tolist() == [int(single is None) for single in singles]


@pytest.mark.parametrize("backward", [False, True])
def test_pieces(backward: bool) -> None:
    batch = phoneme.pyw2py_batch(TEXTS, backward=backward)
    data = bytes(batch.data)
    ends = batch.piece_offsets.tolist()
    pieces = [data[a:b].decode("utf-8", "surrogatepass") for a, b in zip(ends, ends[1:])]
    offsets = batch.offsets.tolist()
    assert ends[-1] == len(data) and offsets[-1] == len(pieces)
    assert [pieces[a:b] for a, b in zip(offsets, offsets[1:])] == [
        phoneme.pyw2py(text, backward=backward) for text in TEXTS
    ]
    assert batch.status.tolist() == [0] * len(TEXTS)


@pytest.mark.parametrize(
    "language, normalize",
    [
        ("mandarin", phoneme.normalize_pinyin),
        ("cantonese", phoneme.normalize_jyutping),
        ("english", phoneme.arpabet_to_pronunciation),
        (12345, phoneme.normalize_pinyin),
    ],
)
def test_normalized_texts(language: Any, normalize: Any) -> None:
    texts = [*TEXTS, "Nǐ hǎo", "nei5hou2", "HH AH0 L OW1"]
    batch = phoneme.normalize_batch(texts, language)
    singles = [normalize(text) for text in texts]
    data = bytes(batch.data).decode()
    assert [data[a:b] for a, b in zip(batch.offsets, batch.offsets[1:])] == [
        single.text for single in singles
    ]
    assert batch.status.tolist() == [int(bool(single.problems)) for single in singles]
    assert 0 < sum(batch.status) < len(texts)


BATCHES: list[Any] = [
    phoneme.py2code_batch,
    phoneme.py2ph_batch,
    phoneme.pr2ph_batch,
    phoneme.pyw2py_batch,
    phoneme.normalize_batch,
]


@pytest.mark.parametrize("function", BATCHES)
def test_the_forms_of_texts(function: Any) -> None:
    texts = [text for text in [*TEXTS, *PRONUNCIATIONS] if "\ud800" not in text]
    encoded = [text.encode() for text in texts]
    expected = function(texts)
    ends = np.cumsum([0, *map(len, encoded)])
    data = b"".join(encoded)
    forms: list[Any] = [
        tuple(texts),
        iter(texts),
        (text for text in texts),
        dict.fromkeys(texts).keys() if len(set(texts)) == len(texts) else texts,
        encoded,
        np.array(texts, dtype=object),
        np.array(texts),
        pd.Series(texts),
        pd.Series(texts, index=range(100, 100 + len(texts))),
        pd.Series(texts, dtype="string"),
        pd.Series(texts, dtype="category"),
        pd.Index(texts),
        (data, ends.astype(np.int64)),
        (data, ends.astype(np.int32)),
        (bytearray(data), ends.astype(np.int32).data),
        (np.frombuffer(data, dtype=np.uint8), ends),
        (b"zz" + data + b"z", ends + 2),  # a slice of longer buffers
    ]
    for form in forms:
        assert _same(function(form), expected)


@pytest.mark.parametrize("function", BATCHES)
def test_no_texts(function: Any) -> None:
    nothing: Any
    for nothing in ([], (), iter(()), pd.Series([], dtype=object), (b"", np.array([0])),
                    (b"", np.array([], dtype=np.int64))):  # fmt: skip
        batch = function(nothing)
        assert batch.offsets.tolist() == [0] and batch.status.tolist() == []


@pytest.mark.parametrize("function", BATCHES)
@pytest.mark.parametrize("other", [None, float("nan"), 3, ["ni3"], bytearray(b"x"), np.int64(3)])
def test_what_is_no_text(function: Any, other: Any) -> None:
    for texts in (["a", "b", other], iter(["a", "b", other]), pd.Series(["a", "b", other])):
        with pytest.raises(TypeError, match=r"texts\[2\] must be str or bytes, not"):
            function(texts)


@pytest.mark.parametrize("function", BATCHES)
@pytest.mark.parametrize("texts", ["ni3", b"ni3", None, 3, np.array(3)])
def test_what_is_no_batch(function: Any, texts: Any) -> None:
    with pytest.raises(TypeError):
        function(texts)


@pytest.mark.parametrize("function", BATCHES)
def test_names_and_keys_are_no_texts(function: Any) -> None:
    mapping = "a batch takes many texts, not a mapping: "
    table = "a batch takes texts in one dimension, not a "
    for texts, message in (
        ({"ni3": 1}, mapping + "dict"),
        (Counter(["ni3"]), mapping + "Counter"),
        (pd.DataFrame({"ni3": ["hao3"], "ma5": ["hao3"]}), table + "DataFrame"),
        (np.array([["ni3"], ["hao3"]]), table + "ndarray"),
        (np.array([[]]), table + "ndarray"),
    ):
        with pytest.raises(TypeError) as caught:
            function(texts)
        assert str(caught.value) == message


def test_a_tuple_of_two_texts_is_two_texts() -> None:
    assert phoneme.py2code_batch(("ni3", "hao3")).codes.tolist() == [2243, 1173]
    assert phoneme.py2code_batch((b"ni3", b"hao3")).codes.tolist() == [2243, 1173]


@pytest.mark.parametrize(
    "data, offsets, error",
    [
        (b"ni3", np.array([0, 4]), ValueError),
        (b"ni3", np.array([0, 2, 1]), ValueError),
        (b"ni3", np.array([-1, 2]), ValueError),
        (b"ni3", np.array([0, 2**62]), ValueError),
        (b"ni3", np.array([0, 3, 0], dtype=np.int32), ValueError),
        (b"ni3", np.array([0, 1, 3])[::2], ValueError),
        (b"ni3", np.array([[0, 3]]), ValueError),
        (b"ni3", np.array([0, 3], dtype=np.uint64), TypeError),
        (b"ni3", np.array([0, 3], dtype=np.int16), TypeError),
        (b"ni3", np.array([0.0, 3.0]), TypeError),
        (b"ni3", memoryview(np.array([0, 3]).tobytes()), TypeError),
        (np.array([0, 3]), memoryview(b"ni3"), TypeError),
        (np.array([1, 2, 3]), np.array([0, 3]), TypeError),
        (np.frombuffer(b"n.i.3.", dtype=np.uint8)[::2], np.array([0, 3]), ValueError),
        ("ni3", np.array([0, 3]), TypeError),
        (["ni3"], np.array([0, 3]), TypeError),
    ],
)
def test_buffers_that_do_not_fit(data: Any, offsets: Any, error: type[Exception]) -> None:
    for function in BATCHES:
        with pytest.raises(error):
            function((data, offsets))


@pytest.mark.parametrize("width", [np.int32, np.int64])
def test_untyped_offsets_as_arrow_has_them(width: Any) -> None:
    data, offsets = bytearray(b"ma5ni3hao3"), bytearray(np.array([0, 3, 6, 10], width).tobytes())
    with pytest.raises(TypeError, match=r"'B'; untyped bytes .* numpy.frombuffer\(offsets"):
        phoneme.py2code_batch((data, offsets))
    with pytest.raises(TypeError, match="not of format 'h'$"):
        phoneme.py2code_batch((data, np.array([0, 3], np.int16)))
    typed = np.frombuffer(offsets, width)
    assert phoneme.py2code_batch((data, typed)).codes.tolist() == [1945, 2243, 1173]
    assert phoneme.py2code_batch((data, typed[1:][:2])).codes.tolist() == [2243]


def test_an_iterator_that_fails() -> None:
    def texts() -> Iterator[str]:
        yield "ni3"
        raise KeyError("no more")

    with pytest.raises(KeyError, match="no more"):
        phoneme.py2code_batch(texts())


def test_a_length_that_is_not_true() -> None:
    class Texts:
        def __iter__(self) -> Iterator[str]:
            return iter(["ni3"])

        def __length_hint__(self) -> int:
            return sys.maxsize

    assert phoneme.py2code_batch(Texts()).codes.tolist() == [2243]


def test_more_texts_than_are_read_at_once() -> None:
    count = 200_000
    texts = ["ni3", "xyz3", "hao3 ma5"] * count
    batch = phoneme.py2code_batch(iter(texts))
    assert batch.codes.tolist() == [2243, 1173, 1945] * count
    assert batch.offsets.tolist() == [
        0, *(3 * i + end for i in range(count) for end in (1, 1, 3))
    ]  # fmt: skip
    assert batch.status.tolist() == [0, 1, 0] * count


def test_a_text_longer_than_what_is_read_at_once() -> None:
    text = "ni3" * 1_000_000
    assert len(phoneme.py2code_batch([text, "ma5", text]).codes) == 2_000_001


def test_arrays_own_their_memory() -> None:
    codes = phoneme.py2code_batch(["ni3"] * 1000).codes
    others = [phoneme.py2code_batch(["ma5"] * 1000) for _ in range(10)]
    assert codes.tolist() == [2243] * 1000 and len(others) == 10
    codes[0] = 7
    assert codes[0] == 7


class _Arrow:
    """What `to_arrow` uses of pyarrow, as nested lists."""

    @staticmethod
    def array(values: Any, mask: Any = None) -> list[Any]:
        hidden = np.zeros(len(values), bool) if mask is None else mask
        assert isinstance(hidden, np.ndarray) and hidden.dtype == bool
        assert hidden.shape == values.shape
        return [None if skip else value for value, skip in zip(values.tolist(), hidden)]

    @staticmethod
    def py_buffer(values: Any) -> Any:
        return values

    class LargeStringArray:
        @staticmethod
        def from_buffers(length: int, offsets: Any, data: Any) -> list[str]:
            assert offsets.dtype == np.int64 and len(offsets) == length + 1
            return [bytes(data[a:b]).decode() for a, b in zip(offsets, offsets[1:])]

    class LargeListArray:
        @staticmethod
        def from_arrays(offsets: list[Any], values: list[Any]) -> list[Any]:
            ends = [*offsets]
            for i in reversed(range(len(ends))):
                ends[i] = ends[i + 1] if ends[i] is None else ends[i]
            pairs = zip(offsets, ends, ends[1:])
            return [None if offset is None else values[a:b] for offset, a, b in pairs]

    class StructArray:
        @staticmethod
        def from_arrays(arrays: list[Any], names: list[str]) -> list[Any]:
            return [dict(zip(names, row)) for row in zip(*arrays)]


def test_to_arrow(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setitem(cast(Any, sys.modules), "pyarrow", _Arrow)
    texts = ["xyz3", "ni3hao3", "", "abc1", "ma5", "xyz3"]
    codes = phoneme.to_arrow(phoneme.py2code_batch(texts))
    assert codes == [None, [2243, 1173], [], None, [1945], None]
    assert phoneme.to_arrow(phoneme.pr2ph_batch(["n i 3", "n"])) == [[24, 35, 3], None]
    assert phoneme.to_arrow(phoneme.pyw2py_batch(["fangan", ""])) == [["fang", "an"], []]
    assert phoneme.to_arrow(phoneme.normalize_batch(["Nǐ", "P"])) == ["ni3", ""]
    assert phoneme.to_arrow(phoneme.py2ph_batch(["ni3", "x3"])) == [
        [{"code": 2243, "tone": 3, "phones": [14, 25]}],
        None,
    ]


def test_without_pyarrow(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setitem(cast(Any, sys.modules), "pyarrow", None)
    with pytest.raises(ImportError, match="needs pyarrow"):
        phoneme.to_arrow(phoneme.py2code_batch(["ni3"]))
