"""Lines of lexicons, as Python shows them."""

from __future__ import annotations

import io
import subprocess
import typing
from pathlib import Path
from typing import Any

import phoneme
import pytest
from phoneme import EntryKind, LexiconEntry, _core, _lexicon, lexicon_entries, lexicon_entry

DATA = Path(__file__).resolve().parents[2] / "data"

ENTRY, COMMENT, BROKEN = EntryKind.ENTRY, EntryKind.COMMENT, EntryKind.BROKEN


def test_names_are_those_of_the_library() -> None:
    assert typing.get_args(_lexicon.LexiconFormat) == _core.LEXICON_FORMATS
    assert typing.get_args(_lexicon.Headword) == _core.HEADWORDS
    assert _core.LEXICON_FORMATS == ("lines", "tsv", "cedict", "cmudict", "kaldi")
    assert _core.HEADWORDS == ("simplified", "traditional")


@pytest.mark.parametrize(
    "line, format, kind, word, text, start, problem",
    [
        ("ni3 hao3", "lines", ENTRY, "", "ni3 hao3", 0, ""),
        ("# ni3\r\n", "lines", ENTRY, "", "# ni3", 0, ""),
        ("\n", "lines", ENTRY, "", "", 0, ""),
        ("你好\tni3hao3\tA1", "tsv", ENTRY, "", "ni3hao3", 3, ""),
        ("你好\tnǐhǎo\r\n", "tsv", ENTRY, "", "nǐhǎo", 3, ""),
        ("a\tni3\r", "tsv", ENTRY, "", "ni3\r", 2, ""),
        ("你\t", "tsv", ENTRY, "", "", 2, ""),
        ("# a\tni3\n", "tsv", COMMENT, "", "", 7, ""),
        ("", "tsv", BROKEN, "", "", 0, "no column 2"),
        ("女兒 女儿 [nu:3 er2] /daughter/\n", "cedict", ENTRY, "女儿", "nu:3 er2", 7, ""),
        ("😀 \ud800 [\ud800😀]", "cedict", ENTRY, "\ud800", "\ud800😀", 5, ""),
        ("#!", "cedict", COMMENT, "", "", 2, ""),
        ("女兒 女儿\n", "cedict", BROKEN, "女儿", "", 5,
         'expected "TRADITIONAL SIMPLIFIED [pronunciation]"'),
        ("hello(2) HH EH0 L OW1 # old\n", "cmudict", ENTRY, "hello", "HH EH0 L OW1", 9, ""),
        (" \r\n", "cmudict", COMMENT, "", "", 1, ""),
        ("hello", "cmudict", BROKEN, "hello", "", 5, "no pronunciation"),
        (" 你好\tn i3 h ao3 \r\n", "kaldi", ENTRY, "你好", "n i3 h ao3", 4, ""),
        ("\x00 a\x00", "kaldi", ENTRY, "\x00", "a\x00", 2, ""),
        ("\ufeff你 ni3", "kaldi", ENTRY, "\ufeff你", "ni3", 3, ""),
    ],
)  # fmt: skip
def test_lines(
    line: str, format: Any, kind: EntryKind, word: str, text: str, start: int, problem: str
) -> None:
    read = lexicon_entry(line, format)
    assert read == LexiconEntry(kind, word, text, start, problem)
    assert line[start : start + len(text)] == text
    data = line.encode("utf-8", "surrogatepass")
    of_bytes = lexicon_entry(data, format)
    assert (of_bytes.kind, of_bytes.problem) == (kind, problem)
    assert of_bytes.word == word.encode("utf-8", "surrogatepass")
    assert of_bytes.text == text.encode("utf-8", "surrogatepass")
    assert data[of_bytes.start : of_bytes.start + len(of_bytes.text)] == of_bytes.text


def test_options() -> None:
    line = "女兒 女儿 [nu:3 er2]"
    assert lexicon_entry(line, "cedict", headword="traditional").word == "女兒"
    assert lexicon_entry(line, "cedict", headword="simplified").word == "女儿"
    assert lexicon_entry(line, "cedict", headword=None).word == "女儿"
    assert lexicon_entry("a\tb\tc", "tsv", column=1).text == "a"
    assert lexicon_entry("a\tb\tc", "tsv", column=3).text == "c"
    assert lexicon_entry("a\tb\tc", "tsv", column=None).text == "b"
    assert lexicon_entry("a\tb\tc", "tsv", column=4).problem == "no column 4"
    assert lexicon_entry("a", "tsv", column=2**63 - 1).problem == f"no column {2**63 - 1}"


KNOWN_FORMATS = "the formats are lines, tsv, cedict, cmudict, kaldi"


