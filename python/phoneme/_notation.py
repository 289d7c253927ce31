"""From what dictionaries and corpora write to the notation that the library reads, and back.

Texts may be str or bytes. What is said about a text is said in its own positions: characters of a
str, bytes of bytes.
"""

from __future__ import annotations

import enum
import functools
import os
from dataclasses import dataclass
from typing import (
    TYPE_CHECKING,
    Any,
    Callable,
    Iterable,
    Iterator,
    Literal,
    Mapping,
    NamedTuple,
    NoReturn,
    Optional,
    TypeVar,
    Union,
    overload,
)

from phoneme import _core
from phoneme._core import Syllable, presentable, shown, type_name
from phoneme._errors import (
    Errors,
    LanguageName,
    Text,
    is_iterable,
    listed,
    raise_for_item,
    settle,
)

if TYPE_CHECKING:
    from phoneme._core import SyllableWithGaps

Cutting = Literal["whole", "forward", "backward", "none"]
Spacing = Literal["word", "space"]


class Rule(str, enum.Enum):
    """A change that normalising makes. Wherever rules are passed, their names do as well.

    >>> normalize_pinyin("lu:4", rules=[Rule.DIAERESIS]).text
    'lv4'
    >>> normalize_pinyin("lu:4", rules=["diaeresis"]).text
    'lv4'
    >>> normalize_pinyin("lu:4 nar4", rules=["no-erhua", "no-fused-erhua"]).text
    'lv4'

    A name is spelled as the command line tool spells it. Where a name begins with "no-", as that of
    an option of the tool, the rules are those in use by default, without those of the "no-" names
    and with the others that are named; else they are the named ones alone.

    >>> arpabet_to_pronunciation("OW2", rules=["second-stress", "no-missing-stress"]).text
    'ow 1'
    """

    FULL_WIDTH = "full-width"  #: full-width letters and digits to ASCII
    PUNCTUATION = "punctuation"  #: middle dots, commas and other punctuation to a space
    DIAERESIS = "diaeresis"  #: "u:", u with diaeresis, "lue" and "nue" to v (Pinyin)
    TONE_MARK = "tone-mark"  #: tone marks to digits; unmarked among marked to 5 (Pinyin)
    NEUTRAL_TONE = "neutral-tone"  #: tone 0 or none to the neutral tone (Pinyin)
    ERHUA = "erhua"  #: "r5" to "er5", also after a word with tone marks (Pinyin)
    FUSED_ERHUA = "fused-erhua"  #: "dianr3" to "dian3 er5" (Pinyin)
    ABBREVIATION = "abbreviation"  #: abbreviations and lone full-width letters kept apart
    GLUED = "glued"  #: a space between glued syllables, "wan2gung1" (Jyutping)
    ALIAS = "alias"  #: a spelling replaced by its alias (Jyutping)
    LOWER_CASE = "lower-case"  #: phone names to lower case (ARPAbet)
    REDUCED_VOWEL = "reduced-vowel"  #: AH0 to ax (ARPAbet)
    SECOND_STRESS = "second-stress"  #: stress 2 folded to 1 (ARPAbet)
    MISSING_STRESS = "missing-stress"  #: a vowel without a stress digit read as 0 (ARPAbet)


class ProblemKind(str, enum.Enum):
    """What is wrong with a piece of a text.

    >>> normalize_pinyin("ni9").problems[0].kind
    <ProblemKind.BAD_TONE: 'bad tone'>
    """

    UNKNOWN_SYLLABLE = "unknown syllable"
    LETTERS_LOST = "letters lost"
    BAD_TONE = "bad tone"
    FOREIGN_TEXT = "foreign text"
    UNKNOWN_PHONE = "unknown phone"
    INVALID_UTF8 = "invalid UTF-8"
    UNKNOWN_CODE = "unknown syllable code"
    UNKNOWN_PHONE_ID = "unknown phone-id byte"
    PHONES_LOST = "phones lost"  #: phones that no byte closes


