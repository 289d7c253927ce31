"""What a conversion that fails reports: the piece that is wrong, and where it is."""

from __future__ import annotations

import pickle
import types
from pathlib import Path
from typing import Any

import numpy as np
import phoneme
import pytest
from phoneme import ConversionError, _core, _errors


def _error(function: Any, *arguments: Any, **options: Any) -> ConversionError:
    assert function(*arguments, **options, errors="none") is None
    with pytest.raises(ConversionError) as caught:
        function(*arguments, **options)
    error = caught.value
    assert error.text[error.offset : error.offset + len(error.piece)] == error.piece
    return error


@pytest.mark.parametrize(
    "text, piece, offset",
    [
        ("xyz3", "xyz3", 0),
        ("ni3 xyz3", "xyz3", 4),
        ("ni3 Xyz3 abc4", "Xyz3", 4),
        ("nihao3", "nihao3", 0),
        ("ni33", "3", 3),
        (" 3", "3", 1),
        ("vma ma xx3", "xx3", 7),
        ("vn-i n-i", "n-i", 5),
        ("q-ix q-i", "q-i", 5),
        ("xx xx3", "xx3", 3),
        ("漢字 ni3 hoa3 漢", "hoa3", 7),
        ("漢字3", "漢字3", 0),
        ("ni3 é\ud8003", "é\ud8003", 4),
        ("ni3 \ud800 ma x😀3", "x😀3", 9),
        (b"ni3 \xff3", b"\xff3", 4),
        ("漢 ni hoa3".encode(), b"hoa3", 7),
        ("漢ni hoa3", "漢ni", 0),  # letters of a syllable, with what is not a letter
        ("ni3\vhoa3\fma3", "hoa3", 4),
        ("Évma hoa3", "hoa3", 5),
    ],
)
def test_pinyin(text: Any, piece: Any, offset: int) -> None:
    for function in (phoneme.py2ph, phoneme.py2code):
        error = _error(function, text)
        assert (error.text, error.piece, error.offset) == (text, piece, offset)
        assert error.language == "mandarin"


@pytest.mark.parametrize(
    "text, language, as_ids, piece, offset, reason",
    [
        ("n xx 3", "mandarin", False, "xx", 2, "not a phone of mandarin"),
        ("n i 3, h xx 3", "mandarin", True, "xx", 9, "not a phone of mandarin"),
        ("n i 3, aa", "mandarin", False, "aa", 7, "expected phones and a digit"),
        ("3", "english", False, "3", 0, "expected phones and a digit"),
        ("n i", "mandarin", False, "i", 2, "is not a tone digit"),
        ("n i 33", "mandarin", False, "33", 4, "is not a tone digit"),
        ("n  i 3", "mandarin", False, "", 2, "space"),
        (" \tn i x\r\n, n", "mandarin", False, "x", 6, "is not a tone digit"),
        ("E 3, ng 3", "mandarin", True, "E", 0, "not a phone"),
        ("n i 3, ng 3", "mandarin", False, "ng", 7, "not a phone of mandarin"),
        ("n E i 3, n x 3", "mandarin", False, "E", 2, "not a phone of mandarin"),
        ("hh 漢 0", "english", False, "漢", 3, "not a phone of english"),
        ("hh ax 0, \ud800 1", 12345, False, "\ud800", 9, "not a phone of language 12345"),
        (b"hh \xff 0", 20000, True, b"\xff", 3, "not a phone of english"),
        ("n\t i 3", "mandarin", False, "n\t", 0, "not a phone"),
        ("n\ti 3, n i 3 x", "mandarin", False, "n\ti", 0, "not a phone"),
    ],
)
def test_pronunciations(
    text: Any, language: Any, as_ids: bool, piece: Any, offset: int, reason: str
) -> None:
    fallback = language == 12345
    error = _error(phoneme.pr2ph, text, language, as_ids=as_ids, fallback=fallback)
    assert (error.text, error.piece, error.offset) == (text, piece, offset)
    assert reason in str(error) and error.language == language


