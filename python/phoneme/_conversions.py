"""The tables, and the conversions of one text, one code or one phone."""

from __future__ import annotations

from collections.abc import Sequence
from typing import TYPE_CHECKING, Any, Literal, Optional, Union, overload

from phoneme import _core
from phoneme._core import Phone, Syllable, SyllableRow
from phoneme._errors import (
    Errors,
    LanguageName,
    Text,
    raise_for_code,
    raise_for_phone,
    raise_for_phone_ids,
    raise_for_pinyin,
    raise_for_pronunciation,
    raise_for_pronunciation_ids,
    settle,
)

if TYPE_CHECKING:
    import numpy as np
    from numpy.typing import NDArray

    from phoneme._core import SyllableWithGaps

    PhoneIds = Union[bytes, bytearray, memoryview, NDArray[np.uint8]]
else:
    PhoneIds = Any  # NumPy is imported by the first batch


# Tables


def phones(language: LanguageName, *, fallback: bool = False) -> tuple[Phone, ...]:
    """The phone table of a language, in the order of the ids.

    >>> [phone.name for phone in phones("english")[:4]]
    ['sil', 'aa', 'ae', 'ah']

    With `fallback` an unregistered language is served by American English when its id is 20000 to
    29999, else by Mandarin.
    """
    return _core.phones(language, fallback)


@overload
def phone(
    id_or_name: Union[int, Text],
    language: LanguageName = ...,
    *,
    errors: Literal["raise"] = ...,
    fallback: Literal[False] = ...,
) -> Phone: ...


@overload
def phone(
    id_or_name: Union[int, Text],
    language: LanguageName = ...,
    *,
    errors: Literal["none"],
    fallback: bool = ...,
) -> Optional[Phone]: ...


@overload
def phone(
    id_or_name: Union[int, Text],
    language: LanguageName = ...,
    *,
    errors: Errors = ...,
    fallback: bool,
) -> Optional[Phone]: ...


def phone(
    id_or_name: Union[int, Text],
    language: LanguageName = "mandarin",
    *,
    errors: Errors = "raise",
    fallback: bool = False,
) -> Optional[Phone]:
    """The phone of an id or a name.

    >>> phone(14), phone("n"), phone("zh", "english")
    (Phone(14, mandarin, 'n'), Phone(14, mandarin, 'n'), Phone(40, english, 'zh'))

    Of two phones of one name it is the first. An id or a name that no phone has is a
    ConversionError, or None with errors="none". With `fallback` the library answers: what is
    unknown gives row 0, silence, and the Mandarin names "E" and "ng", which syllables use and no
    phone carries, give None; an unregistered language is served as by `phones`.
    """
    result = _core.phone(id_or_name, language, fallback)
    if result is None or errors != "raise":
        settle(result is None and not fallback, errors, raise_for_phone, id_or_name, language)
    return result


def phone_feature(phone: Phone, index: int) -> str:
    """Character `index` of a phone's articulatory features; "" where it has none.

    >>> phone_feature(phone("aa", "english"), 0), phone_feature(phone("a"), 0)
    ('+', '')

    By position: 0 vowel or not, 1 vowel kind (long, short, diphthong, a reduced), 2 height (1
    high to 3 low), 3 frontness (1 front to 3 back), 4 rounding, 5 manner, 6 place, 7 voicing.
    """
    return phone.feature[index : index + 1] if index >= 0 else ""


def syllables(language: LanguageName, *, fallback: bool = False) -> tuple[SyllableRow, ...]:
    """The syllable table of a language, in the order of the ids; empty for American English.

    >>> len(syllables("mandarin")), syllables("cantonese")[0]
    (417, SyllableRow(0, cantonese, 'aa'))

    With `fallback` an unregistered language is served by Mandarin.
    """
    return _core.syllables(language, fallback)


# Romanised text


@overload
def py2ph(
    text: Text, language: LanguageName = ..., *, errors: Literal["raise"] = ..., fallback: bool = ...
) -> list[Syllable]: ...


@overload
def py2ph(
    text: Text, language: LanguageName = ..., *, errors: Literal["none"], fallback: bool = ...
) -> Optional[list[Syllable]]: ...


