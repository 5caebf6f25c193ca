#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes what the last `./test --hard` tried into docs/trust.md, between the marks of its table."""

import json
import os
import sys

from harness.trials import Trials

_ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
_PAGE = os.path.join(_ROOT, "docs", "trust.md")
_BEGIN, _END = "<!-- trials -->", "<!-- end of trials -->"


def _table():
    lines = ["| Tried | How often | Held | Figures |", "|---|---|---|---|"]
    for fault, trial in sorted(Trials().all().items()):
        lines.append(f"| {fault} | {trial['tried']} | {trial['held']} | {trial['figures']} |")
    fuzzed = os.path.join(_ROOT, "build", "hard", "fuzz.json")
    if os.path.exists(fuzzed):
        with open(fuzzed, encoding="utf-8") as file:
            for name, result in sorted(json.load(file).items()):
                held = "no crash, no leak, no limit passed" if result["sound"] else "**found something**"
                lines.append(f"| parser of {name.replace('_', ' ')}, fuzzed "
                             f"| {result['inputs']:,} inputs | {held} | |")
    return "\n".join(lines)


def _main():
    with open(_PAGE, encoding="utf-8") as file:
        page = file.read()
    head, rest = page.split(_BEGIN)
    _, tail = rest.split(_END)
    with open(_PAGE, "w", encoding="utf-8") as file:
        file.write(f"{head}{_BEGIN}\n{_table()}\n{_END}{tail}")
    return 0


if __name__ == "__main__":
    sys.exit(_main())
