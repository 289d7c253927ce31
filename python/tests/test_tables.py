"""The tables row by row, and what their rows can do."""

from __future__ import annotations

import copy
import functools
import importlib.metadata
import inspect
import pickle
import re
import subprocess
import sys
import typing
from pathlib import Path
from typing import Any, Optional

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
        assert phoneme.phone(phone.id, language) is phone
        first = next(other for other in phones if other.name == phone.name)
        assert phoneme.phone(phone.name, language) is first
        assert phoneme.phone(phone.name.encode(), language) is first


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
    [(-1, "sil"), (61, "sil"), (2**80, "sil"), (-(2**80), "sil"), (2**32 + 5, "sil"),
     ("nope", "sil"), ("", "sil"), ("N", "sil"), ("n\0", "sil"), ("\ud800", "sil"),
     (b"\xff", "sil"), ("E", None), ("ng", None)],
)  # fmt: skip
def test_unknown_phones(key: Any, name: Optional[str]) -> None:
    """The library has an answer for anything, which is given where it is asked for."""
    language: Any
    for language in ("mandarin", 10000):
        with pytest.raises(phoneme.ConversionError, match="at 0 is not a phone of mandarin$") as caught:
            phoneme.phone(key, language)
        shown = key if isinstance(key, (str, bytes)) or abs(key) < 2**64 else "an int of more"
        assert str(caught.value.piece).startswith(str(shown)) and caught.value.offset == 0
        assert phoneme.phone(key, language, errors="none") is None
        answer = phoneme.phone(key, language, fallback=True)
        assert (answer and answer.name) == name


@pytest.mark.parametrize("key", [None, 1.0, [], True])
def test_phones_are_asked_for_by_id_or_name(key: Any) -> None:
    with pytest.raises(TypeError, match="by id or name"):
        phoneme.phone(key, "mandarin")


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
    assert phoneme.phones(language, fallback=True)[0].language is phones
    assert phoneme.syllables(language, fallback=True)[0].language is syllables


#: Every function with a language, as one that takes nothing else.
OF_LANGUAGE: dict[str, Any] = {
    "phones": phoneme.phones,
    "syllables": phoneme.syllables,
    "phone": functools.partial(phoneme.phone, 0),
    "py2ph": functools.partial(phoneme.py2ph, "ni3"),
    "py2code": functools.partial(phoneme.py2code, "ni3"),
    "pyw2py": functools.partial(phoneme.pyw2py, "ni"),
    "tone_adaptation": functools.partial(phoneme.tone_adaptation, 3),
    "code2ph": functools.partial(phoneme.code2ph, 13),
    "code2py": functools.partial(phoneme.code2py, 13),
    "pr2ph": functools.partial(phoneme.pr2ph, ""),
    "ph2ph": functools.partial(phoneme.ph2ph, b""),
    "ph2tp": functools.partial(phoneme.ph2tp, 3),
    "lexicon_module_phone_type": functools.partial(phoneme.lexicon_module_phone_type, "sil"),
    "analyze": functools.partial(phoneme.analyze, "ni3"),
    "cut_whole": functools.partial(phoneme.cut_whole, "ni"),
    "py2code_batch": functools.partial(phoneme.py2code_batch, ["ni3"]),
    "py2ph_batch": functools.partial(phoneme.py2ph_batch, ["ni3"]),
    "pr2ph_batch": functools.partial(phoneme.pr2ph_batch, [""]),
    "pyw2py_batch": functools.partial(phoneme.pyw2py_batch, ["ni3"]),
    "normalize_batch": functools.partial(phoneme.normalize_batch, ["ni3"]),
    "analyze_batch": functools.partial(phoneme.analyze_batch, ["ni3"]),
}
#: These have no fallback: rows are of one language, and what is drawn or counted has a name.
STRICT: dict[str, Any] = {
    "Phone": functools.partial(phoneme.Phone, 0),
    "SyllableRow": functools.partial(phoneme.SyllableRow, 0),
    "Syllable": functools.partial(phoneme.Syllable, []),
    "chart": phoneme.chart,
    "report": functools.partial(phoneme.report, []),
}
NO_LANGUAGE = "the languages are mandarin (zh, zho, zh-CN, cmn, cmn-CN), cantonese (yue, yue-HK, zh-HK), "


