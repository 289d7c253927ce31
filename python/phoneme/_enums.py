"""The languages, the types of phones and what became of a text of a batch, by number."""

from __future__ import annotations

import enum


class Language(enum.IntEnum):
    """A language by its id. Every `language` argument takes its name, its member or its id.

    >>> [len(phones(language)) for language in ("cantonese", "zh-HK", Language.CANTONESE, 10001)]
    [95, 95, 95, 95]

    The names, in any case: "mandarin", "zh", "zho", "zh-CN", "cmn" and "cmn-CN"; "cantonese",
    "yue", "yue-HK" and "zh-HK"; "english", "en", "eng" and "en-US". Any other name is a
    ValueError, and so is an id that is not registered. The library itself answers for such an id
    with the tables of another language, which one is fixed for each function: so does a function
    with ``fallback=True``.
    """

    MANDARIN = 10000
    CANTONESE = 10001
    AMERICAN_ENGLISH = 20000


class PhoneType(enum.IntEnum):
    """What a phone is.

    >>> phone("zh").type
    <PhoneType.INITIAL: 1>
    """

    SILENCE = 0
    INITIAL = 1
    FINAL = 2


class Status(enum.IntEnum):
    """What became of a text of a batch, as the number in its array `status`.

    >>> batch = analyze_batch(["nǐ hǎo", "san1 P", "hoa3"])
    >>> [Status(number).name for number in batch.status]
    ['CONVERTED', 'FOREIGN_TEXT', 'UNKNOWN_SYLLABLE']

    0 is a text of which nothing is lost. From `UNKNOWN_SYLLABLE` to `PHONES_LOST` it is the kind
    of the first problem, see ProblemKind. A conversion that does not look for problems has but
    `FAILED`; the same conversion of the one text says where.
    """

    CONVERTED = 0
    FAILED = 1  #: the text cannot be converted
    UNKNOWN_SYLLABLE = 2
    LETTERS_LOST = 3  #: letters, or other bytes but separators, that no syllable holds
    BAD_TONE = 4
    FOREIGN_TEXT = 5
    UNKNOWN_PHONE = 6
    INVALID_UTF8 = 7
    UNKNOWN_CODE = 8
    UNKNOWN_PHONE_ID = 9
    PHONES_LOST = 10
    MISSING = 255  #: None or NaN in the place of a text