class Hint(str, enum.Enum):
    """What a problem's hint is.

    >>> analyze("ni1", "cantonese").problems[0].hint
    <Hint.ALIAS: 'alias'>

    A SPELLING is one slip of the keyboard away, an ALIAS is what the alias table that is shipped
    gives, and of a GAP the initial and the final exist, but not together.
    """

    SPELLING = "spelling"
    ALIAS = "alias"
    GAP = "gap"


class Range(NamedTuple):
    """A piece of a text: ``text[start:stop]``.

    >>> text = "san1 P"
    >>> problem, = normalize_pinyin(text).problems
    >>> text[slice(*problem.range)]
    'P'
    """

    start: int
    stop: int


class Application(NamedTuple):
    """One application of a rule, and the piece of the text that it changed.

    >>> normalize_pinyin("lu:4").applied
    (Application(rule=<Rule.DIAERESIS: 'diaeresis'>, range=Range(start=1, stop=3)),)
    """

    rule: Rule
    range: Range


class Problem(NamedTuple):
    """A piece of the text that could not be placed.

    >>> analyze("ni3 hoa3").problems[0].suggestion
    'hao3'

    `suggestion` is what may have been meant, "" without one, and `hint` what it comes from. `piece`
    is what the hint is about, None without a hint: more than `range` where that has only the
    letters that a cut leaves out, less where that has several syllables.

    >>> problem, = analyze("yai").problems
    >>> problem.range, problem.piece, problem.suggestion
    (Range(start=2, stop=3), Range(start=0, stop=3), 'yao')

    `initial` and `final` are those of a `Hint.GAP`, as they are spelled, else "".

    >>> problem, = analyze("lan2", "cantonese").problems
    >>> problem.hint, problem.initial, problem.final
    (<Hint.GAP: 'gap'>, 'l', 'an')
    """

    kind: ProblemKind
    range: Range
    suggestion: str
    hint: Optional[Hint] = None
    piece: Optional[Range] = None
    initial: str = ""
    final: str = ""


class Normalized(NamedTuple):
    """A text in the library's notation, and how it came about.

    >>> result = normalize_pinyin("lǜ")
    >>> result.text, result.origins, [application.rule.value for application in result.applied]
    ('lv4', (0, 1, 1), ['diaeresis', 'tone-mark'])

    `origins` has for each character of `text` the position that it comes from; `applied` and
    `problems` are in the order of the text, and without problems nothing was lost.
    """

    text: str
    origins: tuple[int, ...]
    applied: tuple[Application, ...]
    problems: tuple[Problem, ...]


class AnalyzedSyllable(NamedTuple):
    """A syllable of a text, and its place.

    >>> syllable, = analyze("Nǐ").syllables
    >>> syllable.spelling, syllable.digit, syllable.range, syllable.row
    ('ni', '3', Range(start=0, stop=2), 224)

    `spelling` is in the library's letters, for English the names of the phones; `digit` is its tone
    or stress, or ""; `row` its row of the syllable table, None for English.
    """

    spelling: str
    digit: str
    range: Range
    row: Optional[int]
    syllable: Syllable


class Analysis(NamedTuple):
    """A text, read: every character is in a syllable, a separator or a problem.

    >>> analysis = analyze("Nǐ hoa3")
    >>> [syllable.spelling for syllable in analysis.syllables], analysis.separators
    (['ni'], (Range(start=2, stop=3),))
    """

    syllables: tuple[AnalyzedSyllable, ...]
    separators: tuple[Range, ...]
    applied: tuple[Application, ...]
    problems: tuple[Problem, ...]


class CutSyllable(NamedTuple):
    """One syllable of a cut: its letters, and its row in the syllable table.

    >>> cut_whole("ni").syllables
    (CutSyllable(range=Range(start=0, stop=2), row=224),)
    """

    range: Range
    row: int


@dataclass(frozen=True)
class Cut:
    """How a word can be cut into syllables.

    >>> cut = cut_whole("xian", max_cuts=2)
    >>> cut.covers, cut.count, [len(syllables) for syllables in cut.cuts]
    (True, 2, [1, 2])

    `covers` says whether a cut exists that leaves no letter out, `count` how many there are, None
    for too many to count. `syllables` is the best, `cuts` lists the first of them, the best first.
    `directions_differ` says whether longest match from the front and from the end disagree.
    """

    covers: bool
    syllables: tuple[CutSyllable, ...]
    count: Optional[int]
    cuts: tuple[tuple[CutSyllable, ...], ...]
    directions_differ: bool


