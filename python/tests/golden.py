"""The rows of the tables, from the files that the tests of the C++ library read too."""

from __future__ import annotations

from pathlib import Path
from typing import NamedTuple, Optional

import phoneme

FOLDER = Path(__file__).resolve().parents[2] / "tests" / "golden"

#: The numbers of rows are here, so that no test passes on a file that is short.
PHONE_COUNTS = {"mandarin": 61, "cantonese": 95, "english": 41}
SYLLABLE_COUNTS = {"mandarin": 417, "cantonese": 619, "english": 0}
LANGUAGES = {
    "mandarin": phoneme.Language.MANDARIN,
    "cantonese": phoneme.Language.CANTONESE,
    "english": phoneme.Language.AMERICAN_ENGLISH,
}


class PhoneRow(NamedTuple):
    id: int
    type: int
    name: str
    feature: str


class SyllableRow(NamedTuple):
    id: int
    pinyin: str
    initial: Optional[int]
    final: Optional[int]


def _rows(language: str, table: str) -> list[list[str]]:
    stem = "american_english" if language == "english" else language
    lines = (FOLDER / f"{stem}_{table}.tsv").read_text(encoding="ascii").splitlines()
    return [line.split("\t") for line in lines if not line.startswith("#")]


def phones(language: str) -> list[PhoneRow]:
    rows = [
        PhoneRow(int(number), int(kind), name, "" if feature == "-" else feature)
        for number, kind, name, feature in _rows(language, "phones")
    ]
    assert len(rows) == PHONE_COUNTS[language]
    return rows


def syllables(language: str) -> list[SyllableRow]:
    if not SYLLABLE_COUNTS[language]:
        return []
    rows = [
        SyllableRow(int(row[0]), row[1], _id(row[4]), _id(row[5]))
        for row in _rows(language, "syllables")
    ]
    assert len(rows) == SYLLABLE_COUNTS[language]
    return rows


def _id(field: str) -> Optional[int]:
    return None if field == "-" else int(field)
