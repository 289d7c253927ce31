#!/usr/bin/env python3
"""Shows where a target of the tool has a gap, and where check and convert disagree.

  targets.py TOOL

Every row of the syllable tables with every digit, and phones in many orders, are written in all
source notations and converted to all targets. What each target makes of each syllable is given by a
second form of its rule, which sees the tables alone; so a line that fails must fail, and one that
does not is whole. `check --to TARGET` reports exactly the lines that `convert --to TARGET` fails,
and `check` alone those that fail for codes or for pronunciation.
"""

import itertools
import json
import os
import random
import re
import subprocess
import sys
import tempfile

TOOL = os.path.abspath(sys.argv[1])
TONES = {"mandarin": range(1, 6), "cantonese": range(1, 7), "english": range(3)}
WRITTEN = {"mandarin": "pinyin", "cantonese": "jyutping", "english": "arpabet"}
NO_TONE = 7  # the digit of Cantonese syllables that were read without a tone
WITH_CODES = ["pinyin", "jyutping", "text", "codes"]
GAP = None
failures = 0
checked = 0


def run(*arguments):
    result = subprocess.run(
        [TOOL, *arguments], stdin=subprocess.DEVNULL, capture_output=True, check=False
    )
    return result.stdout.decode(), result.stderr.decode()


def table(command, language):
    lines = run(command, "-l", language)[0].splitlines()[1:]
    return [["" if field == "-" else field for field in line.split("\t")] for line in lines]


class Language:
    """The tables of a language."""

    def __init__(self, name):
        self.name = name
        phones = table("phones", name)
        self.names = {int(number): phone for number, _, phone, *_ in phones}
        self.ids = {phone: number for number, phone in reversed(self.names.items())}
        self.finals = {phone for _, _, phone, kind, *_ in phones if kind in ("final", "vowel")}
        self.rows = []  # (spelling, the names of its initial and final)
        if name != "english":
            for _, spelling, initial, final in table("syllables", name):
                self.rows.append((spelling, [part for part in (initial, final) if part]))
        self.syllabic = {parts[-1] for _, parts in self.rows if parts[-1] in self.ids} - self.finals


class Syllable:
    """A row with a digit, or phones with a digit."""

    def __init__(self, language, digit, row=None, phones=None):
        self.language = language
        self.digit = digit
        self.row = row
        self.phones = language.rows[row][1] if row is not None else phones

    def is_whole(self):
        return all(phone in self.language.ids for phone in self.phones)

    def carries_tone(self):
        has_final = any(phone in self.language.finals for phone in self.phones)
        return has_final or bool(self.phones) and self.phones[-1] in self.language.syllabic

    def has_tone(self):
        return self.digit in TONES[self.language.name]

    def needs_no_tone(self):
        return self.digit == 0 and not self.carries_tone()

    def is_without_tone(self):
        return self.language.name == "cantonese" and self.digit == NO_TONE


def to_syllables(syllable, strict):
    if not syllable.language.rows[syllable.row][0].islower():
        return GAP
    if not (strict or syllable.has_tone() or syllable.is_without_tone()):
        return GAP
    return f"{syllable.language.rows[syllable.row][0]}{syllable.digit}"


def to_codes(syllable, strict):
    return str(syllable.row * 10 + syllable.digit)


def to_phones(syllable, strict):
    return " ".join(syllable.phones) if syllable.phones and syllable.is_whole() else GAP


def to_ids(syllable, strict):
    if not syllable.is_whole():
        return GAP
    numbers = [syllable.language.ids[phone] + 10 for phone in syllable.phones]
    return " ".join(map(str, [*numbers, syllable.digit]))


def to_pronunciation(syllable, strict):
    takes_digit = syllable.has_tone() or syllable.needs_no_tone()
    if not takes_digit and (not strict or syllable.is_without_tone()):
        return GAP
    phones = to_phones(syllable, strict)
    return phones and f"{phones} {syllable.digit}"