class Aliases(Mapping[str, str]):
    """Spellings and the Jyutping syllables that replace them, ready for use.

    >>> lazy = Aliases({"ni": "nei"})
    >>> normalize_jyutping("ni5", aliases=lazy).text
    'nei5'

    A mapping does in its place; this one is checked and made only once. Entries that cannot be
    used are a ValueError that lists the first ten.
    """

    def __init__(self, aliases: Mapping[str, str]) -> None:
        if not hasattr(aliases, "keys"):
            takes = "aliases must be a mapping of spellings to syllables"
            raise TypeError(f"{takes}, not {type_name(aliases)}")
        given = dict(aliases)
        self._table, self._aliases, errors = _core.parse_aliases(_alias_lines(given))
        if errors or self._aliases != given:
            raise ValueError(listed(_wrong_aliases(given)))

    def _read(self, text: Text) -> None:
        self._table, self._aliases, errors = _core.parse_aliases(text)
        if errors:
            raise ValueError(listed(f"line {line}: {_short(message)}" for line, message in errors))

    def __getitem__(self, spelling: str) -> str:
        return self._aliases[spelling]

    def __iter__(self) -> Iterator[str]:
        return iter(self._aliases)

    def __len__(self) -> int:
        return len(self._aliases)

    def __repr__(self) -> str:
        return f"Aliases({self._aliases!r})"

    def __reduce__(self) -> tuple[Any, ...]:
        return Aliases, (self._aliases,)


def _short(message: str) -> str:
    """A message whose quoted text, which is in the middle, may be long, and anything."""
    most = 60  # characters that presentable leaves
    begin, end = presentable(message[:most]), presentable(message[most:][-most:])
    return f"{begin}...{end}" if len(message) > 2 * most else begin + end


def _alias_lines(aliases: Mapping[str, str]) -> str:
    # The leading comment makes a byte order mark in a spelling an error like any other.
    return "#\n" + "".join(f"{spelling}\t{syllable}\n" for spelling, syllable in aliases.items())


def _wrong_aliases(aliases: Mapping[str, str]) -> Iterator[str]:
    """What is wrong with each entry that cannot be used."""
    for spelling, syllable in aliases.items():
        _, pairs, errors = _core.parse_aliases(_alias_lines({spelling: syllable}))
        if errors:
            yield f"aliases[{shown(spelling)}]: {_short(errors[0][1])}"
        elif pairs != {spelling: syllable}:  # the spelling is a comment, or there are more lines
            pair = f"{shown(spelling)} and {shown(syllable)}"
            yield f"aliases[{shown(spelling)}]: {pair} are not an alias"


AliasesLike = Optional[Mapping[str, str]]


def parse_aliases(text: Text) -> Aliases:
    r"""Reads a table of aliases: one a line, the spelling, a tab and the syllable in its place.

    >>> parse_aliases("# lazy sounds\nni\tnei\n")
    Aliases({'ni': 'nei'})

    Empty lines and lines that begin with "#" are left out. Lines that cannot be used, also a
    spelling of an earlier line, are a ValueError that lists the first ten.
    """
    aliases = Aliases.__new__(Aliases)
    aliases._read(text)
    return aliases


@functools.cache
def shipped_aliases() -> Aliases:
    """The aliases that the package ships: spellings found in Cantonese corpora, as of syllables
    without their ng, and the syllables that replace them.

    >>> analyze("ni5 hou2", "cantonese", aliases=shipped_aliases()).problems
    ()
    """
    # Nothing is imported here: a fork meanwhile would leave the child with half a module.
    path = os.path.join(os.path.dirname(__file__), "jyutping_aliases.tsv")
    with open(path, "rb") as table:
        return parse_aliases(table.read())


def core_aliases(aliases: AliasesLike) -> Optional[_core.AliasTable]:
    if aliases is None:
        return None
    return (aliases if isinstance(aliases, Aliases) else Aliases(aliases))._table


