"""The chart of a language without syllables: vowels and consonants by their features."""

from __future__ import annotations

from collections import Counter
from typing import NamedTuple

import phoneme
from phoneme._coverage import Coverage
from phoneme._page import (
    FAINT,
    INK,
    MARGIN,
    PAPER,
    PLAIN_LOOK,
    UNSEEN_LOOK,
    WIDTH,
    Block,
    Look,
    Page,
    Shading,
    legend_block,
    short_number,
)

_HEIGHTS = {"1": "high", "2": "mid", "3": "low"}
_FRONTNESS = {"1": "front", "2": "central", "3": "back"}
_MANNERS = {
    "s": "stop",
    "a": "affricate",
    "f": "fricative",
    "n": "nasal",
    "l": "lateral",
    "r": "approximant",
}
_PLACES = {
    "l": "labial",
    "b": "labiodental",
    "d": "dental",
    "a": "alveolar",
    "p": "palatal",
    "v": "velar",
    "g": "glottal",
}
_VOICING = {"-": "voiceless", "+": "voiced"}
# Line width and style around a vowel, by its kind.
_OUTLINES = {"l": (2.4, "solid"), "s": (0.9, "solid"), "a": (0.9, (0, (3, 2)))}

_LIKE_R = "\u02b3"  # a small raised r

_CHIP_WIDTH = 34.0
_CHIP_HEIGHT = 32.0
_CHIP_GAP = 4.0


class _Features(NamedTuple):
    """The characters of a feature string by their positions."""

    vowel: str
    kind: str
    height: str
    frontness: str
    rounding: str
    manner: str
    place: str
    voicing: str


def _features(phone: phoneme.Phone) -> _Features:
    return _Features(*phone.feature)


class _PhoneLooks(NamedTuple):
    """How phones are drawn: with their ids, or shaded and with their counts."""

    counts: Counter[int] | None
    shading: Shading | None

    def look(self, phone: phoneme.Phone) -> tuple[Look, str]:
        if self.counts is None or self.shading is None:
            return PLAIN_LOOK, str(phone.id)
        count = self.counts[phone.id]
        return self.shading.look(count), short_number(count)


class _Chips:
    """Draws phones as small boxes: the name, and below it the count or the id."""

    def __init__(self, page: Page, looks: _PhoneLooks) -> None:
        self._page = page
        self._looks = looks

    def row(self, x: float, y: float, phones: list[phoneme.Phone]) -> None:
        """Chips side by side around (x, y)."""
        step = _CHIP_WIDTH + _CHIP_GAP
        left = x - (len(phones) * step - _CHIP_GAP) / 2
        for index, phone in enumerate(phones):
            self._chip(left + index * step, y - _CHIP_HEIGHT / 2, phone)

    def _chip(self, left: float, top: float, phone: phoneme.Phone) -> None:
        look, note = self._looks.look(phone)
        features = _features(phone)
        is_vowel = features.vowel == "+"
        width, style = _OUTLINES.get(features.kind, (0.8, "solid"))
        edge = look.edge if look is UNSEEN_LOOK or not is_vowel else INK
        line = {"edgecolor": edge, "linewidth": width, "linestyle": style}
        draw = self._page.pill if features.rounding == "+" else self._page.box
        draw(left, top, _CHIP_WIDTH, _CHIP_HEIGHT, facecolor=look.fill, **line)
        name = phone.name + (_LIKE_R if is_vowel and features.manner == "r" else "")
        middle = left + _CHIP_WIDTH / 2
        self._page.text(middle, top + 11, name, 12, weight="bold", color=look.ink)
        self._page.text(middle, top + 24, note, 8.5, color=look.ink)


def articulation_blocks(language: phoneme.Language, counts: Coverage | None) -> list[Block]:
    sounds = [phone for phone in phoneme.phones(language) if phone.feature[:1] in ("+", "-")]
    sounds = [phone for phone in sounds if phone.type != phoneme.PhoneType.SILENCE]
    vowels = [phone for phone in sounds if _features(phone).vowel == "+"]
    consonants = [phone for phone in sounds if _features(phone).vowel == "-"]
    if counts is None:
        look = _PhoneLooks(None, None)
        return [_vowel_block(vowels, look), _consonant_block(consonants, look)]
    shading = Shading(counts.phones[phone.id] for phone in sounds)
    look = _PhoneLooks(counts.phones, shading)
    legend = legend_block(shading.legend(), "The number below a phone: how often it is there.")
    return [legend, _vowel_block(vowels, look), _consonant_block(consonants, look)]


def _vowel_block(vowels: list[phoneme.Phone], looks: _PhoneLooks) -> Block:
    """The vowels that stay where they are, and beside them those that move."""
    moving = [phone for phone in vowels if _features(phone).kind == "d"]
    steady = [phone for phone in vowels if _features(phone).kind != "d"]

    def draw(page: Page, top: float) -> None:
        chips = _Chips(page, looks)
        page.text(MARGIN, top + 16, "Vowels", 13, ha="left", weight="bold")
        _draw_vowel_space(page, chips, steady, (MARGIN + 50, top + 56, 500))
        page.text(584, top + 16, "Diphthongs", 13, ha="left", weight="bold")
        _draw_vowel_space(page, chips, moving, (634, top + 56, 350))
        _draw_vowel_legend(page, top + 56 + _SPACE_HEIGHT + 24)

    return Block(56 + _SPACE_HEIGHT + 48, draw)


