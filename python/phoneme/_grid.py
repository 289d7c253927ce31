"""The chart of a language with syllables: initials down, finals across."""

from __future__ import annotations

import re
from typing import NamedTuple, Optional

import phoneme
from phoneme._coverage import Coverage, name_and_id, usable_phones
from phoneme._page import (
    FAINT,
    LINE,
    MARGIN,
    PAPER,
    PLAIN_LOOK,
    UNSEEN_EDGE,
    WIDTH,
    Block,
    Look,
    Page,
    Shading,
    legend_block,
    short_number,
)

MaybePhone = Optional["phoneme.Phone"]

_CELL_HEIGHT = 19.0
_COUNTED_CELL_HEIGHT = 30.0  # of a cell with a count in it
_ROW_HEADING = 56.0
_MOST_COLUMNS = 24


class _Panel(NamedTuple):
    """A part of the grid: columns under their groups, and the rows that have something in it."""

    groups: list[tuple[str, list[MaybePhone]]]
    rows: list[MaybePhone]

    def columns(self) -> list[MaybePhone]:
        return [final for _, finals in self.groups for final in finals]


class _Looks:
    """How the grid is drawn: with phone ids, or shaded and with counts."""

    def __init__(self, language: phoneme.Language, counts: Coverage | None) -> None:
        self.counts = counts
        self.shading = None if counts is None else Shading(counts.syllables.values())
        self.usable = set(usable_phones(language))

    def cell_height(self) -> float:
        return _CELL_HEIGHT if self.counts is None else _COUNTED_CELL_HEIGHT

    def legend(self) -> list[tuple[Look, str]]:
        known = [(PLAIN_LOOK, "syllable")] if self.shading is None else self.shading.legend()
        return [*known, (Look(PAPER, edge=LINE), "no such syllable")]

    def syllable(self, row: phoneme.SyllableRow) -> tuple[Look, str]:
        if self.counts is None or self.shading is None:
            return PLAIN_LOOK, ""
        count = self.counts.syllables[row.id]
        return self.shading.look(count), short_number(count) if count else ""

    def phone(self, phone: phoneme.Phone) -> tuple[str, str]:
        """The small number of a heading, and its colour."""
        if self.counts is None:
            return str(phone.id), FAINT
        if phone not in self.usable:
            return "", FAINT
        count = self.counts.phones[phone.id]
        return short_number(count), FAINT if count else UNSEEN_EDGE


def grid_blocks(language: phoneme.Language, counts: Coverage | None) -> list[Block]:
    panels = _panels(language)
    looks = _Looks(language, counts)
    width = (WIDTH - 2 * MARGIN - _ROW_HEADING) / max(len(p.columns()) for p in panels)
    parts = [_panel(language, panel, width, looks) for panel in panels]
    return [legend_block(looks.legend(), _note(language, looks)), *parts]


def _note(language: phoneme.Language, looks: _Looks) -> str:
    """What is where, and the phones that no syllable has."""
    unused = [name_and_id(phone) for phone in phoneme.phones(language) if phone not in looks.usable]
    numbers = "" if looks.counts is None else " The numbers: how often each is there."
    return f"Initials down, finals across.{numbers} In no syllable: {', '.join(unused)}."


def _key(initial: MaybePhone, final: MaybePhone) -> tuple[int, int]:
    return (-1 if initial is None else initial.id, -1 if final is None else final.id)


def _cells(language: phoneme.Language) -> dict[tuple[int, int], list[phoneme.SyllableRow]]:
    """The syllables by initial and final, which a few have in common."""
    cells: dict[tuple[int, int], list[phoneme.SyllableRow]] = {}
    for row in phoneme.syllables(language):
        cells.setdefault(_key(row.initial, row.final), []).append(row)
    return cells


