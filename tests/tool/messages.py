#!/usr/bin/env python3
"""Shows where a message of the tool repeats text from outside as it is.

  messages.py TOOL

Every way to make the tool print a message is tried with hostile text: as an argument, as the name of
a file, and in files of every format. Each message is one line of bounded length, has nothing that a
terminal obeys or nobody sees, and two texts never look alike.
"""

import os
import re
import subprocess
import sys
import tempfile
import unicodedata

TOOL = os.path.abspath(sys.argv[1])
LONGEST = 1200  # characters of a line
FILE_SIZE = 5_000_000
ARGUMENT_SIZE = 100_000  # the system takes no more than 128 kB
failures = 0
messages = 0

# Texts that attack a terminal, or the reader of a message. None of them is a syllable.
HOSTILE = {
    "colour": b"x\x1b[31mred\x1b[0m",
    "title": b"x\x1b]0;owned\x07",
    "cursor": b"x\x1b[2J\x1b[1;1H\r\x08\x08",
    "C1 control": "x\u009b31m\u0085".encode(),
    "bidi": "x\u202e\u2066\u200f\u061c".encode(),
    "invisible": "x\u200b\ufeff\u00ad\u2028\u3164".encode(),
    "tag": "x\U000e0041\U000e007f".encode(),
    "byte ff": b"x\xff",
    "literal ff": b"x\\xff",
    "two backslashes": b"x\\\\xff",
    "broken UTF-8": b"x\xc0\xaf\xed\xa0\x80\xf4\x90\x80\x80",
    "quote": b'x", all is well "y',
    "escaped quote": b'x\\", all is well \\"y',
    "dots": b'x"... (5 bytes)',
    "delete": b"x\x7f",
    "combining": ("x" + "\u0301" * 5000).encode(),
    "marks": "\u0301\u0301x\u0301\x1b\u0301\"\u0301\\\u0301\u202e\u0301\u093e\u20dd".encode(),
    "mark on a byte": b"x\xff\xcc\x81",
    "letters": b"xqxqxqxqxq",
}
LONG = b"xq\x1b[31m\\\""

# What files give: (arguments, lines; {} is the text). A text in a file has no line end.
IN_FILES = [
    (["convert", "-q", "-l", "mandarin", "--to", "codes"], b"{}\n"),
    (["convert", "-q", "-l", "mandarin", "--to", "json"], b"{}\n"),
    (["convert", "-q", "-l", "mandarin", "--to", "tsv"], b"{}\n"),
    (["convert", "-q", "-l", "mandarin", "--strict", "--to", "codes"], b"{}3\n"),
    (["convert", "-q", "-l", "mandarin", "--from", "text", "--to", "codes"], b"ni3 {}\n"),
    (["convert", "-q", "-l", "mandarin", "--from", "codes", "--to", "codes"], b"2243 {}\n"),
    (["convert", "-q", "-l", "mandarin", "--from", "ids", "--to", "ids"], b"24 35 3 {}\n"),
    (["convert", "-q", "-l", "mandarin", "--from", "pronunciation", "--to", "ids"], b"n {} 3\n"),
    (["convert", "-q", "-l", "mandarin", "--from", "pronunciation", "--to", "ids"], b"n i {}\n"),
    (["convert", "-q", "-l", "mandarin", "--from", "pronunciation", "--to", "ids"], b"{}\n"),
    (["convert", "-q", "-l", "cantonese", "--to", "codes"], b"{}\n"),
    (["convert", "-q", "-l", "english", "--to", "ids"], b"{}\n"),
    (["convert", "-q", "-l", "mandarin", "--to", "ids", "--format", "tsv"], b"{}\n"),
    (["convert", "-q", "-l", "mandarin", "--to", "ids", "--format", "tsv"], b"{}\t{}\n"),
    (["convert", "-q", "-l", "mandarin", "--to", "ids", "--format", "kaldi"], b"w{}\n"),
    (["convert", "-q", "-l", "mandarin", "--to", "ids", "--format", "cedict"], b"{}\n"),
    (["convert", "-q", "-l", "mandarin", "--to", "ids", "--format", "cedict"], b"a b [{}] /x/\n"),
    (["convert", "-q", "-l", "english", "--to", "ids", "--format", "cmudict"], b"{}\n"),
    (["check", "-l", "mandarin"], b"{}\n"),
    (["check", "-l", "mandarin", "--json"], b"{}\n"),
    (["check", "-l", "mandarin", "--to", "marks"], b"{}\n"),
    (["check", "-l", "mandarin", "--strict"], b"ni3 {} \n"),
    (["check", "-l", "mandarin", "--from", "codes"], b"{}\n"),
    (["check", "-l", "mandarin", "--from", "ids"], b"{}\n"),
    (["check", "-l", "mandarin", "--from", "pronunciation"], b"{}\n"),
    (["check", "-l", "mandarin", "--format", "cedict"], b"a b [{}] /x/\n"),
    (["check", "-l", "english"], b"{}\n"),
    (["check", "-l", "english", "--lexicon"], b"w {}\n"),
    (["check", "-l", "english", "--lexicon"], b"{}w hh ay1\n{}w hh ay1\n"),
    (["check", "-l", "english", "--lexicon", "--json"], b"{}w hh ay1\n{}w hh ay1\n"),
    (["check", "-l", "english", "--lexicon", "--json"], b"w {}\n"),
]