def to_toned_phones(syllable, strict):
    phones = list(syllable.phones)
    if syllable.needs_no_tone():
        return to_phones(syllable, strict)
    if not (syllable.is_whole() and syllable.carries_tone() and syllable.has_tone()):
        return GAP
    finals = [i for i, phone in enumerate(phones) if phone in syllable.language.finals]
    if len(finals) > 1:
        return GAP
    phones[finals[0] if finals else -1] += str(syllable.digit)
    return " ".join(phones)


def to_arpabet(syllable, strict):
    toned = to_toned_phones(syllable, strict)
    return toned and re.sub(r"\bA[XH]0", "AH0", toned.upper())


ONE_BY_ONE = {
    "syllables": to_syllables,
    "codes": to_codes,
    "phones": to_phones,
    "ids": to_ids,
    "pronunciation": to_pronunciation,
    "toned-phones": to_toned_phones,
    "arpabet": to_arpabet,
}


def to_record(syllable, code):
    """What JSON has of a syllable, without its place."""
    ids = to_ids(syllable, False)
    record = {}
    if code:
        record["syllable"] = f"{syllable.language.rows[syllable.row][0]}{syllable.digit}"
        record["code"] = int(to_codes(syllable, False))
    record["tone"] = syllable.digit if syllable.has_tone() else None
    record["phones"] = None if ids is GAP else syllable.phones
    record["ids"] = None if ids is GAP else [int(number) for number in ids.split()]
    return record


def fail(message):
    global failures
    failures += 1
    if failures <= 20:
        print(message, file=sys.stderr)


def with_default(syllables, options):
    if "--default-tone" not in options:
        return syllables
    tone = int(options[options.index("--default-tone") + 1])
    return [
        Syllable(s.language, tone if s.is_without_tone() else s.digit, s.row, s.phones)
        for s in syllables
    ]


def expected(target, syllables, source, strict):
    """The line that a target makes of syllables; GAP when it cannot."""
    if target in ("json", "tsv"):
        return [to_record(syllable, source in WITH_CODES) for syllable in syllables]
    if target == "marks":  # read back below
        return "" if all(syllable.has_tone() for syllable in syllables) else GAP
    parts = [ONE_BY_ONE[target](syllable, strict) for syllable in syllables]
    if GAP in parts:
        return GAP
    return (", " if target == "pronunciation" else " ").join(parts)


def record_of(line):
    keys = ("syllable", "code", "tone", "phones", "ids")
    syllables = json.loads(line).get("syllables", [])
    return [{key: syllable[key] for key in keys if key in syllable} for syllable in syllables]


def rows_of(output):
    """The rows of TSV as the records of each line."""
    records = {}
    for line in output.splitlines()[1:]:
        number, _, _, _, _, spelling, tone, code, phones, ids = line.split("\t")
        record = {"syllable": spelling, "code": int(code)} if code != "-" else {}
        record["tone"] = None if tone == "-" else int(tone)
        record["phones"] = None if ids == "-" else [] if phones == "-" else phones.split()
        record["ids"] = None if ids == "-" else [int(number) for number in ids.split()]
        records.setdefault(int(number), []).append(record)
    return records


def failed_lines(messages):
    return {int(number) for number in re.findall(r"^phoneme: line (\d+): ", messages, re.M)}


def convert(language, source, target, path, options):
    """The result of each line, and the numbers of those that failed."""
    output, messages = run(
        "convert", "-q", "-l", language.name, "--from", source, "--to", target, "-i", path, *options
    )
    count = len(open(path, encoding="utf-8").read().splitlines())
    failed = failed_lines(messages)
    if target == "tsv":
        records = rows_of(output)
        return [records.get(number, []) for number in range(1, count + 1)], failed
    results = output.splitlines()
    assert len(results) == count, (language.name, source, target, messages[:200])
    return [record_of(line) for line in results] if target == "json" else results, failed


