"""Normalising, analysing, cutting and writing, as Python shows them."""

from __future__ import annotations

import inspect
import json
import pickle
import subprocess
import types
from pathlib import Path
from typing import Any, Union

import phoneme
import pytest
from phoneme import Aliases, Hint, Problem, ProblemKind, Range, Rule, _core


def test_enums_are_those_of_the_library() -> None:
    assert [rule.value for rule in Rule] == list(_core.RULE_NAMES)
    assert len(Rule) == 14 and len(ProblemKind) == 9 and len(Hint) == 3


@pytest.mark.parametrize(
    "text, result",
    [
        ("Xī'ān, lu:4", "xi1 an1 lv4"),
        ("yīdīngdiǎnr", "yi1 ding1 dian3 er5"),
        ("san1 P", "san1"),
        ("", ""),
        ("ｎｉ３", "ni3"),
        ("漢字 hao3", "hao3"),
        ("\ud800hao3", "hao3"),
    ],
)
def test_pinyin(text: str, result: str) -> None:
    assert phoneme.normalize_pinyin(text).text == result
    encoded = text.encode("utf-8", "surrogatepass")
    assert phoneme.normalize_pinyin(encoded).text == result


def test_positions_are_those_of_the_argument() -> None:
    text = "漢lu:4 ǚ😀 x\ud800"
    as_str = phoneme.normalize_pinyin(text)
    as_bytes = phoneme.normalize_pinyin(text.encode("utf-8", "surrogatepass"))
    assert as_str.text == as_bytes.text == "lv4"
    assert as_str.origins == (1, 2, 4) and as_bytes.origins == (3, 4, 6)
    assert as_str.problems[0] == Problem(ProblemKind.FOREIGN_TEXT, Range(0, 1), "")
    assert as_bytes.problems[0].range == Range(0, 3)
    pieces = [text[slice(*problem.range)] for problem in as_str.problems]
    assert pieces == ["漢", "ǚ", "😀", "x", "\ud800"]
    kinds = [problem.kind.value for problem in as_str.problems]
    assert kinds == ["foreign text", "unknown syllable"] + ["foreign text"] + [
        "unknown syllable", "invalid UTF-8"
    ]  # fmt: skip


def test_rules() -> None:
    text = "lu:4 dianr3"
    assert phoneme.normalize_pinyin(text).text == "lv4 dian3 er5"
    assert phoneme.normalize_pinyin(text, rules=[]).text == "lu"
    only: Any
    for only in ([Rule.FUSED_ERHUA], ["fused-erhua"], {Rule.FUSED_ERHUA}, ["fused-erhua"] * 2):
        result = phoneme.normalize_pinyin(text, rules=only)
        assert result.text == "lu dian3 er5"
        assert [application.rule for application in result.applied] == [Rule.FUSED_ERHUA]
    for one_off in phoneme.Rule:
        used = phoneme.normalize_pinyin(text, rules=set(Rule) - {one_off}).applied
        assert one_off not in [application.rule for application in used]
    for names, shown in ((["no-such-rule"], "'no-such-rule'"), ([3, "tone_mark"], "'tone_mark', 3"),
                         ([Rule.ERHUA, "Erhua"], "'Erhua'")):  # fmt: skip
        with pytest.raises(ValueError) as caught:
            phoneme.normalize_pinyin(text, rules=names)  # type: ignore[arg-type]
        known = ", ".join(rule.value for rule in Rule)
        message = f'unknown rule {shown}; the rules, also with "no-", are {known}'
        assert str(caught.value) == message


@pytest.mark.parametrize(
    "rules, error, begin",
    [
        ("erhua", TypeError, "rules must be an iterable of rules, not one str"),
        (b"erhua", TypeError, "rules must be an iterable of rules, not one bytes"),
        (5, TypeError, "rules must be an iterable of rules, not one int"),
        ([[1]], ValueError, "unknown rule [1]"),
        ([{"erhua": 1}, "glued"], ValueError, "unknown rule {'erhua': 1}"),
        ([b"erhua"], ValueError, "unknown rule b'erhua'"),
        (["no-", "-no-erhua"], ValueError, "unknown rule '-no-erhua', 'no-'"),
        (["x" * 100_000], ValueError, "unknown rule '" + "x" * 59 + "..."),
        (range(100, 200), ValueError, "unknown rule 100, 101, 102, 103, 104, 105, 106, 107, 108,"
                                      " 109, and 90 more"),
    ],
)  # fmt: skip
def test_what_is_not_a_rule(rules: Any, error: type[Exception], begin: str) -> None:
    known = ", ".join(rule.value for rule in Rule)
    with pytest.raises(error) as caught:
        phoneme.normalize_pinyin("ni3", rules=rules)
    assert str(caught.value) == f'{begin}; the rules, also with "no-", are {known}'