def test_phone_ids_and_codes() -> None:
    error = _error(phoneme.ph2ph, bytes([24, 35, 3, 250, 251]))
    assert (error.piece, error.offset) == (b"\xfa", 3)
    assert type(error.text) is type(error.piece) is bytes
    error = _error(phoneme.code2ph, 65535, "cantonese")
    assert (error.text, error.piece, error.offset) == ("65535", "65535", 0)
    assert str(error) == "'65535' at 0 is not a syllable code of cantonese"


@pytest.mark.parametrize(
    "buffer",
    [bytearray, memoryview, lambda ids: memoryview(ids).cast("b"),
     lambda ids: memoryview(ids).cast("c"), lambda ids: np.frombuffer(ids, np.uint8),
     lambda ids: np.frombuffer(ids, np.int8)],
)  # fmt: skip
def test_phone_ids_of_any_buffer(buffer: Any) -> None:
    ids = bytes([24, 35, 3, 250, 251])
    assert phoneme.ph2ph(buffer(ids), errors="none") is None
    with pytest.raises(ConversionError) as caught:
        phoneme.ph2ph(buffer(ids))
    error = caught.value
    assert type(error.text) is type(error.piece) is bytes
    assert (error.text, error.piece, error.offset) == (ids, b"\xfa", 3)
    assert str(pickle.loads(pickle.dumps(error))) == str(error)


@pytest.mark.parametrize("text", [b"n i 3, h xx 3", "n i 3, h xx 3"])
@pytest.mark.parametrize("as_ids", [False, True])
def test_pronunciations_of_str_and_bytes(text: Any, as_ids: bool) -> None:
    error = _error(phoneme.pr2ph, text, as_ids=as_ids)
    assert type(error.text) is type(error.piece) is type(text)
    for buffer in (bytearray(b"n"), memoryview(b"n"), np.array([110], np.uint8)):
        with pytest.raises(TypeError, match="a text must be str or bytes, not"):
            phoneme.pr2ph(buffer, as_ids=as_ids)  # type: ignore[call-overload]


def test_languages_in_messages() -> None:
    cases: list[tuple[Any, str]] = [
        (12345, "language 12345"),
        (np.int64(10001), "cantonese"),
        (2**62, f"language {2**62}"),
        (10**5000, "an unregistered language"),
        (-(10**5000), "an unregistered language"),
    ]
    for language, named in cases:
        error = _error(phoneme.py2code, "xyz3", language, fallback=True)
        assert str(error) == f"'xyz3' at 0 is not a syllable of {named}"
        error = _error(phoneme.code2ph, 65535, language, fallback=True)
        assert str(error) == f"'65535' at 0 is not a syllable code of {named}"


def test_gaps_are_no_failure_of_the_library() -> None:
    error = _error(phoneme.pr2ph, "E i 3, E xx 3", "mandarin", fallback=True)
    assert (error.piece, error.offset) == ("xx", 9)
    assert [None in s.phones for s in phoneme.pr2ph("E i 3, a 3", fallback=True)] == [True, False]
    assert phoneme.pr2ph("E i 3", errors="none") is None


@pytest.mark.parametrize(
    "text, piece",
    [
        ("v" * 2000 + " " + "x" * 2000 + "3", "x" * 2000 + "3"),  # letters dropped before it
        ("v" * 4000 + "3", "v" * 4000 + "3"),
        ("ni3" * 1000 + "hello " * 1000 + "xyz3", "xyz3"),
        ("v " * 1000 + "vx" * 1000 + "3", "vx" * 1000 + "3"),
        ("Vv" * 1000 + "v" * 2000 + "n3", "Vv" + "v" * 2000 + "n3"),
    ],
)
def test_the_search_for_the_piece_is_linear(
    text: str, piece: str, monkeypatch: pytest.MonkeyPatch
) -> None:
    read: list[Any] = []

    def pieces(text: Any, *others: Any) -> Any:
        read.append(text)
        return _core.pieces(text, *others)

    # The library cuts in one pass, and nothing else is asked.
    monkeypatch.setattr(_errors, "_core", types.SimpleNamespace(LANGUAGES={}, pieces=pieces))
    with pytest.raises(ConversionError) as caught:
        phoneme.py2code(text)
    assert (caught.value.piece, caught.value.offset) == (piece, len(text) - len(piece))
    assert len(read) == 1 and read[0] is text


