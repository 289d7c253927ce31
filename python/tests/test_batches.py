"""Batches against single conversions, and every form in which texts can come."""

from __future__ import annotations

import copy
import decimal
import pickle
import sys
from collections import Counter
from typing import Any, Iterator, cast

import numpy as np
import pandas as pd
import phoneme
import pytest
from phoneme import Status

TEXTS = ["ni3hao3", "", "xyz3", "Xi'an", "漢字", "nǐ3", "\ud800", "er2 ma5", "ni3" * 50, "hello"]
PRONUNCIATIONS = ["n i 3, h ao 3", "", "n", "E 3", "h ao 3, xx 1", "n i 3, aa", "a 1 2"]


def _lists(values: Any, offsets: Any) -> list[list[int]]:
    assert offsets[0] == 0 and offsets[-1] == len(values)
    return [values[a:b].tolist() for a, b in zip(offsets, offsets[1:])]


def _arrays(batch: Any) -> dict[str, Any]:
    return {name: value for name, value in vars(batch).items() if name != "language"}


def _same(a: Any, b: Any) -> bool:
    pairs = zip(_arrays(a).values(), _arrays(b).values())
    return type(a) is type(b) and all(
        x.dtype == y.dtype and x.tolist() == y.tolist() for x, y in pairs
    )


def _dtypes(batch: Any) -> dict[str, str]:
    return {name: array.dtype.name for name, array in _arrays(batch).items()}


@pytest.mark.parametrize("language", ["mandarin", "cantonese", "english", 12345])
def test_codes_and_syllables(language: Any) -> None:
    singles = [phoneme.py2ph(text, language, errors="none", fallback=True) for text in TEXTS]
    codes = phoneme.py2code_batch(TEXTS, language, fallback=True)
    batch = phoneme.py2ph_batch(TEXTS, language, fallback=True)
    assert _dtypes(codes) == {"offsets": "int64", "status": "uint8", "codes": "uint16"}
    assert _dtypes(batch) == {
        "offsets": "int64", "status": "uint8", "phones": "uint8", "phone_offsets": "int64",
        "codes": "uint16", "tones": "int8",
    }  # fmt: skip
    assert batch.tolist() == singles
    assert codes.tolist() == [
        phoneme.py2code(text, language, errors="none", fallback=True) for text in TEXTS
    ]
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
    batch = phoneme.pr2ph_batch(PRONUNCIATIONS, language, fallback=True)
    singles = [
        phoneme.pr2ph(text, language, as_ids=True, errors="none", fallback=True)
        for text in PRONUNCIATIONS
    ]
    assert _dtypes(batch) == {"offsets": "int64", "status": "uint8", "ids": "uint8"}
    assert batch.tolist() == singles
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
    singles = [phoneme.pyw2py(text, backward=backward) for text in TEXTS]
    assert [pieces[a:b] for a, b in zip(offsets, offsets[1:])] == singles == batch.tolist()
    assert phoneme.pyw2py_batch([b"\xff3", "\ud8003"]).tolist() == [["\udcff3"], ["\ud8003"]]
    encoded = "\ud8003".encode("utf-8", "surrogatepass")
    words = [encoded, encoded + b" " + encoded, b"\xff" + encoded, encoded + b" \xff3", b"\xed\xa03"]
    assert phoneme.pyw2py_batch(words).tolist() == [phoneme.pyw2py(word) for word in words]
    assert phoneme.pyw2py(encoded) == ["\ud8003"]
    assert phoneme.pyw2py(b"\xff" + encoded) == ["\udcff\udced\udca0\udc803"]
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
    texts = [*TEXTS, "Nǐ hǎo", "nei5hou2", "HH AH0 L OW1", "ni3 hoa3 P ni9 漢", "漢 QQ"]
    batch = phoneme.normalize_batch(texts, language, fallback=True)
    singles = [normalize(text) for text in texts]
    data = bytes(batch.data).decode()
    assert [data[a:b] for a, b in zip(batch.offsets, batch.offsets[1:])] == [
        single.text for single in singles
    ]
    assert batch.status.tolist() == [
        Status[single.problems[0].kind.name] if single.problems else 0 for single in singles
    ]
    assert batch.tolist() == [None if single.problems else single.text for single in singles]
    assert 0 < sum(batch.status > 0) < len(texts)


