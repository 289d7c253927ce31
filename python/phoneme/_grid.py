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
    WIDTH,
    Block,
    Look,
    Page,
    Shading,
    legend_block,
)

MaybePhone = Optional["phoneme.Phone"]

_CELL_HEIGHT = 19.0
_ROW_HEADING = 56.0
_MOST_COLUMNS = 24


class _Panel(NamedTuple):
    """A part of the grid: columns under their groups, and the rows that have something in it."""

    groups: list[tuple[str, list[MaybePhone]]]
    rows: list[MaybePhone]

    def columns(self) -> list[MaybePhone]:
        return [final for _, finals in self.groups for final in finals]


def grid_blocks(language: phoneme.Language, counts: Coverage | None) -> list[Block]:
    panels = _panels(language)
    shading = None if counts is None else Shading(counts.syllables.values())
    if shading is None:
        legend = [(PLAIN_LOOK, "syllable"), (Look(PAPER, edge=LINE), "no such syllable")]
    else:
        legend = shading.legend()
    width = (WIDTH - 2 * MARGIN - _ROW_HEADING) / max(len(p.columns()) for p in panels)
    looks = {
        row.id: PLAIN_LOOK if shading is None else shading.look(_count(counts, row.id))
        for row in phoneme.syllables(language)
    }
    parts = [_panel(language, panel, width, looks) for panel in panels]
    return [legend_block(legend, _unused(language)), *parts]


def _count(counts: Coverage | None, row: int) -> int:
    return 0 if counts is None else counts.syllables[row]


def _unused(language: phoneme.Language) -> str:
    """A note that names the phones that no syllable has."""
    usable = set(usable_phones(language))
    unused = [name_and_id(phone) for phone in phoneme.phones(language) if phone not in usable]
    return f"Initials down, finals across. In no syllable: {', '.join(unused)}."


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
    """The finals by what they begin with; first what stands in their place in a few syllables: none
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
    """Each medial with the rhymes behind it in the order that they have alone."""
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
    """Each vowel with what follows it; the finals that no syllable spells as they are stand apart:
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


def _panel(
    language: phoneme.Language, panel: _Panel, width: float, looks: dict[int, Look]
) -> Block:
    cells = _cells(language)
    columns = panel.columns()
    left = MARGIN + _ROW_HEADING
    heading = 54.0

    def draw(page: Page, top: float) -> None:
        body = top + heading
        _draw_groups(page, panel, left, top, width)
        _draw_column_headings(page, columns, left, body - 22, width)
        _draw_rules(page, panel, left, body, width)
        for y, initial in enumerate(panel.rows):
            _draw_row_heading(page, initial, left, body + y * _CELL_HEIGHT)
            for x, final in enumerate(columns):
                place = (left + x * width, body + y * _CELL_HEIGHT, width)
                _draw_cell(page, cells.get(_key(initial, final), []), looks, place)

    return Block(heading + len(panel.rows) * _CELL_HEIGHT + 14, draw)


def _draw_groups(page: Page, panel: _Panel, left: float, top: float, width: float) -> None:
    x = left
    for name, finals in panel.groups:
        right = x + len(finals) * width
        if name:
            page.lines([(x + 3, top + 22, right - 3, top + 22)], FAINT)
            page.text((x + right) / 2, top + 13, name, 10.5, color=FAINT)
        x = right


def _draw_column_headings(
    page: Page, finals: list[MaybePhone], left: float, y: float, width: float
) -> None:
    for index, final in enumerate(finals):
        x = left + (index + 0.5) * width
        if final is None:
            page.text(x, y, "none", 9, color=FAINT)
            continue
        page.text(x, y, final.name, 10, weight="bold")
        page.text(x, y + 13, str(final.id), 7.5, color=FAINT)


def _draw_row_heading(page: Page, initial: MaybePhone, left: float, y: float) -> None:
    middle = y + _CELL_HEIGHT / 2
    if initial is None:
        page.text(left - 6, middle, "no initial", 9, ha="right", color=FAINT)
        return
    page.text(left - 24, middle, initial.name, 11, ha="right", weight="bold")
    page.text(left - 6, middle, str(initial.id), 7.5, ha="right", color=FAINT)


def _draw_rules(page: Page, panel: _Panel, left: float, top: float, width: float) -> None:
    """The lines between the rows, and between the groups of columns."""
    right = left + len(panel.columns()) * width
    bottom = top + len(panel.rows) * _CELL_HEIGHT
    rows = (top + y * _CELL_HEIGHT for y in range(len(panel.rows) + 1))
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
    looks: dict[int, Look],
    place: tuple[float, float, float],
) -> None:
    """Syllables that share a cell stand in it side by side."""
    left, top, width = place
    part = width / max(1, len(rows))
    for index, row in enumerate(rows):
        look, x = looks[row.id], left + index * part
        box = (x + 0.75, top + 0.75, part - 1.5, _CELL_HEIGHT - 1.5)
        page.box(*box, facecolor=look.fill, edgecolor=look.edge, linewidth=0.6)
        size = 9.5 if len(rows) == 1 else 8.5
        page.text(x + part / 2, top + _CELL_HEIGHT / 2, row.pinyin, size, color=look.ink)