@pytest.mark.parametrize(
    "arguments, options, error, message",
    [
        (("a", "csv"), {}, ValueError, f"unknown format 'csv'; {KNOWN_FORMATS}"),
        (("a", "TSV"), {}, ValueError, f"unknown format 'TSV'; {KNOWN_FORMATS}"),
        (("a", ""), {}, ValueError, f"unknown format ''; {KNOWN_FORMATS}"),
        (("a", "tsv\0"), {}, ValueError, f"unknown format 'tsv\\x00'; {KNOWN_FORMATS}"),
        (("a", b"tsv"), {}, TypeError, "a format must be a name, not bytes"),
        (("a", None), {}, TypeError, "a format must be a name, not NoneType"),
        (("a", "cedict"), {"headword": "both"}, ValueError,
         "unknown headword 'both'; the headwords are simplified, traditional"),
        (("a", "cedict"), {"headword": 1}, TypeError, "a headword must be a name, not int"),
        (("a", "tsv"), {"column": 0}, ValueError, f"column is 1 to {2**63 - 1}, not 0"),
        (("a", "tsv"), {"column": -1}, ValueError, f"column is 1 to {2**63 - 1}, not -1"),
        (("a", "tsv"), {"column": "2"}, TypeError, "column must be an int, not str"),
        (("a", "tsv"), {"column": True}, TypeError, "column must be an int, not bool"),
        (("a", "kaldi"), {"column": 2}, ValueError, "column applies to the format 'tsv' only"),
        (("a", "tsv"), {"headword": "simplified"}, ValueError,
         "headword applies to the format 'cedict' only"),
        ((5, "tsv"), {}, TypeError, "a text must be str or bytes, not int"),
        (("a\nb", "lines"), {}, ValueError,
         "a line of a lexicon must not contain another one: 'a\\nb'"),
        (("\n\n", "kaldi"), {}, ValueError,
         "a line of a lexicon must not contain another one: '\\n\\n'"),
    ],
)  # fmt: skip
def test_what_cannot_be_read(
    arguments: Any, options: Any, error: type[Exception], message: str
) -> None:
    with pytest.raises(error) as caught:
        lexicon_entry(*arguments, **options)
    assert str(caught.value) == message
    line, format = arguments
    with pytest.raises(error) as caught:
        list(lexicon_entries([line], format, **options))
    assert str(caught.value) == message


def test_options_of_a_file_are_checked_at_once() -> None:
    format: Any = "csv"
    with pytest.raises(ValueError, match="unknown format"):
        lexicon_entries([], format)


@pytest.mark.parametrize("lines", ["a ni3", b"a ni3", 5, None])
def test_what_is_not_lines(lines: Any) -> None:
    with pytest.raises(TypeError) as caught:
        lexicon_entries(lines, "kaldi")
    assert str(caught.value) == f"lines must be an iterable of lines, not one {type(lines).__name__}"


def test_lines_are_read_as_they_come() -> None:
    lines = iter(["a ni3\n", "b\n"])
    entries = lexicon_entries(lines, "kaldi")
    assert next(entries).word == "a"
    assert next(lines) == "b\n"
    assert list(entries) == []


@pytest.mark.parametrize("mark", ["", "\ufeff"])
def test_a_byte_order_mark_before_the_first_line_is_left_out(mark: str) -> None:
    content = f"{mark}你 ni3\r\n\ufeff好 hao3"
    words = [entry.word for entry in lexicon_entries(io.StringIO(content), "kaldi")]
    assert words == ["你", "\ufeff好"]
    data = content.encode()
    of_bytes = list(lexicon_entries(io.BytesIO(data), "kaldi"))
    assert [entry.word.decode() for entry in of_bytes] == words
    first = of_bytes[0]
    assert data[first.start : first.start + len(first.text)] == first.text == b"ni3"
    (entry,) = lexicon_entries([mark], "lines")
    assert (entry.text, entry.start) == ("", len(mark))


def test_a_real_lexicon() -> None:
    with (DATA / "cmudict_sample.dict").open(encoding="utf-8") as lines:
        entries = list(lexicon_entries(lines, "cmudict"))
    kinds = [entry.kind for entry in entries]
    assert [kinds.count(kind) for kind in EntryKind] == [2347, 2, 0]
    assert not any(phoneme.arpabet_to_pronunciation(entry.text).problems for entry in entries)


def test_entries_are_those_of_the_tool(tool: str) -> None:
    content = "a ni3\n\n你 好 \n b  hao3\r\nc\n".encode()
    command = [tool, "convert", "-l", "mandarin", "--format", "kaldi", "--to", "json", "-q"]
    told = subprocess.run(command, input=content, capture_output=True).stdout.decode()
    read = list(lexicon_entries(content.decode().splitlines(keepends=True), "kaldi"))
    for entry in read:
        assert entry.kind is COMMENT or f'"word":"{entry.word}"' in told
    assert [entry.problem for entry in read if entry.kind is BROKEN] == ["no pronunciation"]
    assert '"message":"no pronunciation"' in told