def py2ph(
    text: Text,
    language: LanguageName = "mandarin",
    *,
    errors: Errors = "raise",
    fallback: bool = False,
) -> Optional[list[Syllable]]:
    """Converts romanised text to syllables with phones.

    >>> py2ph("ni3hao3")
    [Syllable('n i', mandarin, code=2243, tone=3), Syllable('h ao', mandarin, code=1173, tone=3)]
    >>> py2ph("ni3 xyz3", errors="none") is None
    True

    A digit closes the syllable before it, a capital opens one, and white space, "'" and "`"
    separate syllables. A run of letters that is not a syllable is cut by longest match, and what no
    match reaches is dropped ("hello" is "he"; `analyze` reports it); a run that a digit closes is
    never cut. A syllable without a tone digit has the top tone (5, in Cantonese 7).

    A piece that is not a syllable is a ConversionError, or None with errors="none". With `fallback`
    an unregistered language is served by Mandarin.
    """
    result = _core.py2ph(text, language, fallback)
    if result is None or errors != "raise":
        settle(result is None, errors, raise_for_pinyin, text, language)
    return result


@overload
def py2code(
    text: Text, language: LanguageName = ..., *, errors: Literal["raise"] = ..., fallback: bool = ...
) -> list[int]: ...


@overload
def py2code(
    text: Text, language: LanguageName = ..., *, errors: Literal["none"], fallback: bool = ...
) -> Optional[list[int]]: ...


def py2code(
    text: Text,
    language: LanguageName = "mandarin",
    *,
    errors: Errors = "raise",
    fallback: bool = False,
) -> Optional[list[int]]:
    """Converts romanised text to syllable codes: row of the syllable table * 10 + tone.

    >>> py2code("ni3hao3")
    [2243, 1173]

    Text, failures and languages are as with `py2ph`.
    """
    codes = _core.py2code(text, language, fallback)
    if codes is None or errors != "raise":
        settle(codes is None, errors, raise_for_pinyin, text, language)
    return codes


def pyw2py(
    word: Text,
    language: LanguageName = "mandarin",
    *,
    backward: bool = False,
    fallback: bool = False,
) -> list[str]:
    """Cuts a romanised word into its syllables.

    >>> pyw2py("fangan")
    ['fang', 'an']
    >>> pyw2py("fangan", backward=True)
    ['gan', 'fan']

    The pieces are in lower case, tone digits still attached. With `backward` a run of letters is
    cut by longest suffix and its syllables come last one first; runs between separators keep their
    order. Pieces are not checked: "xyz3" is passed on as it is, and a word that cannot be cut
    gives fewer or none. A piece of bytes that are not UTF-8 has surrogate escapes, but encoded
    surrogates alone become surrogates, as those of a str do. With `fallback` an
    unregistered language is served by Mandarin.
    """
    return _core.pyw2py(word, language, backward, fallback)


def tone_adaptation(
    tone: int, language: LanguageName = "mandarin", *, fallback: bool = False
) -> int:
    """Folds a tone, -128 to 127, into the range of a language: 1 to 7 for Cantonese, else 1 to 5.

    >>> tone_adaptation(6), tone_adaptation(0), tone_adaptation(0, "cantonese")
    (1, 5, 7)

    A tone out of range is its remainder by the top of the range, where 0 becomes the top; the
    remainder keeps the sign.
    """
    return _core.tone_adaptation(tone, language, fallback)


# Syllable codes


@overload
def code2ph(
    code: int, language: LanguageName = ..., *, errors: Literal["raise"] = ..., fallback: bool = ...
) -> Syllable: ...


@overload
def code2ph(
    code: int, language: LanguageName = ..., *, errors: Literal["none"], fallback: bool = ...
) -> Optional[Syllable]: ...


def code2ph(
    code: int,
    language: LanguageName = "mandarin",
    *,
    errors: Errors = "raise",
    fallback: bool = False,
) -> Optional[Syllable]:
    """Expands a syllable code, 0 to 65535, into a syllable with phones.

    >>> code2ph(2243)
    Syllable('n i', mandarin, code=2243, tone=3)

    The tone is the last decimal digit, not folded. A code without a row is a ConversionError, or
    None with errors="none". With `fallback` an unregistered language is served by Mandarin.
    """
    syllable = _core.code2ph(code, language, fallback)
    if syllable is None or errors != "raise":
        settle(syllable is None, errors, raise_for_code, code, language)
    return syllable


