"""Prints the result of suggestions_benchmark (JSON) as the table of docs/performance.md.

A figure is the least CPU time of all repetitions: other work on the machine only ever adds. Where a
suggestion costs more than its limit, this is said, and the status is 3.
"""

from __future__ import annotations

import json
import sys

from report import judge

# What a suggestion costs, in nanoseconds.
MOST = 300


def read(path: str) -> dict[str, float]:
    """Nanoseconds a suggestion, by benchmark name."""
    with open(path, encoding="utf-8") as file:
        document = json.load(file)
    times: dict[str, float] = {}
    for run in document["benchmarks"]:
        if run.get("error_occurred"):
            sys.exit(f"{run['name']}: {run['error_message']}")
        if run["run_type"] != "iteration":
            continue
        name = run["run_name"].removesuffix("/manual_time")
        nanoseconds = 1e9 * run["hint"]
        times[name] = min(nanoseconds, times.get(name, nanoseconds))
    return times


def main() -> None:
    print("| misspelt | language | ns a suggestion | at most |")
    print("|---|---|---:|---:|")
    missed: list[str] = []
    for name, nanoseconds in read(sys.argv[1]).items():
        text, language = name.split("/")
        print(f"| {text} | {language} | {nanoseconds:.0f} | {MOST} |")
        if nanoseconds > MOST:
            missed.append(name)
    judge(missed)


if __name__ == "__main__":
    main()