ANALYSED: list[Any] = [
    *TEXTS, "Nǐ hǎo", "yipinguo", "fangan", "lu:4 cha2", "san1 P", "ni9", "漢 ni3 xyz ni9",
    "é漢 hoa3".encode(), "wan2gung1", "HH AH0 L OW1", "HH QQ", "AE K S", b"\xff",
]  # fmt: skip


@pytest.mark.parametrize("language", ["mandarin", "cantonese", "english", 12345])
@pytest.mark.parametrize(
    "options",
    [{}, {"cutting": "backward"}, {"rules": ["no-diaeresis", "no-missing-stress"]},
     {"rules": []}, {"aliases": {"xyz": "nei"}}],
)  # fmt: skip
def test_analyses(language: Any, options: Any) -> None:
    batch = phoneme.analyze_batch(ANALYSED, language, fallback=True, **options)
    singles = [
        phoneme.analyze(text, language, fallback=True, **options) for text in ANALYSED
    ]
    first = [single.problems[0] if single.problems else None for single in singles]
    assert batch.status.tolist() == [Status[problem.kind.name] if problem else 0 for problem in first]
    assert batch.problem_starts.tolist() == [problem.range[0] if problem else -1 for problem in first]
    assert batch.problem_stops.tolist() == [problem.range[1] if problem else -1 for problem in first]
    assert batch.tolist() == [
        None if single.problems else [read.syllable for read in single.syllables]
        for single in singles
    ]
    read = [syllable for syllables in batch for syllable in syllables or []]
    assert (read or options == {"rules": []}) and batch.tones.tolist() == [s.tone or s.raw_tone for s in read]
    assert batch.codes.tolist() == [s.code for s in read]
    assert 0 < sum(batch.status > 0) < len(ANALYSED)
    assert _dtypes(batch) == {
        "offsets": "int64", "status": "uint8", "phones": "uint8", "phone_offsets": "int64",
        "codes": "uint16", "tones": "int8", "problem_starts": "int64", "problem_stops": "int64",
    }  # fmt: skip


def test_places_are_bytes_in_buffers() -> None:
    texts = ["漢ni3", "ni3 漢字", "ni3"]
    as_str = phoneme.analyze_batch(texts)
    assert (as_str.problem_starts.tolist(), as_str.problem_stops.tolist()) == ([0, 4, -1], [1, 6, -1])
    encoded = [text.encode() for text in texts]
    pair = (b"".join(encoded), np.cumsum([0, *map(len, encoded)]))
    for as_bytes in (phoneme.analyze_batch(encoded), phoneme.analyze_batch(pair)):
        assert as_bytes.problem_starts.tolist() == [0, 4, -1]
        assert as_bytes.problem_stops.tolist() == [3, 10, -1]


def test_status_has_every_kind_of_problem() -> None:
    for i, kind in enumerate(phoneme.ProblemKind):
        assert Status[kind.name] == 2 + i
    names = {kind.name for kind in phoneme.ProblemKind}
    assert {status.name for status in Status} - names == {"CONVERTED", "FAILED", "MISSING"}
    assert (Status.CONVERTED, Status.FAILED, Status.MISSING) == (0, 1, 255)


# Text, and the status with strict=True of its codes and of its pieces.
LOSSES = [
    ("ni3hao3", 0, 0),
    ("", 0, 0),
    (" '`\t\n\v\f\r", 0, 0),
    ("Xi'an", 0, 0),
    ("NiHao", 0, 0),
    ("beijing", 0, 0),
    ("ni3 er", 0, 0),
    ("hello", 3, 3),
    ("xx", 3, 3),
    ("ni3 hello", 3, 3),
    ("ni3\0", 3, 3),
    ("漢字", 3, 3),
    ("ni3 漢", 3, 3),
    ("\ud800", 3, 3),
    (b"\xff", 3, 3),
    ("xyz3", 1, 0),  # a piece, though not a syllable
    ("ni3 n-i", 1, 0),
]