@pytest.mark.parametrize(
    "text, language, pieces",
    [
        ("", "mandarin", ()),
        (" '`\t", "mandarin", ()),
        ("ni3 Hao", "mandarin", (((0, 3), 224, 3), ((4, 7), 117, 0))),
        ("ni9hoa3", "mandarin", (((0, 3), 224, 9), ((3, 7), None, 0))),
        (" yivv", "mandarin", (((1, 3), 370, 0),)),  # letters that no syllable was found for
        ("漢 é3 ni3", "mandarin", (((2, 4), None, 0), ((5, 8), 224, 3))),  # in characters
        ("漢 é3 ni3".encode(), "mandarin", (((4, 7), None, 0), ((8, 11), 224, 3))),  # in bytes
        ("nei5", "cantonese", (((0, 4), 403, 5),)),
        ("ni3 ni", "english", (((0, 3), None, 0),)),
        ("ni3", 12345, (((0, 3), 224, 3),)),
    ],
)
def test_pieces(text: Any, language: Any, pieces: Any) -> None:
    assert _core.pieces(text, language, True) == pieces


@pytest.mark.parametrize(
    "function, text, piece",
    [
        (phoneme.pr2ph, "n i 3, " * 500 + "h xx 3", "xx"),
        (phoneme.pr2ph, "n " * 2000 + "xx 3", "xx"),
        (phoneme.pr2ph, "n" * 4000 + " 3", "n" * 4000),
        (phoneme.ph2ph, bytes([24, 35, 3]) * 1000 + b"\xfa", b"\xfa"),
    ],
)
def test_the_other_searches_are_linear(
    function: Any, text: Any, piece: Any, monkeypatch: pytest.MonkeyPatch
) -> None:
    tried: list[int] = []

    def counted(parse: Any) -> Any:
        def parse_and_count(data: Any, *others: Any) -> Any:
            tried.append(len(data))
            return parse(data, *others)

        return parse_and_count

    counting = types.SimpleNamespace(**vars(_core))
    counting.pr2ph_ids, counting.ph2ph = counted(_core.pr2ph_ids), counted(_core.ph2ph)
    monkeypatch.setattr(_errors, "_core", counting)
    with pytest.raises(ConversionError) as caught:
        function(text)
    assert caught.value.piece == piece
    assert sum(tried) <= 4 * len(text) and len(tried) <= len(text)


def test_what_cannot_be_written() -> None:
    syllables = phoneme.py2ph("ni3 hao3")
    for function, items, index in (
        (phoneme.marked_pinyin, [2243, 9990], 1),
        (phoneme.marked_pinyin, [*syllables, *phoneme.pr2ph("n i 3")], 2),
        (phoneme.jyutping, syllables, 0),
        (phoneme.jyutping, [8], 0),
        (phoneme.pronunciation_string, [*syllables, phoneme.Syllable([], "mandarin")], 2),
    ):
        error = _error(function, items)
        assert error.text == tuple(items)  # type: ignore[arg-type]
        assert (error.piece, error.offset) == ((items[index],), index)  # type: ignore[index]


