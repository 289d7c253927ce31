"""Prints the result of conversion_benchmark (JSON) as the table of docs/performance.md.

A figure is the least CPU time of all repetitions, with threads the least time by the clock: other
work on the machine only ever adds. Where a limit is missed, this is said, and the status is 3.
"""

from __future__ import annotations

import json
import sys

# conversion, its baseline of bytes, limits: multiples of scan, times the reference form
ROWS = [
    ("py2code/toned", "toned", 3.5, 20),
    ("py2code/toneless", "toneless", 7, 18),
    ("py2ph/toned", "toned", 9, 10),
    ("pyw2py/forward", "toneless", 10, 10),
    ("pyw2py/backward", "toneless", 12, 8),
    ("pr2ph/syllables", "pronunciation", 9, 6),
    ("pr2ph/bytes", "pronunciation", 7, 8),
    ("ph2ph/bytes", "toned", 5, 1.2),
    ("code2ph/codes", "toned", 2, 1),
]
# English has no romanised text: its phone-id sequences are held against its pronunciation strings.
SCAN_WITHOUT_TEXT = "pronunciation"
LANGUAGES = ["mandarin", "cantonese", "english"]
# What two threads convert in the time in which one converts a text.
LEAST_OF_TWO_THREADS = 1.9
# What a syllable of a long text costs, times what it costs in a word: time is linear.
MOST_OF_LONG_TEXT = 1.5
OUTSIDE_THE_LIMITS = 3


def read(path: str) -> tuple[dict[str, float], dict[str, float]]:
    """Nanoseconds a syllable and allocations a syllable, by benchmark name."""
    with open(path, encoding="utf-8") as file:
        document = json.load(file)
    times: dict[str, float] = {}
    allocations: dict[str, float] = {}
    for run in document["benchmarks"]:
        if run.get("error_occurred"):
            sys.exit(f"{run['name']}: {run['error_message']}")
        if run["run_type"] != "iteration":
            continue
        name = run["run_name"]
        nanoseconds = 1e9 / run["items_per_second"]
        times[name] = min(nanoseconds, times.get(name, nanoseconds))
        allocations[name] = run.get("allocations", 0)
    return times, allocations


def judge(missed: list[str]) -> None:
    """Ends the process where a limit was missed."""
    if missed:
        print(f"\nOutside the limits: {', '.join(missed)}")
        sys.exit(OUTSIDE_THE_LIMITS)


def print_threads(times: dict[str, float], missed: list[str]) -> None:
    """Two threads against one, for every conversion that has both."""
    print("| conversion | language | ns a syllable, one thread | two threads, times one | at least |")
    print("|---|---|---:|---:|---:|")
    for name in times:
        one_thread = "/real_time/threads:1"
        if not name.endswith(one_thread):
            continue
        name = name.removesuffix(one_thread)
        one, two = (times[f"{name}/real_time/threads:{count}"] for count in (1, 2))
        _, conversion, form, language = name.split("/")
        print(f"| {conversion}/{form} | {language} | {one:.1f} | {one / two:.2f} |"
              f" {LEAST_OF_TWO_THREADS} |")
        if one / two < LEAST_OF_TWO_THREADS:
            missed.append(name)


def main() -> None:
    times, allocations = read(sys.argv[1])
    print("| conversion | language | ns a syllable | multiples of scan | at most |"
          " times the reference | at least | allocations a syllable |")
    print("|---|---|---:|---:|---:|---:|---:|---:|")
    missed: list[str] = []
    for conversion, texts, most, least in ROWS:
        for language in LANGUAGES:
            name = f"{conversion}/{language}"
            if name not in times:
                continue
            scan = times.get(f"scan/{texts}/{language}")
            if scan is None:
                scan = times[f"scan/{SCAN_WITHOUT_TEXT}/{language}"]
            of_scan = times[name] / scan
            of_reference = times[f"reference_{name}"] / times[name]
            print(f"| {conversion} | {language} | {times[name]:.1f} | {of_scan:.1f} | {most} |"
                  f" {of_reference:.1f} | {least} | {allocations[name]:.3g} |")
            if of_scan > most or of_reference < least:
                missed.append(name)
    print()
    print("| scan | language | ns a syllable |")
    print("|---|---|---:|")
    for name in sorted(times):
        if name.startswith("scan/"):
            _, texts, language = name.split("/")
            print(f"| {texts} | {language} | {times[name]:.2f} |")
    print()
    print_threads(times, missed)
    words = times["py2code/words_of_three/mandarin"]
    text = times["py2code/one_text_of_4_MB/mandarin"]
    print()
    print(f"Unsegmented, `py2code` takes {words:.1f} ns a syllable for words of three syllables and"
          f" {text:.1f} ns for one text of 4 MB, at most {MOST_OF_LONG_TEXT} times as much.")
    if text > MOST_OF_LONG_TEXT * words:
        missed.append("py2code/one_text_of_4_MB")
    judge(missed)


if __name__ == "__main__":
    main()
