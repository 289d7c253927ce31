"""The languages and the types of phones, by number."""

from __future__ import annotations

import enum


class Language(enum.IntEnum):
    """A language by its id. Every `language` argument takes its name, its member or its id.

    The names are "mandarin", "cantonese" and "english".

    >>> [len(phones(language)) for language in ("cantonese", Language.CANTONESE, 10001)]
    [95, 95, 95]

    An id that is not registered is served by a language in its place, which one is fixed for each
    function; an unknown name is a ValueError.
    """

    MANDARIN = 10000
    CANTONESE = 10001
    AMERICAN_ENGLISH = 20000


class PhoneType(enum.IntEnum):
    """What a phone is.

    >>> phone("mandarin", "zh").type
    <PhoneType.INITIAL: 1>
    """

    SILENCE = 0
    INITIAL = 1
    FINAL = 2