# Tables of aliases: the spelling, the syllable, a field too many, none.
ALIASES = [b"{}\tnei\n", b"ni\t{}\n", b"ni\tnei\t{}\n", b"{}\n", b"# {}\nni\tnei\nni\tnei\n"]

# What arguments give.
IN_ARGUMENTS = [
    ["{}"],
    ["--{}"],
    ["--version={}"],
    ["convert", "{}"],
    ["convert", "-l", "{}", "--to", "ids", "ni3"],
    ["convert", "-l", "mandarin", "--to", "{}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "--from", "{}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "--cut", "{}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "--format", "{}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "--column", "{}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "--format", "cedict", "--headword", "{}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "--jobs", "{}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "--jobs=1{}", "ni3"],
    ["convert", "-l", "cantonese", "--to", "ids", "--default-tone", "{}", "nei"],
    ["convert", "-l", "mandarin", "--to", "ids", "--{}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "-{}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "-q{}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "-q={}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "--quiet={}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "--to", "{}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "{}"],
    ["convert", "-l", "mandarin", "--to", "ids", "--format", "cedict", "{}"],
    ["convert", "-l", "mandarin", "--strict", "--to", "ids", "{}3"],
    ["convert", "-q", "-l", "mandarin", "--to", "ids", "-i", "none/{}"],
    ["convert", "-l", "mandarin", "--to", "ids", "-o", "none/{}", "ni3"],
    ["convert", "-l", "mandarin", "--to", "ids", "--rejects", "none/{}", "ni3"],
    ["convert", "-l", "cantonese", "--to", "ids", "--aliases", "none/{}", "nei5"],
    ["check", "-l", "mandarin", "none/{}"],
    ["check", "-l", "mandarin", "--to", "{}", "-"],
    ["check", "-l", "mandarin", "--json={}", "-"],
    ["explain", "-l", "{}", "ni3"],
    ["explain", "-l", "mandarin", "--cut", "{}", "ni3"],
    ["explain", "-l", "mandarin", "ni3", "{}"],
    ["phones", "-l", "{}"],
    ["phones", "-l", "mandarin", "{}"],
    ["syllables", "-l", "{}"],
]

# What is shown on standard output, many lines of a screen.
SCREENS = [["explain", "-l", name, "{}"] for name in ("mandarin", "cantonese", "english")]


def fail(what):
    global failures
    failures += 1
    print(what[:300], file=sys.stderr)


def run(arguments, text=b""):
    command = [os.fsencode(TOOL), *(os.fsencode(a).replace(b"{}", text) for a in arguments)]
    return subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, check=False)


def is_visible(character):
    return unicodedata.category(character) not in ("Cc", "Cf", "Zl", "Zp", "Cs", "Cn")


def has_lost_mark(line):
    """Whether a mark joins an escape, a quote or the beginning of a line."""
    before = ""
    for unit in re.findall(r"\\x[0-9a-f]{2}|\\u[0-9a-f]{4}|\\.|.", line):
        if unicodedata.category(unit[0]).startswith("M") and (len(before) != 1 or before == '"'):
            return True
        before = before if unicodedata.category(unit[0]).startswith("M") else unit
    return False