def test_options_come_by_name() -> None:
    functions: list[Any] = [
        phoneme.normalize_pinyin, phoneme.normalize_jyutping, phoneme.arpabet_to_pronunciation,
    ]  # fmt: skip
    for function in functions:
        with pytest.raises(TypeError, match="positional argument"):
            function("ni3", "mandarin")


def test_the_language_is_where_the_documentation_says() -> None:
    first = []
    for name in phoneme.__all__:
        function = getattr(phoneme, name)
        if not isinstance(function, types.FunctionType):
            continue
        parameters = list(inspect.signature(function).parameters.values())
        places = [i for i, parameter in enumerate(parameters) if parameter.name == "language"]
        assert places in ([], [0], [1]), name
        first += [name] if places == [0] else []
        assert all(parameter.kind is parameter.KEYWORD_ONLY for parameter in parameters
                   if parameter.name in ("rules", "aliases", "cutting") and name != "Aliases"), name  # fmt: skip
    assert first == ["chart", "phones", "syllables"]


#: A text for each rule that the rule changes, and its language.
CHANGED = {
    "full-width": ("mandarin", "ｎｉ３"), "punctuation": ("mandarin", "ni3·hao3"),
    "diaeresis": ("mandarin", "lu:4"), "tone-mark": ("mandarin", "nǐ"),
    "neutral-tone": ("mandarin", "ni3 ma0"), "erhua": ("mandarin", "na4 r5"),
    "fused-erhua": ("mandarin", "nar4"), "abbreviation": ("mandarin", "ni3 PK"),
    "glued": ("cantonese", "wan2gung1"), "lower-case": ("english", "HH AH0"),
    "reduced-vowel": ("english", "HH AH0"), "missing-stress": ("english", "HH OW"),
    "second-stress": ("english", "HH OW2"),
}  # fmt: skip


def _tool_reads(tool: str, language: str, text: str, *options: str) -> Any:
    """The rules that the tool applies, or the first problem that it finds."""
    command = [tool, "convert", "-q", "-l", language, "--to", "json", *options, text]
    line = json.loads(subprocess.run(command, capture_output=True, check=False).stdout)
    return line.get("failure") or [applied["rule"] for applied in line.get("rules", [])]


@pytest.mark.parametrize("rule", CHANGED)
def test_rules_are_spelt_and_switched_as_in_the_tool(tool: str, rule: str) -> None:
    language, text = CHANGED[rule]
    is_default = rule != "second-stress"
    switched: list[str] = [f"no-{rule}"] if is_default else [
        name.value for name in Rule if name.value not in ("alias",)
    ]  # fmt: skip
    option = f"--no-{rule}" if is_default else f"--{rule}"
    for rules, options in ((None, ()), (switched, (option,))):
        analysis = phoneme.analyze(text, language, rules=rules)
        applied = [application.rule.value for application in analysis.applied]
        problems = [problem.kind.value for problem in analysis.problems]
        found = _tool_reads(tool, language, text, *options)
        assert found == (problems[0] if problems else applied)
    assert phoneme.analyze(text, language) != phoneme.analyze(text, language, rules=switched)


def test_rules_switched_off() -> None:
    assert phoneme.normalize_pinyin("nar4 r5", rules=["no-erhua"]).text == "na4 er5"
    assert phoneme.normalize_pinyin("nar4 r5", rules=["no-erhua", "no-fused-erhua"]).text == ""
    others = [f"no-{rule.value}" for rule in Rule]
    assert phoneme.normalize_pinyin("lu:4 nǐ", rules=others) == phoneme.normalize_pinyin("lu:4 nǐ", rules=[])
    # Those that are not in use by default stay so.
    assert phoneme.arpabet_to_pronunciation("OW2", rules=["no-glued"]).text == "ow 2"


