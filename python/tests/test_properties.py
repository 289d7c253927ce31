"""What must hold for every text, code and sequence."""

from __future__ import annotations

import pickle
from typing import Any, Union

import phoneme
from hypothesis import example, given, settings
from hypothesis import strategies as st

settings.register_profile("phoneme", deadline=None, max_examples=300)
settings.load_profile("phoneme")

LANGUAGES = st.sampled_from(["mandarin", "cantonese", "english", 12345])
CHINESE = st.sampled_from(["mandarin", "cantonese"])
TABLES = [phoneme.syllables("mandarin"), phoneme.syllables("cantonese")]
SPELLINGS = sorted({row.pinyin for table in TABLES for row in table})
NAMES = sorted({phone.name for name in ("mandarin", "english") for phone in phoneme.phones(name)})
MARKED = [phoneme.marked_pinyin([row.id * 10 + 3]) for row in TABLES[0]]

# Syllables, what is between them, and anything at all, lone surrogates included.
ANYTHING = st.text(alphabet=st.characters(), max_size=4)
OTHERS = [*"0123456789 '`,\tvqx-", "Ni", "É", "漢", "u:", "😀"]
PIECES = st.sampled_from([*SPELLINGS, *MARKED, *OTHERS])
PINYIN = st.lists(PIECES | ANYTHING, max_size=8).map("".join)
PRONUNCIATIONS = st.lists(
    st.sampled_from([*NAMES, *[" "] * 40, *"0123", ",", ", ", "\t"]) | ANYTHING, max_size=12
).map("".join)


def _bytes(text: Union[str, bytes]) -> bytes:
    return text.encode("utf-8", "surrogatepass") if isinstance(text, str) else text


TEXTS = PINYIN | PINYIN.map(_bytes) | st.binary(max_size=9)


@given(TEXTS, LANGUAGES)
@example("q-ix q-i", "mandarin")
@example("vn-i n-i", "mandarin")
def test_the_piece_of_an_error_is_the_first_that_fails(text: Any, language: Any) -> None:
    try:
        phoneme.py2code(text, language, fallback=True)
    except phoneme.ConversionError as error:
        end = error.offset + len(error.piece)
        assert error.piece and text[error.offset : end] == error.piece
        # What is before it converts, and with it no longer. The space keeps the front
        # from being cut as a whole text.
        before, through = _bytes(text[: error.offset]), _bytes(text[:end])
        options: Any = {"errors": "none", "fallback": True}
        assert phoneme.py2code(b" " + before, language, **options) is not None
        assert phoneme.py2code(b" " + through + b" ", language, **options) is None
        assert str(pickle.loads(pickle.dumps(error))) == str(error)


@given(PRONUNCIATIONS, LANGUAGES, st.booleans())
def test_the_piece_of_a_pronunciation(text: str, language: Any, as_ids: bool) -> None:
    try:
        phoneme.pr2ph(text, language, as_ids=as_ids, fallback=True)
    except phoneme.ConversionError as error:
        assert text[error.offset : error.offset + len(error.piece)] == error.piece
        front = text[: error.offset].rpartition(",")[0]
        assert phoneme.pr2ph(front, language, errors="none", fallback=True) is not None
        assert "," not in error.piece and " " not in error.piece


@given(st.binary(max_size=30), LANGUAGES)
def test_phone_ids_and_syllables(phone_ids: bytes, language: Any) -> None:
    try:
        syllables = phoneme.ph2ph(phone_ids, language, fallback=True)
    except phoneme.ConversionError as error:
        assert phoneme.ph2ph(phone_ids[: error.offset], language, fallback=True) is not None
        assert error.piece == phone_ids[error.offset : error.offset + 1]
        return
    again = b"".join(
        bytes([*(phone.id + 10 for phone in syllable.phones if phone), syllable.raw_tone])
        for syllable in syllables
    )
    assert phone_ids.startswith(again) and all(byte >= 10 for byte in phone_ids[len(again) :])
    assert pickle.loads(pickle.dumps(syllables)) == syllables


@given(st.lists(TEXTS, max_size=12), LANGUAGES)
def test_batches_are_many_single_conversions(texts: list[Any], language: Any) -> None:
    batch = phoneme.py2ph_batch(texts, language, fallback=True)
    singles = [phoneme.py2ph(text, language, errors="none", fallback=True) for text in texts]
    assert batch.tolist() == singles
    for i, single in enumerate(singles):
        codes = batch.codes[batch.offsets[i] : batch.offsets[i + 1]].tolist()
        assert codes == [syllable.code for syllable in single or []]
        assert batch.status[i] == (single is None)
    data = b"".join(map(_bytes, texts))
    offsets = phoneme.normalize_batch([], language, fallback=True).offsets.tolist()
    for text in texts:
        offsets.append(offsets[-1] + len(_bytes(text)))
    view = memoryview(bytearray(8 * len(offsets))).cast("q")
    for i, offset in enumerate(offsets):
        view[i] = offset
    same = phoneme.py2ph_batch((data, view), language, fallback=True)
    assert same.tolist() == batch.tolist() and same.status.tolist() == batch.status.tolist()


@given(st.lists(TEXTS, max_size=12), LANGUAGES, st.sampled_from(["whole", "forward", "backward"]))
def test_analysed_batches_are_many_analyses(texts: list[Any], language: Any, cutting: Any) -> None:
    options: Any = {"cutting": cutting, "fallback": True}
    batch = phoneme.analyze_batch(texts, language, **options)
    for i, text in enumerate(texts):
        analysis = phoneme.analyze(text, language, **options)
        start, stop = batch.problem_starts[i], batch.problem_stops[i]
        if not analysis.problems:
            assert batch[i] == [read.syllable for read in analysis.syllables]
            assert (batch.status[i], start, stop) == (0, -1, -1)
            continue
        first = analysis.problems[0]
        assert (start, stop) == first.range and batch[i] is None
        assert phoneme.Status(batch.status[i]).name == first.kind.name