def test_every_function_with_a_language_is_tried() -> None:
    takes = {
        name
        for name in phoneme.__all__
        if inspect.isfunction(getattr(phoneme, name))
        and "language" in inspect.signature(getattr(phoneme, name)).parameters
    }
    assert takes == {*OF_LANGUAGE, "chart", "report"}
    for name in takes:
        parameters = list(inspect.signature(getattr(phoneme, name)).parameters.values())
        assert parameters[0 if name in ("phones", "syllables", "chart") else 1].name == "language"


@pytest.mark.parametrize("name", [*OF_LANGUAGE, *STRICT])
def test_languages_that_are_not_registered(name: str) -> None:
    function = {**OF_LANGUAGE, **STRICT}[name]
    for language, shown in ((77, "77"), (20001, "20001"), (-1, "-1"), (2**70, "an int of more"),
                            (2**32 + 10000, str(2**32 + 10000)), (10000 - 2**32, "-42949")):  # fmt: skip
        with pytest.raises(ValueError, match=f"^unknown language {shown}.*; ") as caught:
            function(language)
        assert NO_LANGUAGE in str(caught.value) and type(caught.value) is ValueError
        if name in OF_LANGUAGE:
            function(language, fallback=True)
    if name in OF_LANGUAGE:
        assert function(10000, fallback=True) is not None
        with pytest.raises(ValueError, match="^unknown language 'klingon'; "):
            function("klingon", fallback=True)


NAMES = {
    "mandarin": ["mandarin", "zh", "zho", "zh-CN", "cmn", "cmn-CN"],
    "cantonese": ["cantonese", "yue", "yue-HK", "zh-HK"],
    "english": ["english", "en", "eng", "en-US"],
}


def test_the_ways_to_name_a_language() -> None:
    for name, member in golden.LANGUAGES.items():
        spelt = "".join(list(name))  # another object than the name in the code
        names = [form for code in NAMES[name] for form in (code, code.upper(), code.lower())]
        forms: list[Any] = [name, spelt, member, int(member), *names]
        forms += [code.replace("-", "_") for code in names]
        for language in forms:
            assert phoneme.phones(language) is phoneme.phones(member)


@pytest.mark.parametrize("name", ["klingon", "", "zh-TW", "zh-CN-x", "mandarin ", "m\0", "\ud800"])
def test_names_of_no_language(name: str) -> None:
    with pytest.raises(ValueError) as caught:
        phoneme.phones(name)
    assert str(caught.value) == f"unknown language {name!r}; {NO_LANGUAGE}english (en, eng, en-US)"


def test_wrong_languages() -> None:
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
    lambda number: phoneme.phones(number, fallback=True),
    lambda number: phoneme.phone(number, "mandarin"),
    lambda number: phoneme.code2ph(number),
    lambda number: phoneme.Phone(number, "mandarin"),
    lambda number: phoneme.Syllable([], "mandarin", number),
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
        *phoneme.pr2ph("E 3, n i 3", fallback=True),
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
        assert len(public) >= 5 and "language" in public
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
    assert phoneme.phone(1, "mandarin") != phoneme.phone(1, "cantonese")
    with pytest.raises(TypeError):
        phoneme.phones("english")[0] < 5  # type: ignore[operator]
    other: Any = "sil"
    assert phoneme.phones("english")[0] != other


def test_syllables_are_ordered_by_all_they_have() -> None:
    n, i = phoneme.phone("n", "mandarin"), phoneme.phone("i", "mandarin")
    gap: Any = None
    ordered = [
        Syllable([], "mandarin"),
        Syllable([gap], "mandarin"),
        Syllable([n], "mandarin", 0, 1),
        Syllable([n, gap], "mandarin"),
        Syllable([n, i], "mandarin"),
        Syllable([n, i], "mandarin", 0, 0, 254),
        Syllable([n, i], "mandarin", 0, 0, 255),
        Syllable([n, i], "mandarin", 0, 127),
        Syllable([n, i], "mandarin", 2243, -128),
        Syllable([i], "mandarin", 1),
        Syllable([], "cantonese"),
    ]
    assert sorted(reversed(ordered)) == ordered
    assert len(set(ordered)) == len(ordered) == len({hash(syllable) for syllable in ordered})


