"""The tables row by row, and what their rows can do."""

from __future__ import annotations

import copy
import importlib.metadata
import inspect
import pickle
import sys
import typing
from pathlib import Path
from typing import Any

import golden
import phoneme
import pytest
from phoneme import Language, Phone, PhoneType, Syllable, SyllableRow

ALL = list(golden.LANGUAGES)


@pytest.mark.parametrize("language", ALL)
def test_phones_are_the_golden_rows(language: str) -> None:
    rows = golden.phones(language)
    phones = phoneme.phones(language)
    assert [(p.id, int(p.type), p.name, p.feature) for p in phones] == rows
    for phone in phones:
        assert phone.language is golden.LANGUAGES[language]
        assert isinstance(phone.type, PhoneType)
        assert phoneme.phone(language, phone.id) is phone
        first = next(other for other in phones if other.name == phone.name)
        assert phoneme.phone(language, phone.name) is first
        assert phoneme.phone(language, phone.name.encode()) is first


@pytest.mark.parametrize("language", ALL)
def test_syllables_are_the_golden_rows(language: str) -> None:
    rows = phoneme.syllables(language)
    found = [
        (r.id, r.pinyin, r.initial and r.initial.id, r.final and r.final.id) for r in rows
    ]
    assert found == golden.syllables(language)
    assert {row.language for row in rows} <= {golden.LANGUAGES[language]}


def test_features_by_position() -> None:
    for phone in (*phoneme.phones("english"), *phoneme.phones("mandarin")):
        read = [phoneme.phone_feature(phone, i) for i in range(-2, 20)]
        assert read == ["", "", *phone.feature, *[""] * (20 - len(phone.feature))]


@pytest.mark.parametrize(
    "key, name",
    [(-1, "sil"), (61, "sil"), (2**80, "sil"), (-(2**80), "sil"), (2**32, "sil"), ("xx", "sil"),
     ("", "sil"), ("N", "sil"), ("n\0", "sil"), ("\ud800", "sil"), (b"\xff", "sil"), (True, "zh")],
)  # fmt: skip
def test_unknown_phones(key: Any, name: str) -> None:
    found = phoneme.phone("mandarin", key)
    assert found is not None and found.name == name


def test_names_that_no_phone_carries() -> None:
    assert phoneme.phone("mandarin", "E") is None
    assert phoneme.phone("mandarin", "ng") is None


@pytest.mark.parametrize("key", [None, 1.0, []])
def test_phones_are_asked_for_by_id_or_name(key: Any) -> None:
    with pytest.raises(TypeError, match="by id or name"):
        phoneme.phone("mandarin", key)


@pytest.mark.parametrize(
    "language, phones, syllables",
    [
        (10002, Language.MANDARIN, Language.MANDARIN),
        (20001, Language.AMERICAN_ENGLISH, Language.MANDARIN),
        (29999, Language.AMERICAN_ENGLISH, Language.MANDARIN),
        (30000, Language.MANDARIN, Language.MANDARIN),
        (-1, Language.MANDARIN, Language.MANDARIN),
        (2**70, Language.MANDARIN, Language.MANDARIN),
        (-(2**70), Language.MANDARIN, Language.MANDARIN),
    ],
)
def test_languages_in_place_of_others(language: int, phones: Language, syllables: Language) -> None:
    assert phoneme.phones(language)[0].language is phones
    assert phoneme.syllables(language)[0].language is syllables


def test_the_ways_to_name_a_language() -> None:
    for name, member in golden.LANGUAGES.items():
        spelt = "".join(list(name))  # another object than the name in the code
        forms: list[Any] = [name, spelt, member, int(member)]
        for language in forms:
            assert phoneme.phones(language) is phoneme.phones(member)


def test_wrong_languages() -> None:
    with pytest.raises(ValueError, match="'klingon'.*mandarin, cantonese, english"):
        phoneme.phones("klingon")
    language: Any
    for language in (None, 1.5, b"mandarin"):
        with pytest.raises(TypeError, match="a language must be"):
            phoneme.phones(language)


class Index:
    """What is an integer, or raises in the place of telling which."""

    def __init__(self, answer: Any) -> None:
        self.answer = answer

    def __index__(self) -> int:
        if isinstance(self.answer, int):
            return self.answer
        raise self.answer


INTEGERS: list[Any] = [
    phoneme.phones,
    lambda number: phoneme.phone("mandarin", number),
    lambda number: phoneme.code2ph(number),
    lambda number: phoneme.Phone("mandarin", number),
    lambda number: phoneme.Syllable("mandarin", [], number),
    lambda number: phoneme.marked_pinyin([number]),
    lambda number: phoneme.cut_whole("ni", max_cuts=number),
]


@pytest.mark.parametrize("function", INTEGERS)
def test_integers_by_index(function: Any) -> None:
    assert function(Index(31)) == function(31)
    for error in (KeyboardInterrupt, MemoryError, ValueError):
        with pytest.raises(error, match="^mine$"):
            function(Index(error("mine")))
    with pytest.raises(TypeError, match=", not Index$"):
        function(Index(TypeError("mine")))


def _examples() -> list[Any]:
    return [
        *phoneme.phones("english"),
        *phoneme.syllables("cantonese"),
        *phoneme.py2ph("ni3hao3"),
        *phoneme.pr2ph("E 3, n i 3"),
        phoneme.code2ph(2249),
    ]