@given(TEXTS, CHINESE)
def test_a_strict_batch_keeps_every_letter(text: Any, language: Any) -> None:
    """What it converts, a strict reading of the text by longest match converts to the same."""
    (syllables,) = phoneme.py2ph_batch([text], language, strict=True)
    if syllables is None:
        return
    written = "".join(syllable.spelling for syllable in syllables)
    letters = [c for c in _bytes(text).lower() if c not in b" \t\n\v\f\r'`0123456789"]
    assert bytes(letters) == written.encode()


@given(TEXTS, LANGUAGES, st.sampled_from(["whole", "forward", "backward", "none"]))
def test_no_character_is_lost(text: Any, language: Any, cutting: Any) -> None:
    analysis = phoneme.analyze(text, language, cutting=cutting, fallback=True)
    found: set[int] = set()
    ranges = [syllable.range for syllable in analysis.syllables]
    ranges += [problem.range for problem in analysis.problems]
    for start, stop in (*ranges, *analysis.separators):
        assert 0 <= start < stop <= len(text)
        found.update(range(start, stop))
    assert found == set(range(len(text)))
    starts = [syllable.range.start for syllable in analysis.syllables]
    assert starts == sorted(starts)


@given(TEXTS)
def test_what_is_normalised_converts(text: Any) -> None:
    readers: list[tuple[Any, Any]] = [
        (phoneme.normalize_pinyin, phoneme.py2code),
        (phoneme.normalize_jyutping, lambda text: phoneme.py2code(text, "cantonese")),
        (phoneme.arpabet_to_pronunciation, lambda text: phoneme.pr2ph(text, "english")),
    ]
    for normalize, read in readers:
        result = normalize(text)
        assert read(result.text) is not None
        assert len(result.origins) == len(result.text)
        assert list(result.origins) == sorted(result.origins)
        assert all(0 <= origin < len(text) for origin in result.origins)


@given(st.data(), CHINESE)
def test_codes_there_and_back(data: st.DataObject, language: str) -> None:
    rows = [row for row in phoneme.syllables(language) if row.pinyin == row.pinyin.lower()]
    tones = st.integers(1, phoneme.tone_adaptation(0, language))
    syllables = data.draw(st.lists(st.tuples(st.sampled_from(rows), tones), max_size=6))
    codes = [row.id * 10 + tone for row, tone in syllables]
    text = "".join(phoneme.code2py(code, language) for code in codes)
    assert phoneme.py2code(text, language) == codes
    assert phoneme.py2ph(text, language) == [phoneme.code2ph(code, language) for code in codes]
    write: Any = phoneme.jyutping if language == "cantonese" else phoneme.marked_pinyin
    normalize: Any = (
        phoneme.normalize_jyutping if language == "cantonese" else phoneme.normalize_pinyin
    )
    if language == "cantonese" or any(code % 10 != 5 for code in codes):
        assert phoneme.py2code(normalize(write(codes)).text, language) == codes
        assert phoneme.py2code(normalize(write(codes, spacing="space")).text, language) == codes


@given(st.data(), st.sampled_from(["mandarin", "cantonese", "english"]))
def test_pronunciations_there_and_back(data: st.DataObject, language: str) -> None:
    phones = [phone for phone in phoneme.phones(language)]
    first = {phone.name: phone for phone in reversed(phones)}
    tuples = st.lists(st.sampled_from(sorted(first.values())), min_size=1, max_size=5)
    drawn = data.draw(st.lists(st.tuples(tuples, st.integers(0, 9)), max_size=5))
    syllables = [phoneme.Syllable(names, language, raw_tone=digit) for names, digit in drawn]
    text = phoneme.pronunciation_string(syllables)
    assert phoneme.pr2ph(text, language) == syllables
    ids = phoneme.pr2ph(text, language, as_ids=True)
    assert phoneme.ph2ph(ids, language) == syllables


@given(PINYIN, LANGUAGES, st.booleans())
def test_str_and_its_bytes_are_one_text(text: str, language: Any, backward: bool) -> None:
    data = _bytes(text)
    options: Any = {"errors": "none", "fallback": True}
    assert phoneme.py2code(text, language, **options) == phoneme.py2code(data, language, **options)
    pieces = phoneme.pyw2py(text, language, backward=backward, fallback=True)
    escaped = phoneme.pyw2py(data, language, backward=backward, fallback=True)
    assert [piece.encode("utf-8", "surrogatepass") for piece in pieces] == [
        piece.encode("utf-8", "surrogateescape") for piece in escaped
    ]
    if phoneme.syllables(language, fallback=True):
        assert all(piece.lower() in text.lower() for piece in pieces if piece.isascii())


@given(st.lists(st.sampled_from(SPELLINGS), max_size=5).map("".join), CHINESE)
def test_cuts_cover_what_they_say(letters: str, language: str) -> None:
    cut = phoneme.cut_whole(letters, language, max_cuts=20)
    rows = phoneme.syllables(language)
    for syllables in (*cut.cuts, cut.syllables):
        for syllable in syllables:
            assert letters[slice(*syllable.range)].lower() == rows[syllable.row].pinyin
    for syllables in cut.cuts:
        assert "".join(letters[slice(*syllable.range)] for syllable in syllables) == letters
    assert len(cut.cuts) == min(20, cut.count if cut.count is not None else 20)
    assert cut.covers == (cut.count != 0)