#: Rules by their members or names, see `Rule`; None for those in use by default.
Rules = Optional[Iterable[Union[Rule, str]]]


def rule_bits(rules: Rules) -> Optional[int]:
    if rules is None:
        return None
    if isinstance(rules, (str, bytes)) or not hasattr(rules, "__iter__"):
        what = f"rules must be an iterable of rules, not one {type_name(rules)}"
        raise TypeError(f"{what}; {_KNOWN_RULES}")
    names = [rule.value if isinstance(rule, Rule) else rule for rule in rules]
    unknown = {shown(name) for name in names if not isinstance(name, str) or name not in _SWITCHES}
    if unknown:
        raise ValueError(f"unknown rule {listed(sorted(unknown), ', ')}; {_KNOWN_RULES}")
    on = off = 0
    for name in names:
        bit, is_on = _SWITCHES[name]
        on, off = (on | bit, off) if is_on else (on, off | bit)
    return _core.DEFAULT_RULES & ~off | on if off else on


_KNOWN_RULES = 'the rules, also with "no-", are ' + ", ".join(_core.RULE_NAMES)

# The bit of each name of a rule, and whether it is switched on.
_SWITCHES = {
    prefix + name: (1 << i, not prefix)
    for i, name in enumerate(_core.RULE_NAMES)
    for prefix in ("", "no-")
}


# Results are made for each call, and these are quicker than the constructors.
_Record = TypeVar("_Record", bound=tuple[Any, ...])
_new: Callable[[type[_Record], tuple[Any, ...]], _Record] = tuple.__new__
_RULES = {rule.value: rule for rule in Rule}
_HINTS = {hint.value: hint for hint in Hint}
_PROBLEM_KINDS = {kind.value: kind for kind in ProblemKind}


def _applied(applied: tuple[_core.Application, ...]) -> tuple[Application, ...]:
    if not applied:
        return ()
    return tuple([_new(Application, (_RULES[rule], _new(Range, at))) for rule, at in applied])


def _problems(problems: tuple[_core.Problem, ...]) -> tuple[Problem, ...]:
    if not problems:
        return ()
    return tuple(
        [
            _new(
                Problem,
                (
                    _PROBLEM_KINDS[kind],
                    _new(Range, at),
                    suggestion,
                    _HINTS[hint] if hint else None,
                    _new(Range, piece) if piece[0] < piece[1] else None,
                    initial,
                    final,
                ),
            )
            for kind, at, suggestion, hint, piece, initial, final in problems
        ]
    )


def _normalized(result: _core.Normalized) -> Normalized:
    text, origins, applied, problems = result
    return _new(Normalized, (text, origins, _applied(applied), _problems(problems)))


def normalize_pinyin(text: Text, *, rules: Rules = None) -> Normalized:
    """Converts Pinyin as dictionaries, corpora and people write it to the library's notation.

    >>> normalize_pinyin("Xī'ān, lu:4").text
    'xi1 an1 lv4'
    >>> normalize_pinyin("yīdīngdiǎnr").text
    'yi1 ding1 dian3 er5'

    `text` is one line or entry: whether it has tones is decided for all of it. A word of a text
    without tones stays whole, see `cut_whole`. Without `rules`, all rules for Pinyin are in use.
    """
    return _normalized(_core.normalize_pinyin(text, rule_bits(rules)))


def normalize_jyutping(
    text: Text,
    *,
    rules: Rules = None,
    aliases: AliasesLike = None,
) -> Normalized:
    """Converts Jyutping as dictionaries and corpora write it to the library's notation.

    >>> normalize_jyutping("wan2gung1").text
    'wan2 gung1'
    >>> normalize_jyutping("ai3", aliases={"ai": "ngai"}).text
    'ngai3'

    `aliases` maps spellings to the syllables that replace them. Otherwise as `normalize_pinyin`.
    """
    return _normalized(_core.normalize_jyutping(text, rule_bits(rules), core_aliases(aliases)))