@pytest.mark.parametrize("text, of_codes, of_pieces", LOSSES)
def test_strict_batches_lose_nothing(text: Any, of_codes: int, of_pieces: int) -> None:
    for function in (phoneme.py2code_batch, phoneme.py2ph_batch):
        batch: Any = function([text, "ni3"], strict=True)
        assert batch.status.tolist() == [of_codes, 0] and batch.codes[-1] == 2243
        assert (batch[0] is None) == (of_codes != 0)
        assert len(batch.codes) == 1 + len(batch[0] or [])
        plain: Any = function([text, "ni3"])
        assert plain.status.tolist() == [int(of_codes == 1), 0]
        assert _same(plain, function([text, "ni3"], strict=False))
    for backward in (False, True):
        pieces = phoneme.pyw2py_batch([text, "ni3"], backward=backward, strict=True)
        # From the end "hello" has no syllable at all, and "xyz" is cut where it was closed.
        assert pieces.status.tolist() == [of_pieces, 0] and pieces[1] == ["ni3"]
        assert (pieces[0] is None) == (of_pieces != 0)
        assert phoneme.pyw2py_batch([text], backward=backward).status.tolist() == [0]


NORMALIZED = ["xx", "hello", "beijing", "Nǐ hǎo", "san1 P", "hoa3", "ni9", "yipinguo"]
NORMALIZED_STATUS = [3, 3, 0, 0, 5, 2, 4, 3]


def test_what_was_normalised_is_not_lost_in_silence() -> None:
    batch = phoneme.normalize_batch(NORMALIZED)
    assert batch.status.tolist() == [0, 0, 0, 0, 5, 2, 4, 0]
    codes = [phoneme.py2code(text or "") if status == 0 else None
             for text, status in zip(batch, NORMALIZED_STATUS)]  # fmt: skip
    again = pickle.loads(pickle.dumps(batch))
    forms: list[Any] = [batch, (batch.data, batch.offsets), (bytes(batch.data), batch.offsets), again]
    for form in forms:
        for function in (phoneme.py2code_batch, phoneme.py2ph_batch):
            converted: Any = function(form)
            assert converted.status.tolist() == NORMALIZED_STATUS
            assert [[s if isinstance(s, int) else s.code for s in syllables] if syllables else None
                    for syllables in converted] == codes  # fmt: skip
        pieces = phoneme.pyw2py_batch(form)
        assert pieces.status.tolist() == NORMALIZED_STATUS and pieces[2] == ["bei", "jing"]
        # Not strict: letters are dropped, but what was a problem stays one.
        assert phoneme.py2code_batch(form, strict=False).status.tolist() == batch.status.tolist()
        assert phoneme.analyze_batch(form).status.tolist() == [2, 3, *batch.status.tolist()[2:]]
    # Bare copies have no memory of it.
    for bare in (batch.offsets.copy(), np.array(batch.offsets), batch.offsets.astype(np.int32)):
        assert phoneme.py2code_batch((batch.data, bare)).status.tolist() == [0] * 8
    items: Any = batch[:]
    assert items == batch.tolist() and phoneme.py2code_batch(items[:1]).status.tolist() == [0]
    with pytest.raises(TypeError, match=r"^texts\[4\]"):
        phoneme.py2code_batch(items)


#: Views of the offsets of eight normalised texts, and the texts that each has.
VIEWS: list[tuple[str, Any, slice]] = [
    ("itself", lambda offsets: offsets, slice(0, 8)),
    ("[:]", lambda offsets: offsets[:], slice(0, 8)),
    ("view", lambda offsets: offsets.view(), slice(0, 8)),
    ("subclass", lambda offsets: offsets.view(np.recarray), slice(0, 8)),
    ("memoryview", memoryview, slice(0, 8)),
    ("asarray of it", lambda offsets: np.asarray(memoryview(offsets)), slice(0, 8)),
    ("frombuffer", lambda offsets: np.frombuffer(offsets, np.int64), slice(0, 8)),
    ("reshape", lambda offsets: offsets.reshape(3, 3).ravel(), slice(0, 8)),
    ("[:3]", lambda offsets: offsets[:3], slice(0, 2)),
    ("[1:]", lambda offsets: offsets[1:], slice(1, 8)),
    ("[1:4]", lambda offsets: offsets[1:4], slice(1, 3)),
    ("[2:][2:][:3]", lambda offsets: offsets[2:][2:][:3], slice(4, 6)),
    ("memoryview [4:7]", lambda offsets: memoryview(offsets)[4:7], slice(4, 6)),
    ("memoryview of [3:]", lambda offsets: memoryview(offsets[3:])[1:3], slice(4, 5)),
    ("[8:]", lambda offsets: offsets[8:], slice(8, 8)),
    ("[9:]", lambda offsets: offsets[9:], slice(8, 8)),
    ("[:0]", lambda offsets: offsets[:0], slice(0, 0)),
]  # fmt: skip


