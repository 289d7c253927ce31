"""Each conversion of one text, against the tables and known answers."""

from __future__ import annotations

import ctypes
import inspect
import pickle
from typing import Any, Optional, Union

import golden
import numpy as np
import phoneme
import pytest

CHINESE = ["mandarin", "cantonese"]
TOPS = {"mandarin": 5, "cantonese": 7}


def _names(syllables: Any) -> list[str]:
    assert syllables is not None
    return [" ".join(p.name if p else "-" for p in s.phones) for s in syllables]


@pytest.mark.parametrize("language", CHINESE)
def test_every_syllable_in_every_tone(language: str) -> None:
    rows = golden.syllables(language)
    phones = phoneme.phones(language)
    ids = {row.pinyin: row.id for row in reversed(rows)}
    for row in rows:
        for digit in ("", *"0123456789"):
            tone = phoneme.tone_adaptation(int(digit or 0), language)
            if row.pinyin != row.pinyin.lower():
                continue  # a capital opens a syllable: no text names the row
            same = rows[ids[row.pinyin]]
            code = same.id * 10 + tone
            assert phoneme.py2code(row.pinyin + digit, language) == [code]
            (syllable,) = phoneme.py2ph(row.pinyin + digit, language)
            expected = [phones[i] for i in (same.initial, same.final) if i is not None]
            assert (syllable.language, syllable.phones) == (
                golden.LANGUAGES[language],
                tuple(expected),
            )
            assert (syllable.code, syllable.tone, syllable.raw_tone) == (code, tone, 0)