def test_constructors_give_rows_and_check() -> None:
    assert Phone(7, "english") is phoneme.phone(7, "english")
    assert SyllableRow(224, "mandarin") is phoneme.syllables("mandarin")[224]
    for make in (Phone, SyllableRow):
        rows: list[tuple[int, Any]] = [(95, "english"), (-1, "mandarin"), (61 + 417, 10000)]
        for number, language in rows:
            name = "english" if language == "english" else "mandarin"
            with pytest.raises(ValueError, match=f"^no row {number} in {name}$"):
                make(number, language)
        with pytest.raises(ValueError, match="^a row is .* not an int of more than 64 bits$"):
            make(2**70, "mandarin")
    wrong: list[tuple[type[Exception], dict[str, Any]]] = [
        (ValueError, {"language": 10002}),
        (TypeError, {"language": None}),
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
    assert repr(phoneme.phone("n", "mandarin")) == "Phone(14, mandarin, 'n')"
    assert repr(phoneme.syllables("mandarin")[224]) == "SyllableRow(224, mandarin, 'ni')"
    assert [repr(syllable) for syllable in phoneme.pr2ph("E n 3", fallback=True)] == [
        "Syllable('None n', mandarin, raw_tone=3)"
    ]


def test_spellings_of_syllables() -> None:
    language: Any
    for language in ("mandarin", "cantonese"):
        for row in phoneme.syllables(language):
            for tone in range(10):
                assert phoneme.code2ph(row.id * 10 + tone, language).spelling == row.pinyin
    n = phoneme.phone("n")
    for syllable, spelling in (
        (phoneme.py2ph("NiLv3")[1], "lv"),
        (phoneme.pr2ph("n i 3")[0], "n i"),
        (phoneme.pr2ph("hh ax 0", "english")[0], "hh ax"),
        (phoneme.pr2ph("E n 3", fallback=True)[0], "None n"),
        (Syllable([n], "mandarin", 4170), "n"),  # the first code without a row
        (Syllable([n], "mandarin", 4169), phoneme.syllables("mandarin")[416].pinyin),
        (Syllable([], "english", 10), ""),
    ):
        assert syllable.spelling == spelling
    for text, language in (("Nǐ hǎo, lǜ yidianr", 10000), ("m4goi1", 10001), ("HH AH0", "en")):
        read = phoneme.analyze(text, language).syllables
        assert read and [s.spelling for s in read] == [s.syllable.spelling for s in read]


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
    assert counts["py2code"] == 5 and counts["chart"] == 5 and counts["ph2ph"] == 5
    assert counts["CodeBatch"] == 3 and counts["Cut"] == 5 and counts["Problem"] >= 3
    assert typing.get_type_hints(phoneme.Problem)["range"] is phoneme.Range
    assert typing.get_type_hints(phoneme.AnalyzedSyllable)["row"] == typing.Optional[int]


PROJECT = Path(__file__).resolve().parents[2]


def _wheel_files() -> list[importlib.metadata.PackagePath]:
    try:
        return importlib.metadata.files("phoneme") or []
    except importlib.metadata.PackageNotFoundError:
        pytest.skip("the package was not installed from a wheel")


def test_the_wheel_holds_the_license() -> None:
    texts = [file.read_text() for file in _wheel_files() if file.name == "LICENSE"]
    assert texts == [(PROJECT / "LICENSE").read_text(encoding="utf-8")]


def test_the_wheel_needs_only_python_and_numpy() -> None:
    """The module needs the system's own libraries, and the package NumPy."""
    (module,) = [file for file in _wheel_files() if file.name.startswith("_core.") and file.suffix == ".so"]
    command = ["readelf", "--dynamic", "--wide", str(module.locate())]
    lines = subprocess.run(command, capture_output=True, text=True, check=True).stdout
    needed = set(re.findall(r"\(NEEDED\).*\[(.*?)\.so", lines))
    assert {"libc", "libstdc++"} <= needed <= {"libc", "libstdc++", "libm", "libgcc_s", "ld-linux-x86-64"}
    required = importlib.metadata.requires("phoneme") or []
    assert [name for name in required if "extra ==" not in name] == ["numpy"]
    assert [file.name for file in _wheel_files() if file.suffix == ".tsv"] == ["jyutping_aliases.tsv"]


def test_both_readmes_install_by_the_same_line() -> None:
    lines = [
        re.findall("^    .* -m venv .*$", (PROJECT / name).read_text("utf-8"), re.MULTILINE)
        for name in ("README.md", "python/README.md")
    ]
    assert lines[0] == lines[1] and len(lines[0]) == 1
    for option in ("--system-site-packages", "--no-build-isolation", "--no-index"):
        assert option in lines[0][0]