@pytest.mark.parametrize("view, texts", [view[1:] for view in VIEWS], ids=[view[0] for view in VIEWS])
def test_views_of_normalised_texts_keep_their_status(view: Any, texts: slice) -> None:
    batch = phoneme.normalize_batch(NORMALIZED)
    unpickled = pickle.loads(pickle.dumps(batch))
    rebuilt = phoneme.TextBatch(batch.offsets.copy(), batch.status, batch.data)
    for source in (batch, unpickled, copy.deepcopy(batch), copy.copy(batch), rebuilt):
        converted = phoneme.py2code_batch((source.data, view(source.offsets)))
        assert converted.status.tolist() == NORMALIZED_STATUS[texts]


@pytest.mark.parametrize(
    "view",
    [
        lambda offsets: offsets.view(np.int32),
        lambda offsets: offsets.view(np.uint8)[4:-4].view(np.int64),
        lambda offsets: offsets[::2],
        lambda offsets: offsets[::-1],
        lambda offsets: offsets.reshape(3, 3),
        lambda offsets: memoryview(offsets)[::2],
        lambda offsets: memoryview(offsets).cast("B"),
        lambda offsets: np.broadcast_to(offsets[:1], 3),
    ],
)
def test_other_views_of_normalised_texts_are_refused(view: Any) -> None:
    for batch in (phoneme.normalize_batch(NORMALIZED), phoneme.normalize_batch(NORMALIZED)):
        with pytest.raises(ValueError, match="not a run of those of the normalised texts"):
            phoneme.py2code_batch((batch.data, view(batch.offsets)))


def test_offsets_keep_what_they_are() -> None:
    batch = phoneme.normalize_batch(NORMALIZED)
    offsets = batch.offsets.copy()
    offsets.flags.writeable = False
    tied = phoneme.TextBatch(offsets, batch.status, batch.data).offsets
    assert not tied.flags.writeable and batch.offsets.flags.writeable
    assert np.shares_memory(tied, offsets) and tied.tolist() == offsets.tolist()


class Texts(phoneme.TextBatch):
    """Texts that are somebody else's class."""


def test_a_subclass_of_a_text_batch_keeps_its_status() -> None:
    batch = phoneme.normalize_batch(NORMALIZED)
    mine = Texts(batch.offsets, batch.status, batch.data)
    for texts in (mine, pickle.loads(pickle.dumps(mine))):
        assert phoneme.py2code_batch(texts).status.tolist() == NORMALIZED_STATUS
        assert phoneme.analyze_batch(texts).status.tolist()[4:7] == [5, 2, 4]


@pytest.mark.parametrize("status", [b"\0\0", "00", 3, [[0], [0]], object()])
def test_a_status_that_is_none(status: Any) -> None:
    batch = phoneme.normalize_batch(["ni3", "xx5"])
    with pytest.raises(TypeError, match="^the status of a batch must be an array of uint8") as caught:
        phoneme.py2code_batch(phoneme.TextBatch(batch.offsets, status, batch.data))
    assert str(caught.value).endswith(f" in one dimension, not {type(status).__name__}")
    spread = np.array([0, 9, 5, 9], np.uint8)[::2]
    mine = phoneme.TextBatch(batch.offsets, spread, batch.data)
    assert phoneme.py2code_batch(mine).status.tolist() == [0, 5]


def test_normalised_pronunciations() -> None:
    texts: list[Any] = ["HH AH0", "HH QQ OW1", None]
    form: Any
    batch = phoneme.normalize_batch(texts, "english", errors="none")
    assert batch.status.tolist() == [0, Status.UNKNOWN_PHONE, Status.MISSING]
    for form in (batch, (batch.data, batch.offsets)):
        ids = phoneme.pr2ph_batch(form, "english")
        assert ids.status.tolist() == batch.status.tolist() and ids.offsets.tolist() == [0, 3, 3, 3]
        again = phoneme.normalize_batch(form, "english")
        assert again.status.tolist()[1:] == [Status.UNKNOWN_PHONE, Status.MISSING]