def arpabet_to_pronunciation(
    phones: Text, *, rules: Rules = None
) -> Normalized:
    """Converts the pronunciation of a word from ARPAbet to a pronunciation string.

    >>> arpabet_to_pronunciation("HH AH0 L OW1").text
    'hh ax 0, l ow 1'

    Each vowel makes a syllable; consonants between two are cut by maximal onset. Without `rules`,
    all rules for ARPAbet but Rule.SECOND_STRESS are in use.
    """
    return _normalized(_core.arpabet_to_pronunciation(phones, rule_bits(rules)))


def pronunciation_to_arpabet(pronunciation: Text) -> Normalized:
    """Converts a pronunciation string of American English to ARPAbet.

    >>> pronunciation_to_arpabet("hh ax 0, l ow 1").text
    'HH AH0 L OW1'
    """
    return _normalized(_core.pronunciation_to_arpabet(pronunciation))


def cutting_number(cutting: Cutting) -> int:
    ways = ("whole", "forward", "backward", "none")
    if cutting not in ways:
        raise ValueError(f"cutting must be one of {ways}, not {shown(cutting)}")
    return ways.index(cutting)


def _notation_number(notation: str | None) -> int | None:
    if notation is None:
        return None
    if notation not in _core.NOTATIONS:
        raise ValueError(f"notation must be one of {tuple(_core.NOTATIONS)}, not {shown(notation)}")
    return _core.NOTATIONS[notation]


def analyze(
    text: Text,
    language: LanguageName = "mandarin",
    *,
    notation: str | None = None,
    rules: Rules = None,
    aliases: AliasesLike = None,
    cutting: Cutting = "whole",
    fallback: bool = False,
) -> Analysis:
    """Reads a text syllable by syllable, and finds everything in it that cannot be read.

    >>> for problem in analyze("Nǐ hoa3, san1 P").problems:
    ...     print(problem.kind.value, problem.range, problem.suggestion or None)
    unknown syllable Range(start=3, stop=7) hao3
    foreign text Range(start=14, stop=15) None

    Mandarin is read as by `normalize_pinyin`, Cantonese as by `normalize_jyutping` and American
    English as by `arpabet_to_pronunciation`; with `notation` as what that says: "pinyin",
    "jyutping", "arpabet", "text" (as `py2ph` reads it), "codes", "ids" or "pronunciation".

    >>> analyze("2243 9999", notation="codes").problems[0].kind.value
    'unknown syllable code'

    Words without tones are cut "whole" (so that every
    letter finds its syllable, if that can be), "forward" or "backward" (by longest match), or not
    at all ("none": each word is one syllable). With `fallback` an unregistered language is read as
    Mandarin.
    """
    how = rule_bits(rules), core_aliases(aliases), cutting_number(cutting), fallback
    number = _notation_number(notation)
    syllables, separators, applied, problems = _core.analyze(text, language, *how, number)
    read = tuple(
        [
            _new(AnalyzedSyllable, (spelling, digit, _new(Range, at), row, syllable))
            for spelling, digit, at, row, syllable in syllables
        ]
    )
    between = tuple([_new(Range, at) for at in separators])
    return _new(Analysis, (read, between, _applied(applied), _problems(problems)))


def _cut(syllables: tuple[_core.CutSyllable, ...]) -> tuple[CutSyllable, ...]:
    return tuple([_new(CutSyllable, (_new(Range, at), row)) for at, row in syllables])


def cut_whole(
    letters: Text,
    language: LanguageName = "mandarin",
    *,
    max_cuts: int = 0,
    fallback: bool = False,
) -> Cut:
    """Cuts a word without tones so that every letter finds its syllable, if that can be.

    >>> word = "yipinguo"
    >>> [word[slice(*syllable.range)] for syllable in cut_whole(word).syllables]
    ['yi', 'pin', 'guo']

    Longest match from the front would give "yi" and "ping", and lose the rest. The best cut leaves
    the fewest letters out, of those has the fewest syllables, and of those costs the least: a
    syllable costs how rare it is, and more within a word when it begins with a, e or o or is m, n
    or ng. Mandarin m, n, ng, hm and hng are never cut off a word. A capital opens a syllable. At
    most `max_cuts` cuts that cover the word are listed. With `fallback` an unregistered language is
    served by Mandarin.
    """
    result = _core.cut_whole(letters, language, max_cuts, fallback)
    covers, syllables, count, cuts, differ = result
    return Cut(covers, _cut(syllables), count, tuple(_cut(cut) for cut in cuts), differ)


