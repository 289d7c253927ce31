#!/usr/bin/env python3
"""Shows where the tool answers a bad command line in other words than its own.

  usage.py TOOL

Every option that --help names, of every command, is tried in every wrong way of the tables below.
"""

import os
import re
import subprocess
import sys

TOOL = os.path.abspath(sys.argv[1])
COMMANDS = {
    "convert": ["-l", "zh", "--to", "ids"],
    "check": ["-l", "zh"],
    "explain": ["-l", "zh"],
    "phones": ["-l", "zh"],
    "syllables": ["-l", "zh"],
}

# What a command line without a command gives.
ALONE = [
    ([], "a command is required: convert, check, explain, phones, syllables"),
    (["--"], "a command is required: convert, check, explain, phones, syllables"),
    ([""], 'unknown command ""'),
    (["-"], 'unknown command "-"'),
    (["Convert"], 'unknown command "Convert"'),
    (["convert=x"], 'unknown command "convert=x"'),
    (["/h"], 'unknown command "/h"'),
    (["-v"], 'unknown option "-v"'),
    (["-=x"], 'unknown option "-=x"'),
    (["---"], 'unknown option "---"'),
    (["--=x"], 'unknown option "--=x"'),
    (["--quiet"], 'unknown option "--quiet"'),
    (["--version=x"], "--version takes no value"),
]

# What each command gives after it: {usual} are the arguments that it needs.
WITH_COMMAND = [
    ("{usual} --version", 'unknown option "--version"'),
    ("{usual} --version=x", 'unknown option "--version=x"'),
    ("{usual} --none", 'unknown option "--none"'),
    ("{usual} --none=", 'unknown option "--none="'),
    ("{usual} --none=x", 'unknown option "--none=x"'),
    ("{usual} -z", 'unknown option "-z"'),
    ("{usual} -=x", 'unknown option "-=x"'),
    ("{usual} --=x", 'unknown option "--=x"'),
    ("{usual} ++", '"++" must follow "--"'),
]

# What a command gives whose arguments are missing, or too many.
ARGUMENTS = [
    ("convert", "--to is required"),
    ("convert --to ids ni3", "--language is required"),
    ("check", "FILE is required"),
    ("check -l zh --", "FILE is required"),
    ("check file", "--language is required"),
    ("explain ni3", "--language is required"),
    ("explain -l zh", "TEXT is required"),
    ("explain -l zh --", "TEXT is required"),
    ("explain -l zh ni3 hao3", 'unexpected argument "hao3"'),
    ("phones", "--language is required"),
    ("phones mandarin", "--language is required"),
    ("phones -l zh ni3 hao3", 'unexpected argument "ni3"'),
    ("phones -l zh -- -x", 'unknown option "-x"'),
    ("phones -l zh -", 'unexpected argument "-"'),
    ("syllables", "--language is required"),
    ("syllables -l zh ni3", 'unexpected argument "ni3"'),
]

# What options of each kind give; {name} is the long one, {option} the one that is written.
WITH_VALUE = [
    ("{usual} {option}", "{name} requires a value, {type}"),
    ("{option} {value} {option} {value} {usual} x", "{name} is given twice"),
]
WITH_VALUE_LONG = [("{name}= {usual} x", "{name}: must not be empty")]
FLAG_LONG = [
    ("{name}=x {usual} x", "{name} takes no value"),
    ("{name}= {usual} x", "{name} takes no value"),
]
FLAG_SHORT = [
    ("{option}=x {usual} x", "{name} takes no value"),
    ("{option}= {usual} x", "{name} takes no value"),
    ("{option}z {usual} x", 'unknown option "-z" in "{option}z"'),
]
LONG = [
    ("{usual} {name}x", 'unknown option "{name}x"'),
    ("{usual} {name}x=y", 'unknown option "{name}x=y"'),
]
VALUES = {
    "--language": "zh", "--to": "ids", "--from": "text", "--default-tone": "1", "--cut": "whole",
    "--format": "tsv", "--column": "2", "--headword": "simplified", "--jobs": "2",
}  # the others take any text


def options(command):
    """(written, long name, type or None) of each option that the help of a command names."""
    help_text = subprocess.run([TOOL, command, "--help"], capture_output=True, text=True, check=True)
    found = []
    pattern = r"^  (?:(-\w),)? *(--[a-z-]+)(?: ([A-Z]+))?"
    for short, name, kind in re.findall(pattern, help_text.stdout, re.M):
        found.append((name, name, kind))
        if short:
            found.append((short, name, kind))
    return [option for option in found if option[1] != "--help"]


def forms(option, name, kind):
    is_long = option == name
    if kind:
        return WITH_VALUE + (WITH_VALUE_LONG + LONG if is_long else [])
    return FLAG_LONG + LONG if is_long else FLAG_SHORT


def cases():
    yield from ALONE
    for line, expected in ARGUMENTS:
        yield line.split(), expected
    for command, usual in COMMANDS.items():
        for line, expected in WITH_COMMAND:
            yield [command, *line.format(usual=" ".join(usual)).split()], expected
        for option, name, kind in options(command):
            needed = " ".join(usual)
            if name in ("--language", "--to"):  # else it were given twice
                pair = " ".join(usual[:2] if name == "--language" else usual[2:])
                needed = needed.replace(pair, "").strip()
            words = {"option": option, "name": name, "type": kind, "usual": needed,
                     "value": VALUES.get(name, "file")}
            for line, expected in forms(option, name, kind):
                yield [command, *line.format(**words).split()], expected.format(**words)


def main():
    failures = 0
    count = 0
    for arguments, expected in cases():
        count += 1
        result = subprocess.run([TOOL, *arguments], stdin=subprocess.DEVNULL, capture_output=True,
                                text=True, check=False)
        command = " " + arguments[0] if arguments and arguments[0] in COMMANDS else ""
        message = f"phoneme: {expected} (see phoneme{command} --help)\n"
        if (result.returncode, result.stdout, result.stderr) != (2, "", message):
            failures += 1
            print(f"{arguments}: {result.returncode}, {result.stdout!r}{result.stderr!r}, not {message!r}",
                  file=sys.stderr)
    print(f"{count} command lines, {failures} failures")
    return failures == 0 and count > 200


if __name__ == "__main__":
    sys.exit(0 if main() else 1)