def test_a_status_for_another_number_of_texts() -> None:
    batch = phoneme.normalize_batch(["ni3", "xx5"])
    for offsets in (batch.offsets[:2], batch.offsets[1:]):
        assert len(phoneme.py2code_batch((batch.data, offsets)).status) == 1
    with pytest.raises(ValueError, match="^2 texts have the status of 3$"):
        phoneme._core.py2code_batch(
            (batch.data, batch.offsets), "mandarin", False, False, np.zeros(3, np.uint8), True
        )


def test_batches_are_sequences() -> None:
    batch = phoneme.py2code_batch(["ni3hao3", "xyz3", "", "ma"])
    items: list[Any] = [[2243, 1173], None, [], [1945]]
    assert len(batch) == 4 and list(batch) == batch.tolist() == items == batch[:]
    assert [batch[i] for i in range(-4, 4)] == items * 2
    assert batch[1:3] == [None, []] and batch[::-2] == [[1945], None] and batch[np.int64(0)] == items[0]
    assert list(reversed(batch)) == items[::-1] and [2243, 1173] in batch
    assert batch.index([1945]) == 3 and batch.count(None) == 1
    for beyond in (4, -5):
        with pytest.raises(IndexError, match="^batch index out of range$"):
            batch[beyond]
    wrong: Any
    for wrong, name in (("codes", "str"), (1.0, "float"), (None, "NoneType")):
        with pytest.raises(TypeError, match=f"^batch indices must be integers or slices, not {name}$"):
            batch[wrong]
    with pytest.raises(IndexError, match="^batch index out of range$"):
        phoneme.py2code_batch([])[0]
    assert [type(item) for item in phoneme.pr2ph_batch(["n i 3"])] == [bytes]
    assert [type(code) for code in batch[0] or []] == [int, int]
    codes: Any
    for function in BATCHES:
        whole = function(["ni3", "xyz 9"])
        again = pickle.loads(pickle.dumps(whole))
        assert _same(again, whole) and again.tolist() == whole.tolist() and len(whole) == 2


BATCHES: list[Any] = [
    phoneme.py2code_batch,
    phoneme.py2ph_batch,
    phoneme.pr2ph_batch,
    phoneme.pyw2py_batch,
    phoneme.normalize_batch,
    phoneme.analyze_batch,
]

MISSING: list[Any] = [
    None, float("nan"), np.float64("nan"), np.float32("nan"), np.float16("nan"), np.longdouble("nan"),
    complex("nan"), decimal.Decimal("nan"), np.datetime64("NaT"), np.timedelta64("NaT"), pd.NA, pd.NaT,
]  # fmt: skip


class Incomparable:
    """What cannot say whether it differs from itself."""

    def __ne__(self, other: object) -> Any:
        raise ArithmeticError


class Vague:
    """What differs from itself by an answer that is not a bool."""

    def __ne__(self, other: object) -> Any:
        return ["yes"]


@pytest.mark.parametrize(
    "other", [Incomparable(), Vague(), decimal.Decimal("snan"), np.array([np.nan] * 2), [np.nan]]
)
def test_what_is_not_missing(other: Any) -> None:
    with pytest.raises(TypeError, match=r"^texts\[1\] must be str or bytes, not [\w.]+$"):
        phoneme.py2code_batch(["ni3", other], errors="none")


@pytest.mark.parametrize("function", BATCHES)
def test_the_forms_of_texts(function: Any) -> None:
    texts = [text for text in [*TEXTS, *PRONUNCIATIONS] if "\ud800" not in text]
    encoded = [text.encode() for text in texts]
    ends = np.cumsum([0, *map(len, encoded)])
    data = b"".join(encoded)
    forms: list[Any] = [
        tuple(texts),
        iter(texts),
        (text for text in texts),
        dict.fromkeys(texts).keys() if len(set(texts)) == len(texts) else texts,
        np.array(texts, dtype=object),
        np.array(texts),
        pd.Series(texts),
        pd.Series(texts, index=range(100, 100 + len(texts))),
        pd.Series(texts, dtype="string"),
        pd.Series(texts, dtype="category"),
        pd.Index(texts),
    ]
    of_bytes: list[Any] = [
        iter(encoded),
        np.array(encoded, dtype=object),
        (data, ends.astype(np.int64)),
        (data, ends.astype(np.int32)),
        (bytearray(data), ends.astype(np.int32).data),
        (np.frombuffer(data, dtype=np.uint8), ends),
        (b"zz" + data + b"z", ends + 2),  # a slice of longer buffers
    ]
    for expected, same in ((function(texts), forms), (function(encoded), of_bytes)):
        for form in same:
            assert _same(function(form), expected)
    assert function(texts).tolist() == function(encoded).tolist()