SyllablesOrCodes = Union[Iterable[int], Iterable[Syllable]]


def _items(syllables: SyllablesOrCodes) -> tuple[Any, ...]:
    if not is_iterable(syllables):
        raise TypeError(f"syllables must be iterable, not {type_name(syllables)}")
    return tuple(syllables)


def _with_spaces(spacing: str) -> bool:
    if spacing not in ("word", "space"):
        raise ValueError(f"spacing must be 'word' or 'space', not {shown(spacing)}")
    return spacing == "space"


def _written(
    result: Union[str, int], items: tuple[Any, ...], errors: str, language: LanguageName
) -> Optional[str]:
    """The text, or what happens when the item of an index cannot be written."""

    def explain(items: tuple[Any, ...], language: LanguageName) -> NoReturn:
        raise_for_item(items, int(result), language)

    settle(not isinstance(result, str), errors, explain, items, language)
    return result if isinstance(result, str) else None


@overload
def marked_pinyin(
    syllables: SyllablesOrCodes, *, spacing: Spacing = ..., errors: Literal["raise"] = ...
) -> str: ...


@overload
def marked_pinyin(
    syllables: SyllablesOrCodes, *, spacing: Spacing = ..., errors: Literal["none"]
) -> Optional[str]: ...


def marked_pinyin(
    syllables: SyllablesOrCodes, *, spacing: Spacing = "word", errors: Errors = "raise"
) -> Optional[str]:
    """Writes Mandarin syllables, or their codes, as Pinyin with tone marks.

    >>> marked_pinyin(py2code("nv3er2")), marked_pinyin(py2ph("nv3er2"), spacing="space")
    ("nǚ'ér", 'nǚ ér')

    With spacing "word" syllables are written together, with an apostrophe where one belongs. A code
    or syllable that cannot be written, as one without a code or of another language, is a
    ConversionError, or None with errors="none". A code outside of 0 to 65535 is always a
    ValueError.
    """
    items = _items(syllables)
    return _written(_core.marked_pinyin(items, _with_spaces(spacing)), items, errors, "mandarin")


@overload
def jyutping(
    syllables: SyllablesOrCodes, *, spacing: Spacing = ..., errors: Literal["raise"] = ...
) -> str: ...


@overload
def jyutping(
    syllables: SyllablesOrCodes, *, spacing: Spacing = ..., errors: Literal["none"]
) -> Optional[str]: ...


def jyutping(
    syllables: SyllablesOrCodes, *, spacing: Spacing = "word", errors: Errors = "raise"
) -> Optional[str]:
    """Writes Cantonese syllables, or their codes, as Jyutping with tone digits.

    >>> jyutping(py2code("nei5hou2", "cantonese"), spacing="space")
    'nei5 hou2'

    Codes and what cannot be written are as with `marked_pinyin`.
    """
    items = _items(syllables)
    return _written(_core.jyutping(items, _with_spaces(spacing)), items, errors, "cantonese")


@overload
def pronunciation_string(
    syllables: Iterable[SyllableWithGaps], *, errors: Literal["raise"] = ...
) -> str: ...


@overload
def pronunciation_string(
    syllables: Iterable[SyllableWithGaps], *, errors: Literal["none"]
) -> Optional[str]: ...


def pronunciation_string(
    syllables: Iterable[Any], *, errors: Errors = "raise"
) -> Optional[str]:
    """Writes syllables of any language as a pronunciation string, for `pr2ph` to read back.

    >>> pronunciation_string(py2ph("ni3hao3"))
    'n i 3, h ao 3'

    Cannot be written: a syllable without phones or with None for one, and a phone of another
    language than the first one's. Failures are as with `marked_pinyin`.
    """
    items = _items(syllables)
    result = _core.pronunciation_string(items)  # a TypeError for what has no language
    language: LanguageName = items[0].language if items else "mandarin"
    return _written(result, items, errors, language)