def _panels(language: phoneme.Language) -> list[_Panel]:
    """The grid cut between groups of finals, as one line of columns would be too wide to read. The
    first panel has all initials, the others those with a syllable in them."""
    rows: list[MaybePhone] = [None, *_ordered_initials(language)]
    cells = _cells(language)
    panels = list[_Panel]()
    for name, finals in _final_groups(language):
        if not panels or len(panels[-1].columns()) + len(finals) > _MOST_COLUMNS:
            panels.append(_Panel([], rows))
        panels[-1].groups.append((name, finals))
    return panels[:1] + [_without_empty_rows(panel, cells) for panel in panels[1:]]


def _without_empty_rows(
    panel: _Panel, cells: dict[tuple[int, int], list[phoneme.SyllableRow]]
) -> _Panel:
    finals = panel.columns()
    rows = [row for row in panel.rows if any(_key(row, final) in cells for final in finals)]
    return _Panel(panel.groups, rows)


# By place of articulation, the retroflex initials before the dental ones. Cantonese has its table
# in such an order.
_MANDARIN_INITIALS = "b p m f d t n l g k h j q x zh ch sh r z c s".split()


def _ordered_initials(language: phoneme.Language) -> list[phoneme.Phone]:
    phones = phoneme.phones(language)
    initials = [phone for phone in phones if phone.type == phoneme.PhoneType.INITIAL]
    if language is not phoneme.Language.MANDARIN:
        return initials
    order = {name: index for index, name in enumerate(_MANDARIN_INITIALS)}
    return sorted(initials, key=lambda phone: order.get(phone.name, len(order)))


def _final_groups(language: phoneme.Language) -> list[tuple[str, list[MaybePhone]]]:
    """The finals by what they begin with; first what is in their place in a few syllables: none
    ("ng"), or an initial (the "m" of "hm")."""
    phones = phoneme.phones(language)
    finals = [phone for phone in phones if phone.type == phoneme.PhoneType.FINAL]
    used = {row.final for row in phoneme.syllables(language)}
    others: list[MaybePhone] = [phone for phone in phones if phone in used - set(finals)]
    others = [None, *others] if None in used else others
    is_mandarin = language is phoneme.Language.MANDARIN
    groups = _by_medial(finals) if is_mandarin else _by_vowel(finals, language)
    return [("", others), *groups] if others else groups


_MEDIALS = {"": "no medial", "i": "medial i", "u": "medial u", "v": "medial v (ü)"}
_APICAL = ("ii", "iii")  # vowels of their own, written with i


def _by_medial(finals: list[phoneme.Phone]) -> list[tuple[str, list[MaybePhone]]]:
    """Each medial with the rhymes after it in the order that they have alone."""
    medials = {phone.id: _medial(phone.name) for phone in finals}
    alone = [phone.name for phone in finals if not medials[phone.id]]

    def place(phone: phoneme.Phone) -> int:
        rhyme = phone.name[len(medials[phone.id]) :]
        rhyme = "e" + rhyme if rhyme in ("n", "ng") else rhyme  # "in" is i + en
        return alone.index(rhyme) if rhyme in alone else -1

    groups = list[tuple[str, list[MaybePhone]]]()
    for medial, words in _MEDIALS.items():
        members = sorted((p for p in finals if medials[p.id] == medial), key=place)
        groups.append((words, [*members]))
    return groups


def _medial(name: str) -> str:
    return name[0] if name not in _APICAL and name[0] in _MEDIALS else ""


def _by_vowel(
    finals: list[phoneme.Phone], language: phoneme.Language
) -> list[tuple[str, list[MaybePhone]]]:
    """Each vowel with what follows it; the finals that no syllable spells as they are come apart:
    the "u" of "uaa" is written "w"."""
    respelt = {row.final for row in phoneme.syllables(language) if _is_respelt(row)}
    groups: dict[str, list[MaybePhone]] = {}
    for phone in finals:
        vowel = re.match(r"yu|aa|oe|eo|.", phone.name)
        name = "u, written w" if phone in respelt or vowel is None else vowel.group()
        groups.setdefault(name, []).append(phone)
    return list(groups.items())


def _is_respelt(row: phoneme.SyllableRow) -> bool:
    return row.final is not None and not row.pinyin.endswith(row.final.name)