@pytest.mark.parametrize("protocol", range(pickle.HIGHEST_PROTOCOL + 1))
def test_pickles_and_copies(protocol: int) -> None:
    for record in _examples():
        for other in (pickle.loads(pickle.dumps(record, protocol)), copy.deepcopy(record)):
            assert other == record and hash(other) == hash(record) and repr(other) == repr(record)
            if not isinstance(record, Syllable):
                assert other is record


def test_records_do_not_change() -> None:
    for record in _examples():
        public = [name for name in dir(record) if not name.startswith("_")]
        assert len(public) >= 5
        for name in (*public, "other"):
            with pytest.raises(AttributeError):
                setattr(record, name, 1)


@pytest.mark.skipif(sys.version_info < (3, 10), reason="types are immutable from Python 3.10")
@pytest.mark.parametrize("record", [Phone, SyllableRow, Syllable])
def test_their_types_do_not_change(record: Any) -> None:
    for name in ("other", "language", "__repr__"):
        with pytest.raises(TypeError, match="immutable type"):
            setattr(record, name, None)


def test_records_are_ordered_and_hashable() -> None:
    table: Any
    for table in (phoneme.phones("english"), phoneme.syllables("cantonese")):
        assert sorted(reversed(table)) == list(table)
        assert len(set(table)) == len(table)
    assert phoneme.phones("mandarin")[60] < phoneme.phones("cantonese")[0]
    assert phoneme.phone("mandarin", 1) != phoneme.phone("cantonese", 1)
    with pytest.raises(TypeError):
        phoneme.phones("english")[0] < 5  # type: ignore[operator]
    other: Any = "sil"
    assert phoneme.phones("english")[0] != other


def test_syllables_are_ordered_by_all_they_have() -> None:
    n, i = phoneme.phone("mandarin", "n"), phoneme.phone("mandarin", "i")
    assert n is not None and i is not None
    ordered = [
        Syllable("mandarin", []),
        Syllable("mandarin", [None]),
        Syllable("mandarin", [n], 0, 1),
        Syllable("mandarin", [n, None]),
        Syllable("mandarin", [n, i]),
        Syllable("mandarin", [n, i], 0, 0, 255),
        Syllable("mandarin", [n, i], 0, 127),
        Syllable("mandarin", [n, i], 2243, -128),
        Syllable("mandarin", [i], 1),
        Syllable("cantonese", []),
    ]
    assert sorted(reversed(ordered)) == ordered
    assert len(set(ordered)) == len(ordered) == len({hash(syllable) for syllable in ordered})


def test_constructors_give_rows_and_check() -> None:
    assert Phone("english", 7) is phoneme.phone("english", 7)
    assert SyllableRow("mandarin", 224) is phoneme.syllables("mandarin")[224]
    for make in (Phone, SyllableRow):
        rows: list[tuple[Any, int]] = [("english", 95), ("mandarin", -1), (10002, 0)]
        for language, number in [*rows, ("mandarin", 417), ("mandarin", 2**70)]:
            with pytest.raises(ValueError, match="row"):
                make(language, number)
    wrong: list[tuple[type[Exception], dict[str, Any]]] = [
        (ValueError, {"language": 10002}),
        (TypeError, {"phones": "n"}),
        (TypeError, {"phones": 3}),
        (ValueError, {"code": 65536}),
        (ValueError, {"code": -1}),
        (ValueError, {"tone": 128}),
        (ValueError, {"raw_tone": 256}),
        (TypeError, {"tone": "3"}),
    ]
    for error, change in wrong:
        arguments: dict[str, Any] = {"language": "mandarin", "phones": [], **change}
        with pytest.raises(error):
            Syllable(**arguments)


def test_reprs() -> None:
    assert repr(phoneme.phone("mandarin", "n")) == "Phone(mandarin, 14, 'n')"
    assert repr(phoneme.syllables("mandarin")[224]) == "SyllableRow(mandarin, 224, 'ni')"
    assert [repr(syllable) for syllable in phoneme.pr2ph("E n 3")] == [
        "Syllable(mandarin, 'None n', raw_tone=3)"
    ]


def test_everything_public_is_documented() -> None:
    assert len(phoneme.__all__) > 50
    for name in phoneme.__all__:
        public = getattr(phoneme, name)
        assert public.__module__ == "phoneme"
        assert ">>>" in (inspect.getdoc(public) or ""), name


def test_type_hints_can_be_read_at_run_time() -> None:
    counts = {}
    for name in phoneme.__all__:
        counts[name] = len(typing.get_type_hints(getattr(phoneme, name)))
    assert counts["py2code"] == 4 and counts["chart"] == 5 and counts["ph2ph"] == 4
    assert counts["CodeBatch"] == 3 and counts["Cut"] == 5 and counts["Problem"] == 3
    assert typing.get_type_hints(phoneme.Problem)["range"] is phoneme.Range
    assert typing.get_type_hints(phoneme.AnalyzedSyllable)["row"] == typing.Optional[int]


def test_the_wheel_holds_the_license() -> None:
    try:
        files = importlib.metadata.files("phoneme") or []
    except importlib.metadata.PackageNotFoundError:
        pytest.skip("the package was not installed from a wheel")
    texts = [file.read_text() for file in files if file.name == "LICENSE"]
    project = Path(__file__).resolve().parents[2]
    assert texts == [(project / "LICENSE").read_text(encoding="utf-8")]