@overload
def code2py(
    code: int,
    language: LanguageName = ...,
    *,
    with_tone: bool = ...,
    errors: Literal["raise"] = ...,
    fallback: bool = ...,
) -> str: ...


@overload
def code2py(
    code: int,
    language: LanguageName = ...,
    *,
    with_tone: bool = ...,
    errors: Literal["none"],
    fallback: bool = ...,
) -> Optional[str]: ...


def code2py(
    code: int,
    language: LanguageName = "mandarin",
    *,
    with_tone: bool = True,
    errors: Errors = "raise",
    fallback: bool = False,
) -> Optional[str]:
    """Spells a syllable code, 0 to 65535.

    >>> code2py(2243), code2py(2243, with_tone=False)
    ('ni3', 'ni')

    The tone is the last decimal digit as it is, 0 included. A code without a row is a
    ConversionError, or None with errors="none". With `fallback` the library answers: such a code is
    spelt as row 0 ("a", in Cantonese "aa"), and in American English, which has no syllables, as "";
    an unregistered language is served by Mandarin, then always with the tone.
    """
    result = _core.code2py(code, language, with_tone, fallback)
    if result is None or errors != "raise":
        settle(result is None, errors, raise_for_code, code, language)
    return result


# Pronunciation strings and phone-id sequences


@overload
def pr2ph(
    pronunciation: Text,
    language: LanguageName = ...,
    *,
    as_ids: Literal[False] = ...,
    errors: Literal["raise"] = ...,
    fallback: Literal[False] = ...,
) -> list[Syllable]: ...


@overload
def pr2ph(
    pronunciation: Text,
    language: LanguageName = ...,
    *,
    as_ids: Literal[False] = ...,
    errors: Literal["raise"] = ...,
    fallback: bool,
) -> Sequence[SyllableWithGaps]: ...


@overload
def pr2ph(
    pronunciation: Text,
    language: LanguageName = ...,
    *,
    as_ids: Literal[False] = ...,
    errors: Literal["none"],
    fallback: Literal[False] = ...,
) -> Optional[list[Syllable]]: ...


@overload
def pr2ph(
    pronunciation: Text,
    language: LanguageName = ...,
    *,
    as_ids: Literal[False] = ...,
    errors: Literal["none"],
    fallback: bool,
) -> Optional[Sequence[SyllableWithGaps]]: ...


@overload
def pr2ph(
    pronunciation: Text,
    language: LanguageName = ...,
    *,
    as_ids: Literal[True],
    errors: Literal["raise"] = ...,
    fallback: bool = ...,
) -> bytes: ...


@overload
def pr2ph(
    pronunciation: Text,
    language: LanguageName = ...,
    *,
    as_ids: Literal[True],
    errors: Literal["none"],
    fallback: bool = ...,
) -> Optional[bytes]: ...


@overload
def pr2ph(
    pronunciation: Text,
    language: LanguageName = ...,
    *,
    as_ids: bool,
    errors: Literal["raise"] = ...,
    fallback: bool = ...,
) -> Union[Sequence[SyllableWithGaps], bytes]: ...


@overload
def pr2ph(
    pronunciation: Text,
    language: LanguageName = ...,
    *,
    as_ids: bool,
    errors: Literal["none"],
    fallback: bool = ...,
) -> Union[Sequence[SyllableWithGaps], bytes, None]: ...