def check_lines(where, output, count):
    """The lines of an output, which has as many as `count` if that is not None."""
    global messages
    try:
        text = output.decode("utf-8")
    except UnicodeDecodeError:
        return fail(f"{where}: broken UTF-8: {output!r}")
    lines = text.split("\n")
    if lines.pop() != "" or count is not None and len(lines) != count:
        fail(f"{where}: {len(lines)} lines: {output!r}")
    for line in lines:
        messages += 1
        if not all(map(is_visible, line)) or any(c in line for c in "\u3164\u115f\ufe0f"):
            fail(f"{where}: not all visible: {line!r}")
        if has_lost_mark(line):
            fail(f"{where}: a mark on what is not text: {line!r}")
        if len(line) > LONGEST:
            fail(f"{where}: {len(line)} characters: {line!r}")
    return text


def reports(arguments, result):
    """What a command reports: findings are its results."""
    is_check = arguments[0] == "check" and result.stdout
    return result.stdout if is_check else result.stderr


def try_text(name, text, work):
    """What each way gives for a text."""
    seen = []
    for arguments, lines in IN_FILES:
        where = f"{' '.join(arguments)} {lines!r} with {name}"
        path = os.path.join(work, "file")
        with open(path, "wb") as file:
            file.write(lines.replace(b"{}", text))
        result = run([*arguments, *(["-i"] if arguments[0] == "convert" else []), path])
        output = reports(arguments, result)
        message = check_lines(where, output, None)
        if arguments[0] == "convert":  # a finding quotes a piece, which may be the same
            seen.append(f"{arguments} {lines!r}: {message}")
        if not output or result.returncode != 1:
            fail(f"{where}: status {result.returncode}, {output!r}")
    for lines in ALIASES:
        path = os.path.join(work, "aliases")
        with open(path, "wb") as file:
            file.write(lines.replace(b"{}", text))
        result = run(["convert", "-l", "yue", "--to", "ids", "--aliases", path, "nei5"])
        check_lines(f"--aliases {lines!r} with {name}", result.stderr, 1)
        if result.returncode != 3:
            fail(f"--aliases {lines!r} with {name}: status {result.returncode}")
    return seen


def try_arguments(name, text):
    seen = []
    for arguments in IN_ARGUMENTS:
        where = f"{' '.join(arguments)} with {name}"
        result = run(arguments, text)
        message = check_lines(where, reports(arguments, result), 1)
        if '"' in message:
            seen.append(f"{arguments}: {message}")
        if result.returncode not in (1, 2, 3):
            fail(f"{where}: status {result.returncode}")
    for arguments in SCREENS:
        check_lines(f"{' '.join(arguments)} with {name}", run(arguments, text).stdout, None)
    return seen


def try_file_names(name, text, work):
    """A finding begins with the name of its file; the message of a line that fails does not."""
    path = os.fsencode(work) + b"/" + text.replace(b"/", b"")[:200]
    with open(path, "wb") as file:
        file.write(b"hoa3\n")
    for arguments in (["check", "-l", "zh"], ["check", "-l", "zh", "--json"]):
        result = run([*arguments, path])
        check_lines(f"{arguments} with a file called {name}", result.stdout, 1)
    check_lines(f"no directory: {name}", run(["check", "-l", "zh", path + b"/x"]).stderr, 1)


def main():
    with tempfile.TemporaryDirectory() as work:
        shown = {}
        for name, text in HOSTILE.items():
            for line in try_text(name, text, work) + try_arguments(name, text):
                if shown.setdefault(line, name) != name:
                    fail(f"{name} looks like {shown[line]}: {line!r}")
            try_file_names(name, text, work)
        try_text("a long line", LONG * (FILE_SIZE // len(LONG)), work)
        try_text("a line of many problems", LONG * 2000, work)
        try_arguments("a long argument", LONG * (ARGUMENT_SIZE // len(LONG)))
    print(f"{messages} messages, {failures} failures")
    return failures == 0 and messages > 2000


if __name__ == "__main__":
    sys.exit(0 if main() else 1)