@pytest.mark.parametrize(
    "text, rules, result",
    [
        ("HH OW2", None, "hh ow 2"),
        ("HH OW2", ["no-missing-stress"], "hh ow 2"),
        ("HH OW2", ["second-stress"], ""),  # the lower case is not among these rules
        ("HH OW2", ["second-stress", "no-missing-stress"], "hh ow 1"),
        ("HH OW2", ["no-missing-stress", Rule.SECOND_STRESS], "hh ow 1"),
        ("HH AH0", ["second-stress", "no-reduced-vowel"], "hh ah 0"),
    ],
)
def test_rules_switched_on_and_off(text: str, rules: Any, result: str) -> None:
    assert phoneme.arpabet_to_pronunciation(text, rules=rules).text == result


def test_rules_switched_on_and_off_as_in_the_tool(tool: str) -> None:
    for text in ("HH OW2", "HH OW"):
        analysis = phoneme.analyze(text, "english", rules=["second-stress", "no-missing-stress"])
        applied = [application.rule.value for application in analysis.applied]
        problems = [problem.kind.value for problem in analysis.problems]
        found = _tool_reads(tool, "english", text, "--second-stress", "--no-missing-stress")
        assert found == (problems[0] if problems else applied)


def test_the_shipped_aliases() -> None:
    shipped = phoneme.shipped_aliases()
    project = Path(__file__).resolve().parents[2]
    table = phoneme.parse_aliases((project / "data" / "jyutping_aliases.tsv").read_bytes())
    assert shipped == table and len(shipped) >= 13 and shipped["ni"] == "nei"
    assert phoneme.shipped_aliases() is shipped
    assert phoneme.normalize_jyutping("ni5", aliases=shipped).text == "nei5"


def test_jyutping_and_aliases() -> None:
    assert phoneme.normalize_jyutping("wan2gung1").text == "wan2 gung1"
    assert phoneme.normalize_jyutping("ai3").text != "ngai3"
    forms: list[Any] = [
        {"ai": "ngai"},
        Aliases({"ai": "ngai"}),
        phoneme.parse_aliases("\ufeff# a comment\r\nai\tngai\r\n\n"),
        phoneme.parse_aliases(b"ai\tngai"),
        phoneme.parse_aliases(b"\xef\xbb\xbf#\xff\nai\tngai"),
    ]
    for aliases in forms:
        result = phoneme.normalize_jyutping("ai3", aliases=aliases)
        assert result.text == "ngai3"
        assert [application.rule for application in result.applied] == [Rule.ALIAS]
        analysis = phoneme.analyze("ai3", "cantonese", aliases=aliases)
        assert [syllable.spelling for syllable in analysis.syllables] == ["ngai"]
        assert dict(aliases) == {"ai": "ngai"} and len(aliases) == 1
    copy = pickle.loads(pickle.dumps(forms[1]))
    assert copy == forms[1] and phoneme.normalize_jyutping("ai3", aliases=copy).text == "ngai3"
    assert repr(copy) == "Aliases({'ai': 'ngai'})"


@pytest.mark.parametrize(
    "aliases",
    [
        {"ai": "xx"},
        {"ai": "ngai3"},
        {"": "ngai"},
        {"#ai": "ngai"},
        {"ai\tngai\nei": "ngai"},
        {"\ufeffai": "ngai"},
        {"漢": "ngai"},
        {"ai": "ngai\n"},
        {3: "ngai"},
        "ai ngai\n",
        "ai\tngai\nai\tnei\n",
        b"\xff\tnei",
    ],
)
def test_wrong_aliases(aliases: Any) -> None:
    with pytest.raises(ValueError):
        phoneme.parse_aliases(aliases) if isinstance(aliases, (str, bytes)) else Aliases(aliases)


def test_errors_of_aliases_name_their_lines() -> None:
    with pytest.raises(ValueError, match=r"line 2: .*; line 4: "):
        phoneme.parse_aliases("ai\tngai\nxx\n# fine\nai\tnei\n")
    with pytest.raises(ValueError, match=r'^line 2: "\\xff" is not a spelling'):
        phoneme.parse_aliases(b"\n\xff\tnei")