CALLS: list[tuple[Any, Any, Any]] = [
    (phoneme.py2ph, "ni3", "xyz3"),
    (phoneme.py2code, "ni3", "xyz3"),
    (phoneme.code2ph, 2243, 65535),
    (phoneme.code2py, 2243, 4170),
    (phoneme.phone, "n", "nope"),
    (phoneme.phone, 5, 2**32 + 5),
    (phoneme.pr2ph, "n i 3", "n"),
    (phoneme.ph2ph, b"\x03", b"\xff"),
    (phoneme.marked_pinyin, [2243], [9]),
    (phoneme.jyutping, [1], [8]),
    (phoneme.pronunciation_string, [], [phoneme.Syllable([], "mandarin")]),
]


@pytest.mark.parametrize("function, good, bad", CALLS)
def test_the_values_of_errors(function: Any, good: Any, bad: Any) -> None:
    assert function(good, errors="none") == function(good) == function(good, errors="raise")
    assert function(bad, errors="none") is None
    with pytest.raises(ConversionError):
        function(bad, errors="raise")
    for argument in (good, bad):
        with pytest.raises(ValueError, match="'raise' or 'none', not 'ignore'") as caught:
            function(argument, errors="ignore")
        assert not isinstance(caught.value, ConversionError)


def test_errors_are_value_errors_and_pickle() -> None:
    error = _error(phoneme.py2code, "ni3 hoa3", 10001)
    assert isinstance(error, ValueError)
    assert str(error).startswith("'ni3' at 0 is not a syllable of cantonese")
    other = pickle.loads(pickle.dumps(error))
    assert type(other) is ConversionError and str(other) == str(error)
    assert vars(other) == vars(error) and len(vars(error)) == 5


def _long_rules() -> Any:
    return phoneme.analyze("ni3", rules=[f"{i}" * 10_000 for i in range(100)])


LONG = "x" * 100_000
MESSAGES: list[tuple[str, Any, int]] = [
    ("language", lambda: phoneme.phones(LONG), 200),
    ("language of a batch", lambda: phoneme.py2code_batch([], LONG), 200),
    ("constructor", lambda: phoneme.Phone(3, LONG), 200),
    ("number", lambda: phoneme.phones(2**60), 200),
    ("piece", lambda: phoneme.py2code(LONG + "3"), 200),
    ("wide piece", lambda: phoneme.py2code("\U0001f600" * 100_000 + "3"), 200),
    ("phone", lambda: phoneme.phone(LONG), 200),
    ("rules", _long_rules, 1000),
    ("errors", lambda: phoneme.py2code("ni3", errors=LONG), 200),  # type: ignore[call-overload]
    ("cutting", lambda: phoneme.analyze("ni3", cutting=LONG), 200),  # type: ignore[arg-type]
    ("format", lambda: phoneme.lexicon_entry("a", LONG), 200),  # type: ignore[arg-type]
    ("headword", lambda: phoneme.lexicon_entry("a", "cedict", headword=LONG), 200),  # type: ignore[arg-type]
    ("lines of a lexicon", lambda: phoneme.lexicon_entry("a\n" + LONG, "lines"), 200),
    ("spacing", lambda: phoneme.jyutping([], spacing=LONG), 200),  # type: ignore[call-overload]
    ("picture", lambda: phoneme.chart("mandarin", path=LONG), 200),
    ("spelling", lambda: phoneme.Aliases({LONG: "ngai"}), 300),
    ("alias", lambda: phoneme.Aliases({"ai": LONG}), 300),
    ("no alias", lambda: phoneme.Aliases({"#" + LONG: LONG}), 300),
    ("aliases", lambda: phoneme.Aliases({f"{i}": "ngai" for i in range(10_000)}), 1500),
    ("lines", lambda: phoneme.parse_aliases("x\n" * 100_000), 1500),
    ("long lines", lambda: phoneme.parse_aliases((LONG + "\tngai\n") * 20), 2000),
]


@pytest.mark.parametrize("call, most", [case[1:] for case in MESSAGES], ids=[case[0] for case in MESSAGES])
def test_messages_are_bounded(call: Any, most: int) -> None:
    with pytest.raises(ValueError) as caught:
        call()
    assert len(str(caught.value)) < most


