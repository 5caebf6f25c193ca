#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints what the last `./test --desktops` found out about each program, as docs/desktops.md has it."""

from harness.results import Results

_WHAT = (("copy", "Copied to the history"), ("paste", "Pasted into"), ("ten", "Ten in a row"),
         ("outlives", "Copied, ended, pasted"))


def _main():
    print("| Program | Version | " + " | ".join(title for _, title in _WHAT) + " |")
    print("|---" * (2 + len(_WHAT)) + "|")
    remarks = []
    for name, entry in sorted(Results().all().items(), key=lambda one: one[0].lower()):
        cells = []
        for what, title in _WHAT:
            cells.append(entry.get(what, {}).get("how", "not run"))
            if cells[-1] == "fails":
                remarks.append(f"- {name}, {title.lower()}: {entry[what]['detail']}")
        print(f"| {name} | {entry['package']} {entry['version']} | {' | '.join(cells)} |")
    if remarks:
        print("\n" + "\n".join(remarks))


if __name__ == "__main__":
    _main()