@pytest.mark.parametrize(
    "aliases, message",
    [
        ({"ai": "zzz"}, """aliases['ai']: "zzz" is not a syllable of Jyutping"""),
        (
            {"ai": "ngai", "x y": "nei", "ni": "nei", "ei": "ngai3"},
            """aliases['x y']: "x y" is not a spelling of 1 to 8 small letters; """
            """aliases['ei']: "ngai3" is not a syllable of Jyutping""",
        ),
        ({"#ai": "ngai"}, "aliases['#ai']: '#ai' and 'ngai' are not an alias"),
        (
            {"ni": "nei", "ai": "ngai\nu\tnei", "xx": "xx"},
            r"aliases['ai']: 'ai' and 'ngai\nu\tnei' are not an alias; "
            """aliases['xx']: "xx" is not a syllable of Jyutping""",
        ),
    ],
)
def test_errors_of_aliases_name_their_entries(aliases: Any, message: str) -> None:
    function: Any
    for function in (Aliases, lambda aliases: phoneme.normalize_jyutping("ai3", aliases=aliases)):
        with pytest.raises(ValueError) as caught:
            function(aliases)
        assert str(caught.value) == message


@pytest.mark.parametrize("aliases", ["ai", b"ai\tngai", ["ai"], [("ai", "ngai")], 3])
def test_aliases_are_a_mapping(aliases: Any) -> None:
    name = type(aliases).__name__
    function: Any
    for function in (Aliases, lambda aliases: phoneme.analyze("ai3", 10001, aliases=aliases)):
        with pytest.raises(TypeError) as caught:
            function(aliases)
        assert str(caught.value) == (
            f"aliases must be a mapping of spellings to syllables, not {name}"
        )


@pytest.mark.parametrize(
    "text, pairs",
    [
        (b"#\xff\nai\tngai", [("ai", "ngai")]),
        ("", []),
        ("\n\r\n# ai\tngai\n", []),
        ("ni\tnei\r\nai\tngai\n\nei\tngai", [("ni", "nei"), ("ai", "ngai"), ("ei", "ngai")]),
    ],
)
def test_tables_of_aliases(text: Any, pairs: Any) -> None:
    aliases = phoneme.parse_aliases(text)
    assert list(aliases.items()) == pairs
    assert pickle.loads(pickle.dumps(aliases)) == aliases


def test_tables_are_only_parsed() -> None:
    with pytest.raises(TypeError):
        _core.AliasTable()  # type: ignore[call-arg]


def test_a_table_of_aliases_is_read_once(monkeypatch: pytest.MonkeyPatch) -> None:
    texts: list[Any] = []
    parse = _core.parse_aliases

    def parse_and_count(text: Any) -> Any:
        texts.append(text)
        return parse(text)

    monkeypatch.setattr(_core, "parse_aliases", parse_and_count)
    aliases = phoneme.parse_aliases("ai\tngai")
    assert phoneme.normalize_jyutping("ai3", aliases=aliases).text == "ngai3"
    assert texts == ["ai\tngai"]


def test_arpabet_there_and_back() -> None:
    result = phoneme.arpabet_to_pronunciation("HH AH0 L OW1")
    assert result.text == "hh ax 0, l ow 1" and result.problems == ()
    assert len(result.origins) == len(result.text)
    assert phoneme.pronunciation_to_arpabet(result.text).text == "HH AH0 L OW1"
    wrong = phoneme.arpabet_to_pronunciation("HH QQ OW1")
    assert wrong.problems == (Problem(ProblemKind.UNKNOWN_PHONE, Range(3, 5), ""),)
    folded = phoneme.arpabet_to_pronunciation("OW2", rules=[Rule.LOWER_CASE, Rule.SECOND_STRESS])
    assert folded.text == "ow 1"


def test_analysis() -> None:
    analysis = phoneme.analyze("Nǐ hoa3")
    (syllable,) = analysis.syllables
    assert syllable[:4] == ("ni", "3", Range(0, 2), 224)
    assert syllable.syllable == phoneme.code2ph(2243)
    assert analysis.separators == (Range(2, 3),)
    (problem,) = analysis.problems
    hint = (Hint.SPELLING, Range(3, 7))
    assert problem == Problem(ProblemKind.UNKNOWN_SYLLABLE, Range(3, 7), "hao3", *hint)
    assert problem != Problem(ProblemKind.UNKNOWN_SYLLABLE, Range(3, 7), "hao3")
    assert phoneme.analyze("Nǐ hoa3".encode()).problems[0].range == Range(4, 8)
    assert pickle.loads(pickle.dumps(analysis)) == analysis