def test_formats_in_messages_are_bounded() -> None:
    row: Any = np.zeros(2, [(f"field{i}", np.uint8) for i in range(1000)])
    calls: list[Any] = [
        lambda: phoneme.ph2ph(row),
        lambda: phoneme.py2code_batch((b"ni3", row)),
        lambda: phoneme.py2code_batch((row, np.array([0, 1]))),
    ]
    for call in calls:
        with pytest.raises(TypeError, match=r"format 'T\{") as caught:
            call()
        assert len(str(caught.value)) < 300


def test_lists_in_messages_name_ten() -> None:
    with pytest.raises(ValueError) as caught:
        phoneme.parse_aliases("x\n" * 13)
    lines = str(caught.value).split("; ")
    assert [line.split(":")[0] for line in lines] == [*(f"line {i + 1}" for i in range(10)), "and 3 more"]
    with pytest.raises(ValueError) as caught:
        phoneme.parse_aliases("x\n" * 10)
    assert "more" not in str(caught.value)
    with pytest.raises(ValueError, match=r"; and 2 more$"):
        phoneme.Aliases({f"{i}": "ngai" for i in range(12)})
    with pytest.raises(ValueError, match=r'^line 1: "x{59}\.\.\.x+" is not a spelling of 1 to 8'):
        phoneme.parse_aliases(LONG + "\tngai")


BOOLS: list[Any] = [
    lambda: phoneme.phone(True),
    lambda: phoneme.phone(False, fallback=True),
    lambda: phoneme.code2py(True),
    lambda: phoneme.code2ph(True),
    lambda: phoneme.ph2tp(True),
    lambda: phoneme.tone_adaptation(True),
    lambda: phoneme.phones(True),
    lambda: phoneme.py2code("ni3", True, fallback=True),
    lambda: phoneme.py2code_batch(["ni3"], True, fallback=True),
    lambda: phoneme.cut_whole("xian", max_cuts=True),
    lambda: phoneme.marked_pinyin([True]),
    lambda: phoneme.Phone(True, "mandarin"),
    lambda: phoneme.Syllable([], "mandarin", True),
]


@pytest.mark.parametrize("call", BOOLS)
def test_a_bool_is_not_a_number(call: Any) -> None:
    with pytest.raises(TypeError, match="not bool"):
        call()


HOSTILE = "E\x1b[2J\n\u202e" + "x" * 1_000_000
HOSTILE_AS_SHOWN = r"E\x1b[2J\x0a\u202e" + "x" * 53 + "..."
Hostile: Any = type(HOSTILE, (), {})
HostileMapping: Any = type(HOSTILE, (dict,), {})
HostileTable: Any = type(HOSTILE, (), {"ndim": 2})

TYPES_IN_MESSAGES: list[Any] = [
    lambda: phoneme.py2ph(Hostile()),
    lambda: phoneme.py2ph("ni3", Hostile()),
    lambda: phoneme.phone(Hostile()),
    lambda: phoneme.code2ph(Hostile()),
    lambda: phoneme.ph2ph(Hostile()),
    lambda: phoneme.py2code_batch(["ni3", Hostile()]),
    lambda: phoneme.py2code_batch(Hostile()),
    lambda: phoneme.py2code_batch(HostileMapping()),
    lambda: phoneme.py2code_batch(HostileTable()),
    lambda: phoneme.py2code_batch((Hostile(), np.zeros(1, np.int64))),
    lambda: phoneme.py2code_batch(["ni3"])[Hostile()],
    lambda: phoneme.normalize_jyutping("ni5", aliases=Hostile()),
    lambda: phoneme.normalize_pinyin("ni5", rules=Hostile()),
    lambda: phoneme.lexicon_entry(Hostile(), "kaldi"),
    lambda: phoneme.lexicon_entry("a", Hostile()),
    lambda: phoneme.lexicon_entry("a", "tsv", column=Hostile()),
    lambda: phoneme.lexicon_entry("a", "cedict", headword=Hostile()),
    lambda: phoneme.lexicon_entries(Hostile(), "kaldi"),
    lambda: phoneme.Phone(Hostile(), "mandarin"),
    lambda: phoneme.Syllable([Hostile()], "mandarin"),
    lambda: phoneme.Syllable(Hostile(), "mandarin"),
    lambda: phoneme.marked_pinyin([Hostile()]),
    lambda: phoneme.marked_pinyin(Hostile()),
    lambda: phoneme.jyutping(Hostile()),
    lambda: phoneme.pronunciation_string([Hostile()]),
    lambda: phoneme.pronunciation_string(Hostile()),
    lambda: phoneme.charts.coverage(Hostile()),
    lambda: phoneme.charts.coverage(["ni3", Hostile()]),
    lambda: phoneme.charts.coverage([], column=Hostile()),
]