@pytest.mark.parametrize("language", CHINESE)
def test_every_code(language: str) -> None:
    rows = golden.syllables(language)
    phones = phoneme.phones(language)
    for code in range(65536):
        row = rows[code // 10] if code // 10 < len(rows) else None
        spelling = (row or rows[0]).pinyin
        assert phoneme.code2py(code, language, fallback=True) == f"{spelling}{code % 10}"
        assert phoneme.code2py(code, language, with_tone=False, fallback=True) == spelling
        own = phoneme.code2py(code, language, errors="none")
        assert own == (f"{spelling}{code % 10}" if row else None)
        syllable = phoneme.code2ph(code, language, errors="none")
        if row is None:
            assert syllable is None
            continue
        assert syllable is not None and (syllable.code, syllable.tone) == (code, code % 10)
        ids = [number for number in (row.initial, row.final) if number is not None]
        assert syllable.phones == tuple(phones[number] for number in ids)


@pytest.mark.parametrize("language", CHINESE)
def test_every_tone(language: str) -> None:
    top = TOPS[language]
    for tone in range(-128, 128):
        remainder = abs(tone) % top * (1 if tone >= 0 else -1)
        expected = tone if 1 <= tone <= top else remainder or top
        assert phoneme.tone_adaptation(tone, language) == expected
    for tone in (-129, 128, 2**70):
        with pytest.raises(ValueError, match="-128 to 127"):
            phoneme.tone_adaptation(tone, language)


@pytest.mark.parametrize(
    "text, language, codes",
    [
        ("ni3hao3", "mandarin", [2243, 1173]),
        (b"ni3hao3", "mandarin", [2243, 1173]),
        ("NiHao", "mandarin", [2245, 1175]),
        ("ni hao", 12345, [2245, 1175]),  # an unregistered language
        ("", "mandarin", []),
        (" '`\t", "mandarin", []),
        ("hello", "mandarin", [1185]),  # the rest is dropped
        ("ma7", "mandarin", [1942]),
        ("ni3", "english", None),
        ("xyz3", "mandarin", None),
        ("ni3 xyz3", "mandarin", None),
        ("nǐ3", "mandarin", None),
        ("ni3\0", "mandarin", [2243]),
        ("ni3\ud8003", "mandarin", None),
        ("\ud800", "mandarin", []),
        (b"\xff\xfe3", "mandarin", None),
        ("nei5hou2", "cantonese", None),
    ],
)
def test_py2code(text: Any, language: Any, codes: Optional[list[int]]) -> None:
    if codes is None and text == "nei5hou2":
        codes = phoneme.py2code("nei5", language) + phoneme.py2code("hou2", language)
    known = isinstance(language, str)
    assert phoneme.py2code(text, language, errors="none", fallback=not known) == codes
    syllables = phoneme.py2ph(text, language, errors="none", fallback=not known)
    assert (None if syllables is None else [s.code for s in syllables]) == codes


@pytest.mark.parametrize(
    "word, backward, pieces",
    [
        ("fangan", False, ["fang", "an"]),
        ("fangan", True, ["gan", "fan"]),
        ("NI3hao3", False, ["n", "i3", "hao3"]),
        ("xyz3", False, ["xyz3"]),
        ("", False, []),
        ("é3", False, ["é3"]),
        ("\ud8003", False, ["\ud8003"]),
        (b"\xff3", False, ["\udcff3"]),
    ],
)
def test_pyw2py(word: Any, backward: bool, pieces: list[str]) -> None:
    assert phoneme.pyw2py(word, backward=backward) == pieces


@pytest.mark.parametrize("language", list(golden.LANGUAGES))
def test_every_phone_in_pronunciations(language: str) -> None:
    for phone in phoneme.phones(language):
        first = phoneme.phone(phone.name, language)
        assert first is not None
        text = f"{phone.name} 7"
        expected = phoneme.Syllable([first], language, raw_tone=7)
        assert phoneme.pr2ph(text, language) == [expected]
        ids = phoneme.pr2ph(text, language, as_ids=True)
        assert ids == bytes([first.id + 10, 7])
        assert phoneme.ph2ph(ids, language) == [expected]


def test_pronunciations() -> None:
    assert _names(phoneme.pr2ph(" E 3,, n i 3\n", fallback=True)) == ["-", "n i"]
    assert phoneme.pr2ph("E 3", as_ids=True, errors="none") is None
    assert phoneme.pr2ph("", as_ids=True) == b"" and phoneme.pr2ph("") == []
    assert phoneme.pr2ph("hh ax 0", 12345, fallback=True)[0].language is phoneme.Language.AMERICAN_ENGLISH
    assert phoneme.pr2ph(b"n i 3") == phoneme.pr2ph("n i 3")


@pytest.mark.parametrize(
    "code, language, answer",
    [(4170, "mandarin", "a0"), (9999, "mandarin", "a9"), (6190, "cantonese", "aa0"),
     (65535, "cantonese", "aa5"), (0, "english", ""), (2243, "english", "")],
)  # fmt: skip
def test_codes_without_rows(code: int, language: str, answer: str) -> None:
    with pytest.raises(phoneme.ConversionError) as caught:
        phoneme.code2py(code, language)
    assert str(caught.value) == f"'{code}' at 0 is not a syllable code of {language}"
    assert phoneme.code2py(code, language, errors="none") is None
    assert phoneme.code2py(code, language, fallback=True) == answer
    assert phoneme.code2py(4169, with_tone=False) == phoneme.syllables("mandarin")[-1].pinyin


def test_phone_ids() -> None:
    ids = phoneme.pr2ph("n i 3, h ao 3", as_ids=True)
    expected = phoneme.pr2ph("n i 3, h ao 3")
    array = np.frombuffer(ids, np.uint8)
    same: Any
    for same in (ids, bytearray(ids), memoryview(ids), memoryview(ids).cast("b"),
                 memoryview(ids).cast("c"), array, array.view(np.int8), array.copy(),
                 np.stack([array, array])[1], (ctypes.c_ubyte * 6)(*ids)):  # fmt: skip
        assert phoneme.ph2ph(same) == expected
    assert phoneme.ph2ph(b"\x03") == [phoneme.Syllable([], "mandarin", raw_tone=3)]
    assert phoneme.ph2ph(b"\x18") == []  # nothing closes the syllable
    assert [phoneme.ph2tp(i) for i in range(256)] == [1] * 10 + [2] * 246
    wrong: Any
    for wrong in ("n", 5, [24], None):
        with pytest.raises(TypeError, match="phone ids must be bytes"):
            phoneme.ph2ph(wrong)
    for wrong in (array.astype(np.int64), array.astype(float), array.astype(bool), array.view("S1"),
                  array.reshape(2, 3), array.repeat(2)[::2], array[::-1], memoryview(ids)[::2],
                  np.array(3, np.uint8), np.uint8(3), memoryview(ids).cast("H")):  # fmt: skip
        with pytest.raises(TypeError, match="phone ids must be bytes or one contiguous row"):
            phoneme.ph2ph(wrong)
    assert phoneme.ph2ph(array[:0]) == phoneme.ph2ph(bytearray()) == []
    for wrong in (-1, 256):
        with pytest.raises(ValueError, match="0 to 255"):
            phoneme.ph2tp(wrong)


def test_lexicon_classes() -> None:
    english = golden.phones("english")
    for row in english:
        assert phoneme.lexicon_en_phone_type(row.name) == row.type
        assert phoneme.lexicon_en_phone_id(row.name) == 50 + row.id
    unknown: Any
    for unknown in ("", "zz", "aa\0", "AA", b"\xff", "\ud800"):
        assert phoneme.lexicon_en_phone_type(unknown) == 0
        assert phoneme.lexicon_en_phone_id(unknown) == 255
        assert phoneme.lexicon_module_phone_type(unknown, "mandarin") == 1
    for language in CHINESE:
        for row in golden.phones(language):
            expected = 0 if row.name == "sil" else 2
            assert phoneme.lexicon_module_phone_type(row.name, language) == expected
        assert phoneme.lexicon_module_phone_type("ssil", language) == 0
    assert phoneme.lexicon_module_phone_type("aa", "english") == 0
    assert phoneme.lexicon_module_phone_type("a", 12345, fallback=True) == 0


TEXT_FUNCTIONS = [
    phoneme.py2ph,
    phoneme.py2code,
    phoneme.pyw2py,
    phoneme.pr2ph,
    phoneme.lexicon_en_phone_type,
    phoneme.normalize_pinyin,
    phoneme.analyze,
    phoneme.cut_whole,
]


@pytest.mark.parametrize("function", TEXT_FUNCTIONS)
@pytest.mark.parametrize("text", [None, 3, 1.5, ["ni3"], bytearray(b"ni3")])
def test_texts_are_str_or_bytes(function: Any, text: Any) -> None:
    with pytest.raises(TypeError, match="must be str or bytes"):
        function(text)


CODE_FUNCTIONS: list[Any] = [
    phoneme.code2ph,
    phoneme.code2py,
    lambda code: phoneme.jyutping([code]),
    lambda code: phoneme.Syllable([], "mandarin", code),
]


@pytest.mark.parametrize("function", CODE_FUNCTIONS)
def test_codes_out_of_range(function: Any) -> None:
    many = "an int of more than 64 bits"
    cases = [(-1, "-1"), (65536, "65536"), (2**63 - 1, str(2**63 - 1)), (2**70, many)]
    for code, shown in [*cases, (10**5000, many), (-(10**5000), many)]:
        with pytest.raises(ValueError) as caught:
            function(code)
        assert str(caught.value) == f"a syllable code is 0 to 65535, not {shown}"


@pytest.mark.parametrize("function", CODE_FUNCTIONS)
@pytest.mark.parametrize("code", [None, 1.5, "2243", b"2243"])
def test_codes_are_integers(function: Any, code: Any) -> None:
    with pytest.raises(TypeError) as caught:
        function(code)
    assert str(caught.value) == f"a syllable code must be an int, not {type(code).__name__}"


def test_str_subclasses_and_wide_characters() -> None:
    class Word(str):
        pass

    assert phoneme.py2code(Word("ni3")) == [2243]
    wide: Union[str, bytes]
    for wide in ("é", "漢", "😀", "\U0010ffff"):
        piece = f"{wide}3"
        assert phoneme.pyw2py(piece) == [piece] == phoneme.pyw2py(piece.encode())


def test_functions_pickle_and_show_their_signatures() -> None:
    functions = [f for f in vars(phoneme).values() if inspect.isfunction(f)]
    assert len(functions) > 30
    for function in functions:
        assert pickle.loads(pickle.dumps(function)) is function
    signature = inspect.signature(phoneme.py2ph)
    assert list(signature.parameters) == ["text", "language", "errors", "fallback"]
