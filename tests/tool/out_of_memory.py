#!/usr/bin/env python3
"""Runs the tool under a limit on its memory, from the least with which it starts upwards.

    out_of_memory.py TOOL

With each limit it either does all of its work, or ends with status 3 and a message. Nothing in between:
no silence, no other status, and no output file with a part missing.
"""

import os
import resource
import subprocess
import sys
import tempfile

KIB = 1024
SKIPPED = 77  # the tool cannot start with little memory under some sanitizers
CEILING = 100_000 * KIB
OUTPUT = "out"
MESSAGES = ("phoneme: out of memory\n", "phoneme: cannot start ")


def run(command: list[str], limit: int) -> subprocess.CompletedProcess:
    """Runs a command, with a limit on its address space unless that is 0."""

    def restrict() -> None:
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        if limit:
            resource.setrlimit(resource.RLIMIT_AS, (limit, limit))

    return subprocess.run(command, capture_output=True, preexec_fn=restrict, check=False)


def least(command: list[str], ceiling: int) -> int:
    """Returns the least limit, to 16 KiB, with which a command succeeds."""
    low, high = 0, ceiling
    while high - low > 16 * KIB:
        middle = (low + high) // 2
        if run(command, middle).returncode == 0:
            high = middle
        else:
            low = middle
    return high


def result(command: list[str], limit: int) -> tuple[int, bytes, bytes]:
    """Runs a command. Returns its status, all of its output, and its messages."""
    if os.path.exists(OUTPUT):
        os.remove(OUTPUT)
    done = run(command, limit)
    output = done.stdout
    if os.path.exists(OUTPUT):
        with open(OUTPUT, "rb") as file:
            output += file.read()
    return done.returncode, output, done.stderr


def is_refused(status: int, messages: bytes) -> bool:
    last = messages.decode(errors="replace").splitlines(keepends=True)[-1:]
    return status == 3 and bool(last) and last[0].startswith(MESSAGES)


def sweep(command: list[str], first: int, step: int, most: int) -> tuple[int, int]:
    """Runs a command with growing limits until it succeeds.

    Returns how often it was refused, and the limit that was enough.
    """
    whole = result(command, 0)
    refused = 0
    for limit in range(first, first + most * step, step):
        status, output, messages = result(command, limit)
        if (status, output, messages) == whole:
            return refused, limit
        if not is_refused(status, messages):
            sys.exit(f"{command} with {limit} bytes: status {status}, {messages[-200:]!r}")
        if os.path.exists(OUTPUT) or any(name.startswith(".phoneme") for name in os.listdir()):
            sys.exit(f"{command} with {limit} bytes: a file is left")
        refused += 1
    sys.exit(f"{command}: not even {limit} bytes are enough")


def write_inputs() -> None:
    with open("long", "w") as file:
        file.write("a" * 50_000 + "\n")
    with open("lexicon", "w") as file:
        file.writelines(f"word{i} n i 3\n" for i in range(20_000))
    with open("lines", "w") as file:
        file.writelines("ni3 hao3\nhoa3\n" for _ in range(5_000))
    with open("aliases", "w") as file:
        file.write("oi\tngoi\n" + "# comment\n" * 100_000)


def main() -> None:
    tool = os.path.realpath(sys.argv[1])
    if run([tool, "--version"], CEILING).returncode != 0:
        print("the tool does not start with little memory")
        sys.exit(SKIPPED)
    with tempfile.TemporaryDirectory() as directory:
        os.chdir(directory)
        write_inputs()
        first = least([tool, "--version"], CEILING)
        convert = [tool, "convert", "-q", "-l", "mandarin", "--to"]
        for arguments, step, most in [
            ([*convert, "json", "-i", "long"], 1024 * KIB, 400),
            ([*convert, "json", "-i", "long", "-o", OUTPUT], 4096 * KIB, 100),
            ([*convert, "codes", "-i", "lines"], 64 * KIB, 400),
            ([*convert, "codes", "-i", "lines", "-o", OUTPUT], 128 * KIB, 400),
            ([*convert, "codes", "-j", "2", "-i", "lines", "-o", OUTPUT], 1024 * KIB, 400),
            ([*convert, "marks", "ni3hao3"], 16 * KIB, 400),
            ([tool, "check", "-l", "mandarin", "--lexicon", "lexicon"], 256 * KIB, 400),
            ([tool, "check", "-l", "mandarin", "lines"], 64 * KIB, 400),
            ([tool, "explain", "-l", "cantonese", "--aliases", "aliases", "oi3"], 128 * KIB, 400),
            ([tool, "explain", "-l", "mandarin", "nihao"], 16 * KIB, 400),
            ([tool, "syllables", "-l", "mandarin"], 16 * KIB, 400),
        ]:
            refused, enough = sweep(arguments, first, step, most)
            shown = " ".join(arguments[1:])
            print(f"{shown}: refused {refused} times, done with {enough // KIB} KiB")


if __name__ == "__main__":
    main()