@pytest.mark.parametrize(
    ("notation", "language", "text", "spellings", "problems"),
    [
        ("pinyin", "mandarin", "nǐ hǎo", ["ni", "hao"], []),
        ("jyutping", "cantonese", "nei5hou2", ["nei", "hou"], []),
        ("arpabet", "english", "HH AH0", ["hh ax"], []),
        ("text", "mandarin", "ni3 hǎo", ["ni"], [("letters lost", 4, 7)]),
        ("codes", "mandarin", "2243 9999", ["ni"], [("unknown syllable code", 5, 9)]),
        (
            "ids",
            "mandarin",
            "24 35 3 99 28",
            ["n i"],
            [("unknown phone-id byte", 8, 13)],
        ),
        ("pronunciation", "english", "hh ax 0, l", ["hh ax"], [("bad tone", 9, 10)]),
    ],
)
def test_analysis_of_every_notation(
    notation: str,
    language: str,
    text: str,
    spellings: list[str],
    problems: list[tuple[str, int, int]],
) -> None:
    analysis = phoneme.analyze(text, language, notation=notation)
    assert [syllable.spelling for syllable in analysis.syllables] == spellings
    found = [(problem.kind.value, *problem.range) for problem in analysis.problems]
    assert found == problems


def test_unknown_notations_are_refused() -> None:
    read = "('pinyin', 'jyutping', 'arpabet', 'text', 'codes', 'ids', 'pronunciation')"
    for notation in ("Pinyin", "phones", "marks", ""):
        with pytest.raises(ValueError) as raised:
            phoneme.analyze("ni3", notation=notation)
        assert str(raised.value) == f"notation must be one of {read}, not {notation!r}"
    with pytest.raises(ValueError, match="^Jyutping is a notation of cantonese alone$"):
        phoneme.analyze("ni3", "mandarin", notation="jyutping")


@pytest.mark.parametrize(
    ("language", "text", "expected"),
    [
        ("cantonese", "ni1", (Range(0, 3), "nei1", Hint.ALIAS, Range(0, 3), "", "")),
        ("cantonese", "恤lan2", (Range(1, 5), "", Hint.GAP, Range(1, 5), "l", "an")),
        ("cantonese", "c1", (Range(0, 2), "", None, None, "", "")),
        ("mandarin", "yai", (Range(2, 3), "yao", Hint.SPELLING, Range(0, 3), "", "")),
        ("mandarin", "yáichái", (Range(0, 7), "yao2", Hint.SPELLING, Range(0, 3), "", "")),
        ("english", "SHH", (Range(0, 3), "sh", Hint.SPELLING, Range(0, 3), "", "")),
    ],
)
def test_hints(language: str, text: str, expected: tuple[object, ...]) -> None:
    problem = phoneme.analyze(text, language).problems[-1]
    assert problem[1:] == expected
    assert pickle.loads(pickle.dumps(problem)) == problem


def test_analysis_of_english_and_of_others() -> None:
    first, second = phoneme.analyze("HH AH0 L OW1", "english").syllables
    assert (first.spelling, first.digit, first.row) == ("hh ax", "0", None)
    assert second.syllable == phoneme.pr2ph("l ow 1", "english")[0]
    assert phoneme.analyze("ni3", 12345, fallback=True).syllables[0].row == 224


def test_cutting() -> None:
    ways: list[Any] = ["whole", "forward", "backward", "none"]
    spellings = {
        way: [
            [s.spelling for s in phoneme.analyze(word, cutting=way).syllables]
            for word in ("yipinguo", "fangan", "ni hao")
        ]
        for way in ways
    }
    assert spellings["whole"] == [["yi", "pin", "guo"], ["fan", "gan"], ["ni", "hao"]]
    assert spellings["forward"] == [["yi", "ping"], ["fang", "an"], ["ni", "hao"]]
    assert spellings["backward"] == [["yi", "pin", "guo"], ["fan", "gan"], ["ni", "hao"]]
    assert spellings["none"] == [[], [], ["ni", "hao"]]
    problem = phoneme.analyze("nun").problems[0]
    assert (problem.kind.value, problem.range) == ("unknown syllable", Range(0, 3))
    assert [s.spelling for s in phoneme.analyze("mgoi", "cantonese").syllables] == ["m", "goi"]
    with pytest.raises(ValueError, match="'sideways'"):
        phoneme.analyze("ni", cutting="sideways")  # type: ignore[arg-type]