def _panel(language: phoneme.Language, panel: _Panel, width: float, looks: _Looks) -> Block:
    cells = _cells(language)
    columns = panel.columns()
    left = MARGIN + _ROW_HEADING
    heading, height = 54.0, looks.cell_height()

    def draw(page: Page, top: float) -> None:
        body = top + heading
        _draw_groups(page, panel, left, top, width)
        for x, final in enumerate(columns):
            _draw_column_heading(page, final, (left + (x + 0.5) * width, body - 22), looks)
        _draw_rules(page, panel, (left, body), (width, height))
        for y, initial in enumerate(panel.rows):
            _draw_row_heading(page, initial, (left, body + (y + 0.5) * height), looks)
            for x, final in enumerate(columns):
                place = (left + x * width, body + y * height, width)
                _draw_cell(page, cells.get(_key(initial, final), []), looks, place)

    return Block(heading + len(panel.rows) * height + 14, draw)


def _draw_groups(page: Page, panel: _Panel, left: float, top: float, width: float) -> None:
    x = left
    for name, finals in panel.groups:
        right = x + len(finals) * width
        if name:
            page.lines([(x + 3, top + 22, right - 3, top + 22)], FAINT)
            page.text((x + right) / 2, top + 13, name, 10.5, color=FAINT)
        x = right


def _draw_column_heading(
    page: Page, final: MaybePhone, place: tuple[float, float], looks: _Looks
) -> None:
    x, y = place
    if final is None:
        page.text(x, y, "none", 9, color=FAINT)
        return
    number, color = looks.phone(final)
    page.text(x, y, final.name, 10, weight="bold")
    page.text(x, y + 13, number, 7.5, color=color)


def _draw_row_heading(
    page: Page, initial: MaybePhone, place: tuple[float, float], looks: _Looks
) -> None:
    """The number is beside the name, or below it where it may be long."""
    left, middle = place
    if initial is None:
        page.text(left - 6, middle, "no initial", 9, ha="right", color=FAINT)
        return
    number, color = looks.phone(initial)
    right, up, down = (24, 0, 0) if looks.counts is None else (6, 6, 7)
    page.text(left - right, middle - up, initial.name, 11, ha="right", weight="bold")
    page.text(left - 6, middle + down, number, 7.5, ha="right", color=color)


def _draw_rules(
    page: Page, panel: _Panel, place: tuple[float, float], cell: tuple[float, float]
) -> None:
    """The lines between the rows, and between the groups of columns."""
    (left, top), (width, height) = place, cell
    right = left + len(panel.columns()) * width
    bottom = top + len(panel.rows) * height
    rows = (top + y * height for y in range(len(panel.rows) + 1))
    page.lines((left, y, right, y) for y in rows)
    columns = (left + x * width for x in range(len(panel.columns()) + 1))
    page.lines((x, top, x, bottom) for x in columns)
    x = left
    for _, finals in panel.groups[:-1]:
        x += len(finals) * width
        page.lines([(x, top, x, bottom)], FAINT)


def _draw_cell(
    page: Page,
    rows: list[phoneme.SyllableRow],
    looks: _Looks,
    place: tuple[float, float, float],
) -> None:
    """Syllables that share a cell are side by side in it."""
    left, top, width = place
    height, part = looks.cell_height(), width / max(1, len(rows))
    name_size, number_size = (9.5, 8) if len(rows) == 1 else (8.5, 6.5)
    for index, row in enumerate(rows):
        (look, number), x = looks.syllable(row), left + index * part
        box = (x + 0.75, top + 0.75, part - 1.5, height - 1.5)
        page.box(*box, facecolor=look.fill, edgecolor=look.edge, linewidth=0.6)
        middle = top + height / 2 - (6 if number else 0)
        page.text(x + part / 2, middle, row.pinyin, name_size, color=look.ink)
        if number:
            page.text(x + part / 2, middle + 12.5, number, number_size, color=look.ink)