_SPACE_HEIGHT = 186.0
_SLANT = 0.28  # how far the front edge moves back from the top to the bottom, of the width


def _draw_vowel_space(
    page: Page, chips: _Chips, vowels: list[phoneme.Phone], place: tuple[float, float, float]
) -> None:
    """A trapezoid: the tongue has less way to go between front and back when it is low."""
    left, top, width = place
    bands, columns = list(_HEIGHTS), list(_FRONTNESS)

    def at(column: float, band: float) -> tuple[float, float]:
        depth = band / len(bands)
        edge = left + _SLANT * width * depth
        return (
            edge + (left + width - edge) * column / len(columns),
            top + _SPACE_HEIGHT * depth,
        )

    page.lines((*at(0, band), *at(len(columns), band)) for band in range(len(bands) + 1))
    page.lines((*at(column, 0), *at(column, len(bands))) for column in range(len(columns) + 1))
    for index, name in enumerate(_FRONTNESS.values()):
        page.text(at(index + 0.5, 0)[0], top - 12, name, 10.5, color=FAINT)
    for index, name in enumerate(_HEIGHTS.values()):
        edge, y = at(0, index + 0.5)
        page.text(edge - 12, y, name, 10.5, ha="right", color=FAINT)
    for band, height in enumerate(bands):
        for column, frontness in enumerate(columns):
            members = [p for p in vowels if _features(p)[2:4] == (height, frontness)]
            chips.row(*at(column + 0.5, band + 0.5), members)


def _draw_vowel_legend(page: Page, y: float) -> None:
    x = MARGIN
    entries = [("s", "", "short"), ("l", "", "long"), ("a", "", "reduced"), ("s", "", "rounded")]
    for kind, inside, words in [*entries, ("s", _LIKE_R, "with the manner of r")]:
        width, style = _OUTLINES[kind]
        draw = page.pill if words == "rounded" else page.box
        draw(x, y - 8, 26, 16, facecolor=PAPER, edgecolor=INK, linewidth=width, linestyle=style)
        if inside:
            page.text(x + 13, y + 2, inside, 12, weight="bold")
        page.text(x + 33, y, words, 10.5, ha="left")
        x += 33 + 7 * len(words) + 20


def _consonant_block(consonants: list[phoneme.Phone], looks: _PhoneLooks) -> Block:
    """Manner down, place across; in each place the voiceless ones left of the voiced."""
    cells: dict[tuple[str, ...], list[phoneme.Phone]] = {}
    for phone in consonants:
        cells.setdefault(_features(phone)[5:8], []).append(phone)
    halves = [(place, voicing) for place in _PLACES for voicing in _VOICING]
    edges = _edges([max(len(cells.get((m, *half), [])) for m in _MANNERS) for half in halves])
    body, row_height = 66.0, _CHIP_HEIGHT + 8

    def draw(page: Page, top: float) -> None:
        chips = _Chips(page, looks)
        page.text(MARGIN, top + 12, "Consonants", 13, ha="left", weight="bold")
        _draw_consonant_frame(page, edges, top + body, row_height)
        for y, manner in enumerate(_MANNERS):
            for x, half in enumerate(halves):
                middle = ((edges[x] + edges[x + 1]) / 2, top + body + (y + 0.5) * row_height)
                chips.row(*middle, cells.get((manner, *half), []))

    return Block(body + len(_MANNERS) * row_height + 8, draw)


def _edges(sizes: list[int]) -> list[float]:
    """The left edges of columns that hold so many phones, and the right edge of the last."""
    left = MARGIN + 84
    unit = (WIDTH - MARGIN - left) / sum(max(1, size) for size in sizes)
    return [left + unit * sum(max(1, size) for size in sizes[:i]) for i in range(len(sizes) + 1)]


def _draw_consonant_frame(page: Page, edges: list[float], top: float, row_height: float) -> None:
    """`edges` are of the halves of each place."""
    left, right, bottom = edges[0], edges[-1], top + len(_MANNERS) * row_height
    rows = (top + y * row_height for y in range(len(_MANNERS) + 1))
    page.lines((left, y, right, y) for y in rows)
    page.lines((x, top - 34, x, bottom) for x in edges[::2])
    for y, name in enumerate(_MANNERS.values()):
        page.text(left - 10, top + (y + 0.5) * row_height, name, 10.5, ha="right", color=FAINT)
    for index, name in enumerate(_PLACES.values()):
        first, middle, last = edges[2 * index : 2 * index + 3]
        page.text((first + last) / 2, top - 25, name, 10.5, color=FAINT)
        for x, words in zip((first + middle, middle + last), _VOICING.values()):
            page.text(x / 2, top - 9, words, 8.5, color=FAINT)