def check(language, source, path, options):
    findings = run("check", "-l", language.name, "--from", source, *options, path)[0]
    return {int(line.split(":")[1]) for line in findings.splitlines()}


def compare(language, source, lines, options=()):
    """Converts lines, each a text and its syllables, or no syllables for a text that is wrong."""
    global checked
    strict = "--strict" in options
    where = f"{language.name} --from {source} {' '.join(options)}"
    with tempfile.NamedTemporaryFile("w", encoding="utf-8") as file:
        file.write("".join(text + "\n" for text, _ in lines))
        file.flush()
        failed_by_target = {}
        for target in targets_of(language, source):
            results, failed = convert(language, source, target, file.name, options)
            failed_by_target[target] = failed
            for number, ((text, syllables), result) in enumerate(zip(lines, results), 1):
                checked += 1
                line = GAP
                if syllables is not None:
                    line = expected(target, with_default(syllables, options), source, strict)
                if (line is GAP) != (number in failed):
                    fail(f"{where} --to {target} {text!r}: expected {line!r}, got {result!r}")
                elif line is not GAP and target != "marks" and result != line:
                    fail(f"{where} --to {target} {text!r}: expected {line!r}, got {result!r}")
            found = check(language, source, file.name, ["--to", target, *options])
            if found != failed:
                fail(f"{where} --to {target}: check differs in lines {sorted(found ^ failed)[:9]}")
            if target == "marks":
                read_back(language, "pinyin", target, results, failed, file.name, where)
            if target == "syllables" and not strict:
                read_back(language, "text", target, results, failed, file.name, where)
        wanted = failed_by_target["pronunciation"] | failed_by_target.get("codes", set())
        if not strict and check(language, source, file.name, options) != wanted:
            fail(f"{where}: check alone differs")


def read_back(language, reading, target, results, failed, path, where):
    """Pinyin with marks and syllables are the codes that they were made from, but for the marked
    syllable that has no spelling in the library's notation."""
    source = re.search(r"--from (\S+)", where).group(1)
    codes = convert(language, source, "codes", path, where.split()[3:])[0]
    kept = [i for i in range(len(results)) if i + 1 not in failed and "ê" not in unmarked(results[i])]
    with tempfile.NamedTemporaryFile("w", encoding="utf-8") as file:
        file.write("".join(results[i] + "\n" for i in kept))
        file.flush()
        back = convert(language, reading, "codes", file.name, ())[0]
    for i, line in zip(kept, back):
        if line != codes[i]:
            fail(f"{where} --to {target}: {codes[i]} is {results[i]}, which reads {line!r}")


def unmarked(text):
    return text.replace("ế", "ê").replace("ề", "ê")


def targets_of(language, source):
    targets = ["phones", "toned-phones", "ids", "pronunciation", "json", "tsv"]
    if source in WITH_CODES:
        targets += ["syllables", "codes"]
        if language.name == "mandarin":
            targets.append("marks")
    return [*targets, "arpabet"] if language.name == "english" else targets


def all_rows(language, digits):
    return [
        Syllable(language, digit, row) for row in range(len(language.rows)) for digit in digits
    ]


def grouped(syllables, generator):
    """Each syllable by itself, then lines of several of them."""
    lines = [[syllable] for syllable in syllables]
    lines += [generator.choices(syllables, k=generator.randint(2, 5)) for _ in range(300)]
    return [[], *lines]


def spelled(syllable):
    return syllable.language.rows[syllable.row][0]


def codes_lines(language, generator):
    lines = grouped(all_rows(language, range(10)), generator)
    texts = [(" ".join(to_codes(s, False) for s in line), line) for line in lines]
    return [*texts, ("0 9999", None), ("x", None), ("-1", None)]