@pytest.mark.parametrize("function", BATCHES)
def test_no_texts(function: Any) -> None:
    nothing: Any
    for nothing in ([], (), iter(()), pd.Series([], dtype=object), (b"", np.array([0])),
                    (b"", np.array([], dtype=np.int64))):  # fmt: skip
        batch = function(nothing)
        assert batch.offsets.tolist() == [0] and batch.status.tolist() == []


@pytest.mark.parametrize("function", BATCHES)
@pytest.mark.parametrize("other", [*MISSING, 3, 1.5, ["ni3"], bytearray(b"x"), np.int64(3)])
def test_what_is_no_text(function: Any, other: Any) -> None:
    is_missing = any(other is missing for missing in MISSING)
    for texts in (["a", "b", other], iter(["a", "b", other]), pd.Series(["a", "b", other])):
        with pytest.raises(TypeError, match=r"^texts\[2\] must be str or bytes, not") as caught:
            function(texts)
        assert str(caught.value).endswith("; errors=\"none\" takes it as a text that failed") == is_missing
        if not is_missing:
            with pytest.raises(TypeError, match=r"^texts\[2\] must be str or bytes, not [\w.]+$"):
                function(["a", "b", other], errors="none")


@pytest.mark.parametrize("function", BATCHES)
def test_missing_texts(function: Any) -> None:
    texts, count = ["ni3", *MISSING, "xyz3", ""], len(MISSING)
    given: Any
    for given in (texts, iter(texts), pd.Series(texts, dtype=object), np.array(texts, dtype=object),
                  pd.Series(["ni3", *[None] * count, "xyz3", ""], dtype="string")):  # fmt: skip
        batch = function(given, errors="none")
        assert batch.status.tolist()[1 : count + 1] == [Status.MISSING] * count
        plain = function(["ni3", "xyz3", ""])
        assert batch.tolist() == [plain[0], *[None] * count, plain[1], plain[2]]
        assert batch.offsets[1 : count + 1].tolist() == [plain.offsets[1]] * count
    assert function([None], errors="none").tolist() == [None]
    with pytest.raises(ValueError, match="^errors must be 'raise' or 'none', not 'skip'$"):
        function(["ni3"], errors="skip")


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
        (np.array([["ni3"], ["hao3"]]), table + "numpy.ndarray"),
        (np.array([[]]), table + "numpy.ndarray"),
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
        (b"ni3", np.array([0, 3], dtype=">i8"), TypeError),
        (b"ni3", np.array([0, 3], dtype=">i4"), TypeError),
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
        def from_buffers(length: int, offsets: Any, data: Any, bits: Any) -> list[Any]:
            assert offsets.dtype == np.int64 and len(offsets) == length + 1
            valid = [bits is None or bits[i // 8] >> i % 8 & 1 for i in range(length)]
            texts = [bytes(data[a:b]).decode() for a, b in zip(offsets, offsets[1:])]
            return [text if is_valid else None for text, is_valid in zip(texts, valid)]

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
    assert phoneme.to_arrow(phoneme.normalize_batch(["Nǐ", "P", *["ma5"] * 9])) == [
        "ni3", None, *["ma5"] * 9
    ]  # fmt: skip
    assert phoneme.to_arrow(phoneme.analyze_batch(["Nǐ", "P"])) == [
        [{"code": 2243, "tone": 3, "phones": [14, 25]}], None
    ]  # fmt: skip
    other: Any = ["ni3"]
    with pytest.raises(TypeError, match="^to_arrow takes what a batch function returns, not list$"):
        phoneme.to_arrow(other)
    assert phoneme.to_arrow(phoneme.py2ph_batch(["ni3", "x3"])) == [
        [{"code": 2243, "tone": 3, "phones": [14, 25]}],
        None,
    ]


def test_without_pyarrow(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setitem(cast(Any, sys.modules), "pyarrow", None)
    with pytest.raises(ImportError, match="needs pyarrow"):
        phoneme.to_arrow(phoneme.py2code_batch(["ni3"]))