@pytest.mark.parametrize("call", TYPES_IN_MESSAGES)
def test_names_of_types_in_messages_are_escaped_and_bounded(call: Any) -> None:
    with pytest.raises(TypeError) as caught:
        call()
    message = str(caught.value)
    assert HOSTILE_AS_SHOWN in message and message.isprintable() and len(message) < 400


class HostileText(str):
    """A text with a repr of its own."""

    def __repr__(self) -> str:
        return "\x1b[2J\u202e\ud800\U000e0001" + "y" * 1_000_000


VALUES_IN_MESSAGES: list[Any] = [
    lambda: phoneme.py2ph("ni3", HostileText("x")),
    lambda: phoneme.py2ph("ni3", errors=HostileText("x")),  # type: ignore[call-overload]
    lambda: phoneme.phone(HostileText("?")),
    lambda: phoneme.analyze("ni3", rules=[HostileText("x")]),
    lambda: phoneme.analyze("ni3", cutting=HostileText("x")),  # type: ignore[arg-type]
    lambda: phoneme.lexicon_entry("a", HostileText("x")),  # type: ignore[arg-type]
    lambda: phoneme.lexicon_entry("a", "cedict", headword=HostileText("x")),  # type: ignore[arg-type]
    lambda: phoneme.lexicon_entry(HostileText("a\nb"), "kaldi"),
    lambda: phoneme.marked_pinyin([2243], spacing=HostileText("x")),  # type: ignore[call-overload]
    lambda: phoneme.Aliases({HostileText("0"): "ngai"}),
    lambda: phoneme.chart("mandarin", path=HostileText("x")),
]


@pytest.mark.parametrize("call", VALUES_IN_MESSAGES)
def test_values_in_messages_are_escaped_and_bounded(call: Any) -> None:
    with pytest.raises(ValueError) as caught:
        call()
    message = str(caught.value)
    shown = r"\x1b[2J\u202e\ud800\U000e0001" + "y" * 53 + "..."
    assert shown in message and message.isprintable() and len(message) < 400


def test_texts_of_tables_in_messages_are_escaped(tmp_path: Path) -> None:
    for alias in ("\x1b[2J\u202e" + "x" * 20, "\x1b[2J\u202e" + "x" * 1_000_000):
        for read, table in ((phoneme.parse_aliases, alias + "\tngai"), (phoneme.Aliases, {alias: "ngai"})):
            with pytest.raises(ValueError, match=r'"\\x1b\[2J\\u202exxx') as caught:
                read(table)  # type: ignore[operator]
            assert str(caught.value).isprintable() and len(str(caught.value)) < 400
    path = tmp_path / "\x1b[2J\u202e.tsv"
    path.write_text("ni3\n")
    with pytest.raises(ValueError, match=r"/\\x1b\[2J\\u202e[.]tsv:1: no column 1 in 1 field") as caught:
        phoneme.charts.coverage(path)
    assert str(caught.value).isprintable()


def test_messages_stay_short() -> None:
    error = _error(phoneme.py2code, "ni3 " * 100_000 + "hoa3")
    assert error.offset == 400_000 and len(str(error)) < 200
