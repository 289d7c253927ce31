"""Runs the tool on the files of lines_benchmark and prints the second table of docs/performance.md.

    tool_report.py TOOL DIRECTORY RESULT    RESULT is the JSON of lines_benchmark

A time is the least of some runs: other work on the machine only ever adds. Where a limit is missed,
this is said, and the status is 3.
"""

from __future__ import annotations

import json
import os
import sys
import time

from report import judge

# file, what the library does for it, options of the tool
ROWS = [
    ("text", "py2code", ["--strict", "-l", "mandarin", "--to", "codes"]),
    ("pinyin", "NormalizePinyin, py2code", ["-l", "mandarin", "--to", "codes"]),
    ("marks", "NormalizePinyin, py2code", ["-l", "mandarin", "--to", "codes"]),
    ("toneless", "Analyze", ["-l", "mandarin", "--to", "codes"]),
    ("arpabet", "ArpabetToPronunciation, pr2ph", ["-l", "english", "--to", "ids"]),
]
MOST = 3  # times the library
LEAST = 1.7  # times one thread, with two
MOST_OF_LONG_TEXT = 1.5  # times a line's, for a syllable of a text of many lines: time is linear
RUNS = 7


def start(tool: str, options: list[str], path: str) -> int:
    devices = [(os.POSIX_SPAWN_OPEN, 0, path, os.O_RDONLY, 0),
               (os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0)]
    return os.posix_spawn(tool, [tool, "convert", "-q", *options], os.environ,
                          file_actions=devices)


def run(tool: str, options: list[str], path: str) -> tuple[float, float]:
    """CPU seconds and seconds that one run took."""
    begin = time.monotonic()
    _, status, usage = os.wait4(start(tool, options, path), 0)
    if status != 0:
        sys.exit(f"{tool} failed on {path}")
    return usage.ru_utime + usage.ru_stime, time.monotonic() - begin


def memory(tool: str, options: list[str], path: str) -> float:
    """The peak memory of a run in MiB. The figure of wait4 would include this script's own."""
    process = start(tool, options, path)
    most = 0
    while os.waitpid(process, os.WNOHANG) == (0, 0):
        with open(f"/proc/{process}/status", encoding="ascii") as file:
            for line in file:
                if line.startswith("VmHWM:"):
                    most = int(line.split()[1])
        time.sleep(0.001)
    return most / 1024


def least(tool: str, options: list[str], path: str) -> list[float]:
    """The least of each figure, as each is only ever too large."""
    return [min(figures) for figures in zip(*(run(tool, options, path) for _ in range(RUNS)))]


def print_long_texts(library: dict[str, float], syllables: dict[str, int],
                     missed: list[str]) -> None:
    """The library's time for a syllable of one long text."""
    print("\n| one text | ns a syllable | times as in lines | at most |")
    print("|---|---:|---:|---:|")
    for name, _, _ in ROWS:
        long_text = f"{name}/one_text"
        nanoseconds = 1e9 * library[long_text] / syllables[long_text]
        ratio = nanoseconds * syllables[name] / (1e9 * library[name])
        print(f"| {name} | {nanoseconds:.1f} | {ratio:.2f} | {MOST_OF_LONG_TEXT} |")
        if ratio > MOST_OF_LONG_TEXT:
            missed.append(long_text)


def main() -> None:
    tool, directory, result = sys.argv[1:]
    with open(result, encoding="utf-8") as file:
        document = json.load(file)
    library: dict[str, float] = {}
    syllables: dict[str, int] = {}
    for measured in document["benchmarks"]:
        if measured.get("error_occurred"):
            sys.exit(f"{measured['name']}: {measured['error_message']}")
        if measured["run_type"] == "iteration":
            name = measured["run_name"]
            seconds = measured["cpu_time"] / 1e3
            library[name] = min(seconds, library.get(name, seconds))
            syllables[name] = round(measured["items_per_second"] * seconds)
    missed: list[str] = []
    print("| lines | the library's own work | ns a syllable | the tool | times the library | at most |"
          " with -j 2 | times -j 1 | at least |")
    print("|---|---|---:|---:|---:|---:|---:|---:|---:|")
    for name, work, options in ROWS:
        path = os.path.join(directory, name + ".txt")
        cpu, elapsed = least(tool, options, path)
        _, elapsed_by_two = least(tool, [*options, "-j", "2"], path)
        scale = 1e9 / syllables[name]
        ratio, gain = cpu / library[name], elapsed / elapsed_by_two
        print(f"| {name} | `{work}` | {library[name] * scale:.1f} | {cpu * scale:.1f} | {ratio:.2f} |"
              f" {MOST} | {elapsed_by_two * scale:.1f} | {gain:.2f} | {LEAST} |")
        if ratio > MOST or gain < LEAST:
            missed.append(name)
    print_long_texts(library, syllables, missed)
    path = os.path.join(directory, "text.txt")
    longer = os.path.join(directory, "longer.txt")
    with open(path, "rb") as file, open(longer, "wb") as copies:
        lines = file.read()
        for _ in range(8):
            copies.write(lines)
    print("\nMemory: " + ", ".join(
        f"{memory(tool, ROWS[0][2], name):.1f} MiB for {os.path.getsize(name) / 1e6:.0f} MB of text"
        for name in (path, longer)) + ".")
    os.remove(longer)
    judge(missed)


if __name__ == "__main__":
    main()