def text_lines(language, generator):
    """As the library reads it: digits fold, and none is the top tone. Row E has no spelling."""
    top = 5 if language.name == "mandarin" else 7
    folded = {digit: digit if 1 <= digit <= top else digit % top or top for digit in range(10)}
    lines = grouped(
        [s for s in all_rows(language, (-1, 0, 3, 6, 7, 9)) if spelled(s) != "E"], generator
    )
    texts = []
    for line in lines:
        text = " ".join(spelled(s) + (str(s.digit) if s.digit >= 0 else "") for s in line)
        read = [Syllable(language, folded.get(s.digit, top), s.row) for s in line]
        texts.append((text, read))
    return [*texts, ("hoa3", None), ("hello", None), ("a1 P", None), ("a1zz", None)]


def written_lines(language, generator):
    """Only tones that the language has, or none."""
    top = 5 if language.name == "mandarin" else 7
    lines = grouped(
        [s for s in all_rows(language, range(1, top + 1)) if spelled(s) != "E"], generator
    )
    texts = []
    for line in lines:
        shown = [str(s.digit) if s.digit < top else generator.choice(["", str(top)]) for s in line]
        texts.append((" ".join(spelled(s) + digit for s, digit in zip(line, shown)), line))
    return [*texts, ("hoa3", None), ("a1 PK", None), ("a9", None), ("b-a", None)]


def phone_syllables(language, generator):
    names = sorted(language.ids)
    syllables = [[name] for name in names]
    syllables += [generator.choices(names, k=generator.randint(2, 4)) for _ in range(100)]
    syllables += [parts for _, parts in language.rows[::6] if set(parts) <= language.ids.keys()]
    return [
        Syllable(language, digit, phones=phones)
        for phones, digit in itertools.product(syllables, range(10))
    ]


def ids_lines(language, generator):
    empty = [Syllable(language, digit, phones=[]) for digit in range(10)]
    lines = grouped([*phone_syllables(language, generator), *empty], generator)
    texts = [(" ".join(to_ids(s, False) for s in line), line) for line in lines]
    return [*texts, ("11 1 12", None), ("11 300 1", None), ("x", None)]


def pronunciation_lines(language, generator):
    lines = grouped(phone_syllables(language, generator), generator)
    texts = [
        (", ".join(f"{' '.join(s.phones)} {s.digit}" for s in line), line) for line in lines
    ]
    return [*texts, ("a", None), ("nope 1", None), ("sil x", None)]


def arpabet_lines(language, generator):
    """Words of a syllable: what is before the vowel may begin one in English."""
    vowels = sorted(language.finals - {"ax"})
    texts = []
    for onset, vowel, digit in itertools.product(["", "B", "S T R"], vowels, ["", 0, 1, 2]):
        name = "ax" if vowel == "ah" and digit == 0 else vowel
        syllable = Syllable(language, digit or 0, phones=[*onset.lower().split(), name])
        texts.append((f"{onset} {vowel.upper()}{digit}".strip(), [syllable]))
    texts.append(("HH M", [Syllable(language, 0, phones=["hh", "m"])]))
    return [*texts, ("", []), ("AA3", None), ("B1", None), ("QQ", None)]


def main():
    generator = random.Random(1)
    for name in TONES:
        language = Language(name)
        sources = {"ids": ids_lines, "pronunciation": pronunciation_lines}
        if language.rows:
            sources |= {"codes": codes_lines, "text": text_lines}
        sources[WRITTEN[name]] = written_lines if language.rows else arpabet_lines
        for source, make in sources.items():
            lines = make(language, generator)
            compare(language, source, lines)
            if source not in WRITTEN.values():
                strict = [line for line in lines if line[0] not in ("hello", "a1 P", "a1zz")]
                strict = [line for line in strict if line[0] != "11 1 12"]
                compare(language, source, strict, ("--strict",))
            if name == "cantonese":
                compare(language, source, lines, ("--default-tone", "2"))
    print(f"{checked} results, {failures} failures")
    return failures == 0 and checked > 100000


if __name__ == "__main__":
    sys.exit(0 if main() else 1)
