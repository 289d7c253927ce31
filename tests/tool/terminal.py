#!/usr/bin/env python3
"""Runs the tool in a pseudo-terminal and reads what its user sees of the progress line.

    terminal.py TOOL

The library in $FAILING makes a second pass from one look at the clock to the next, so that each block of
input draws the line, and the rates are known.
"""

import fcntl
import os
import pty
import re
import struct
import subprocess
import sys
import tempfile
import termios

TOOL = os.path.realpath(sys.argv[1])
CLOCK = {"LD_PRELOAD": os.environ["FAILING"], "FAIL": "clock_gettime * second"}
CLEAR = "\r\x1b[K"
LINE = re.compile(r"\r(\[(#*)( *)\] (\d+) %, )?(\d+) lines, (\d+) lines/s(, (\d+:\d\d) left)?\x1b\[K")


def run(arguments: list[str], columns: int = 80, **streams) -> tuple[int, str]:
    """Runs a command; streams that are "terminal" are a new terminal. Returns its status and screen."""
    screen, terminal = pty.openpty()
    attributes = termios.tcgetattr(terminal)
    attributes[1] &= ~termios.OPOST  # "\n" stays "\n"
    termios.tcsetattr(terminal, termios.TCSANOW, attributes)
    fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
    files = {name: terminal if file == "terminal" else file for name, file in streams.items()}
    process = subprocess.Popen([TOOL, *arguments], env={**os.environ, **CLOCK}, **files)
    os.close(terminal)
    shown = b""
    while True:
        try:
            part = os.read(screen, 65536)
        except OSError:  # the last program has closed the terminal
            break
        if not part:
            break
        shown += part
    os.close(screen)
    return process.wait(), shown.decode()


def expect(condition: bool, what: str, shown: str) -> None:
    if not condition:
        sys.exit(f"{what}: {shown!r}")


def check_file() -> None:
    """A file: a bar that grows, lines, their rate, and the time left, which becomes less."""
    status, shown = run(
        ["convert", "-l", "mandarin", "--to", "codes", "-i", "lines", "-o", "codes"], stderr="terminal"
    )
    lines = list(LINE.finditer(shown))
    expect(status == 0 and len(lines) >= 5, "no progress", shown)
    expect(all(line[1] and line[8] for line in lines), "no bar, or no time left", shown)
    expect(all(len(line[2] + line[3]) == 20 for line in lines), "a bar of another width", shown)
    expect(len(lines[0][2]) < len(lines[-1][2]), "a bar that does not grow", shown)
    percents = [int(line[4]) for line in lines]
    expect(percents == sorted(percents) and percents[-1] > 50, "percents", shown)
    seconds = 0
    for line in lines:  # a sanitizer looks at the clock, too
        later = range(seconds + 1, seconds + 100)
        seconds = next((s for s in later if int(line[5]) // s == int(line[6])), 0)
        expect(seconds > 0, "another rate", shown)
    first, last = (int(line[8].replace(":", "")) for line in (lines[0], lines[-1]))
    expect(last < first, "a time left that does not become less", shown)
    end = CLEAR + "phoneme: 500000 lines: 500000 converted, 0 failed\n"
    expect(shown.endswith(end), "not cleared before the totals", shown)
    expect(LINE.sub("", shown) == end, "something else on the screen", shown)


def check_pipe() -> None:
    """A pipe has no end that is known: lines and their rate."""
    with subprocess.Popen(["cat", "lines"], stdout=subprocess.PIPE) as source:
        status, shown = run(
            ["convert", "-l", "mandarin", "--to", "codes", "-o", "codes"],
            stdin=source.stdout,
            stderr="terminal",
        )
    lines = list(LINE.finditer(shown))
    expect(status == 0 and lines != [], "no progress", shown)
    expect(not any(line[1] or line[8] for line in lines), "a bar without an end", shown)


def check_messages() -> None:
    """The line is taken off before a message."""
    with open("failing", "w") as file:
        file.writelines("ni3\n" * 200_000 + "hoa3\n" + "ni3\n" * 200_000)
    status, shown = run(
        ["convert", "-l", "mandarin", "--to", "codes", "-i", "failing", "-o", "codes"],
        stderr="terminal",
    )
    expect(status == 1 and "\x1b[K\r\x1b[Kphoneme: line 200001:" in shown, "a mixed line", shown)


def check_width() -> None:
    """The line fits into a narrow terminal, so that it can be drawn over."""
    shown = run(
        ["convert", "-l", "mandarin", "--to", "codes", "-i", "lines", "-o", "codes"],
        columns=30,
        stderr="terminal",
    )[1]
    drawn = re.findall(r"\r([^\r]+)\x1b\[K", shown)
    expect(drawn != [] and all(len(line) == 29 for line in drawn), "another width", shown)


def check_absence() -> None:
    """No line with -q, where results or rejects go to a terminal, or messages do not."""
    totals = "phoneme: 500000 lines: 500000 converted, 0 failed\n"
    convert = ["convert", "-l", "mandarin", "--to", "codes", "-i", "lines"]
    with open("results", "w") as results:
        expect(run([*convert, "-q"], stdout=results, stderr="terminal") == (0, ""), "-q", "")
        status, shown = run(
            [*convert, "--rejects", "/dev/stderr"], stdout=results, stderr="terminal"
        )
        expect((status, shown) == (0, totals), "rejects on the screen", shown)
    status, shown = run(convert, stdout="terminal", stderr="terminal")
    expect((status, shown) == (0, "2243\n" * 500_000 + totals), "results on the screen", shown[-500:])
    with open("messages", "w") as messages:
        status, shown = run(convert, stdout="terminal", stderr=messages)
    expect((status, shown) == (0, "2243\n" * 500_000), "messages in a file", shown[-500:])
    with open("messages") as messages:
        text = messages.read()
        expect(text == totals, "progress in a file", text)


def main() -> None:
    with tempfile.TemporaryDirectory() as directory:
        os.chdir(directory)
        with open("lines", "w") as file:
            file.write("ni3\n" * 500_000)
        check_file()
        check_pipe()
        check_messages()
        check_width()
        check_absence()


if __name__ == "__main__":
    main()