def pr2ph(
    pronunciation: Text,
    language: LanguageName = "mandarin",
    *,
    as_ids: bool = False,
    errors: Errors = "raise",
    fallback: bool = False,
) -> Any:
    """Parses a pronunciation string into syllables, or with `as_ids` into a phone-id sequence.

    >>> pr2ph("hh ax 0, l ow 1", "english")
    [Syllable('hh ax', english), Syllable('l ow', english, raw_tone=1)]
    >>> list(pr2ph("n i 3, h ao 3", as_ids=True))
    [24, 35, 3, 28, 43, 3]

    Syllables are separated by ","; a syllable is phone names and one closing digit, separated by
    single spaces. The digit is `raw_tone`, taken as it is.

    A wrong phone or digit is a ConversionError, or None with errors="none". So are the Mandarin
    names "E" and "ng", which no phone carries. With `fallback` the library answers: they are None
    among the phones, but still fail with `as_ids`; and an unregistered language is served by
    American English.
    """
    explain = raise_for_pronunciation_ids
    if as_ids:
        phone_ids = _core.pr2ph_ids(pronunciation, language, fallback)
        if phone_ids is None or errors != "raise":
            settle(phone_ids is None, errors, explain, pronunciation, language)
        return phone_ids
    result = _core.pr2ph(pronunciation, language, fallback)
    if result is None or errors != "raise":
        explain = raise_for_pronunciation if fallback else explain
        settle(result is None, errors, explain, pronunciation, language)
    return result


@overload
def ph2ph(
    phone_ids: PhoneIds, language: LanguageName = ..., *, errors: Literal["raise"] = ..., fallback: bool = ...
) -> list[Syllable]: ...


@overload
def ph2ph(
    phone_ids: PhoneIds, language: LanguageName = ..., *, errors: Literal["none"], fallback: bool = ...
) -> Optional[list[Syllable]]: ...


def ph2ph(
    phone_ids: PhoneIds,
    language: LanguageName = "mandarin",
    *,
    errors: Errors = "raise",
    fallback: bool = False,
) -> Optional[list[Syllable]]:
    """Regroups a phone-id sequence into syllables.

    >>> ph2ph(bytes([24, 35, 3]))
    [Syllable('n i', mandarin, raw_tone=3)]

    A byte of 10 to 255 is the phone of id byte - 10; 0 to 9 closes a syllable and is its digit.
    Phones after the last closing byte are dropped. `phone_ids` is bytes, or any contiguous buffer
    of single bytes in one dimension, as a bytearray or a NumPy array of uint8.

    A byte that names no phone is a ConversionError, or None with errors="none". With `fallback` an
    unregistered language is served by American English.
    """
    result = _core.ph2ph(phone_ids, language, fallback)
    if result is None or errors != "raise":
        settle(result is None, errors, raise_for_phone_ids, phone_ids, language)
    return result


def ph2tp(phone_id: int, language: LanguageName = "mandarin", *, fallback: bool = False) -> int:
    """What a byte of a phone-id sequence is: 1 closes a syllable (0 to 9), 2 is a phone.

    >>> ph2tp(3), ph2tp(24)
    (1, 2)

    The answer is the same in every language.
    """
    return _core.ph2tp(phone_id, language, fallback)


# Lexicon phone classes: the numbers that a pronunciation lexicon stores


def lexicon_en_phone_type(name: Text) -> int:
    """The phone type of an American English phone name; 0 for any other name.

    >>> lexicon_en_phone_type("aa"), lexicon_en_phone_type("zh"), lexicon_en_phone_type("zz")
    (2, 1, 0)
    """
    return _core.lexicon_en_phone_type(name)


def lexicon_en_phone_id(name: Text) -> int:
    """The lexicon's number of an American English phone name, 50 to 90; 255 for any other name.

    >>> lexicon_en_phone_id("sil"), lexicon_en_phone_id("zh"), lexicon_en_phone_id("zz")
    (50, 90, 255)
    """
    return _core.lexicon_en_phone_id(name)


def lexicon_module_phone_type(
    name: Text, language: LanguageName = "mandarin", *, fallback: bool = False
) -> int:
    """The lexicon's class of a phone name in a Chinese language.

    >>> [lexicon_module_phone_type(name) for name in ("sil", "zz", "zh")]
    [0, 1, 2]

    0 is silence ("sil" and "ssil"), 2 any other phone of the language and 1 an unknown name. In
    every language but Mandarin and Cantonese it is 0, with `fallback` also in one that is not
    registered.
    """
    return _core.lexicon_module_phone_type(name, language, fallback)