def test_cuts() -> None:
    word = "xian"
    cut = phoneme.cut_whole(word, max_cuts=10)
    pieces = [[word[slice(*syllable.range)] for syllable in one] for one in cut.cuts]
    assert pieces == [["xian"], ["xi", "an"]]
    assert cut.covers and cut.count == 2
    rows = phoneme.syllables("mandarin")
    assert [[rows[syllable.row].pinyin for syllable in one] for one in cut.cuts] == pieces
    assert phoneme.cut_whole("xian" * 1000).count is None
    assert phoneme.cut_whole("").covers and not phoneme.cut_whole("v").covers
    assert phoneme.cut_whole("漢ni").syllables[0].range == Range(1, 3)
    assert phoneme.cut_whole("yipinguo").directions_differ
    assert len(phoneme.cut_whole(word, max_cuts=2**63 - 1).cuts) == 2
    number: Any
    for number in (-1, 2**63, 2**70, 10**5000):
        with pytest.raises(ValueError, match=r"max_cuts is 0 to \d+, not (-1|an int of)"):
            phoneme.cut_whole("xian", max_cuts=number)
    for number in (1.5, "1", None):
        with pytest.raises(TypeError, match="^max_cuts must be an int, not (float|str|NoneType)$"):
            phoneme.cut_whole("xian", max_cuts=number)


def test_writing() -> None:
    codes = phoneme.py2code("nv3er2")
    items: Any
    for items in (codes, tuple(codes), iter(codes), phoneme.py2ph("nv3er2")):
        assert phoneme.marked_pinyin(items) == "nǚ'ér"
    assert phoneme.marked_pinyin(codes, spacing="space") == "nǚ ér"
    batch = phoneme.py2code_batch(["nv3er2"])
    assert phoneme.marked_pinyin(batch.codes) == "nǚ'ér"
    cantonese = phoneme.py2ph("nei5hou2", "cantonese")
    assert phoneme.jyutping(cantonese, spacing="space") == "nei5 hou2"
    assert phoneme.jyutping(syllable.code for syllable in cantonese) == "nei5hou2"
    assert phoneme.pronunciation_string(cantonese) == "n ei 5, h ou 2"
    assert phoneme.marked_pinyin([]) == phoneme.jyutping([]) == ""
    assert phoneme.pronunciation_string([]) == ""


@pytest.mark.parametrize(
    "items, error",
    [(["ni3"], TypeError), ("ni3", TypeError), ([65536], ValueError), ([-1], ValueError),
     ([2243, None], TypeError), (None, TypeError), ([phoneme.code2ph(2243), 2243], TypeError)],
)  # fmt: skip
def test_what_is_no_syllable(items: Any, error: type[Exception]) -> None:
    for function in (phoneme.marked_pinyin, phoneme.jyutping):
        with pytest.raises(error) as caught:
            function(items)
        assert not isinstance(caught.value, phoneme.ConversionError)


@pytest.mark.parametrize("items, name", [([2243], "int"), ([1, 2], "int"), ("ab", "str"),
                                         ([phoneme.code2ph(2243), None], "NoneType")])  # fmt: skip
@pytest.mark.parametrize("errors", ["raise", "none"])
def test_pronunciation_strings_are_of_syllables(items: Any, name: str, errors: Any) -> None:
    with pytest.raises(TypeError, match=f"^not a Syllable: {name}$"):
        phoneme.pronunciation_string(items, errors=errors)


def test_wrong_spacing() -> None:
    function: Any
    for function in (phoneme.marked_pinyin, phoneme.jyutping):
        with pytest.raises(ValueError, match="'word' or 'space'"):
            function([2243], spacing="tab")


def test_every_code_reads_back() -> None:
    for row in phoneme.syllables("mandarin"):
        for tone in range(1, 6):
            code = row.id * 10 + tone
            written: Union[str, None] = phoneme.marked_pinyin([code], errors="none")
            assert written is not None
            if tone == 5 or row.pinyin == "E":
                continue  # without a mark the tone is not written; no notation names "ê"
            assert phoneme.py2code(phoneme.normalize_pinyin(written).text) == [code]
    for row in phoneme.syllables("cantonese"):
        for tone in range(1, 8):
            code = row.id * 10 + tone
            text = phoneme.jyutping([code])
            assert phoneme.py2code(phoneme.normalize_jyutping(text).text, "cantonese") == [code]
