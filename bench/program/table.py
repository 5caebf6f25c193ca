# SPDX-License-Identifier: MIT
"""The table that the figures are printed in, in Markdown."""

import statistics
import sys


class Table:
    """The rows of the table, worded as they are printed."""

    def __init__(self):
        self.lines = ["| What a user feels | Median | 95th percentile | Budget | Samples | Met |",
                      "|---|---|---|---|---|---|"]

    def milliseconds(self, what, samples, budget, budget95=None):
        median, late = statistics.median(samples), percentile95(samples)
        met = median <= budget and (budget95 is None or late <= budget95)
        allowed = f"{budget:g} ms" + (f", {budget95:g} ms at the 95th" if budget95 else "")
        self._row(what, f"{median:.1f} ms", f"{late:.1f} ms", allowed, len(samples), met)

    def plain(self, what, value, budget, met):
        self._row(what, value, "", budget, 1, met)

    def information(self, what, samples):
        self._row(what, f"{statistics.median(samples):.1f} ms",
                  f"{percentile95(samples):.1f} ms", "", len(samples), None)

    def _row(self, what, median, late, budget, count, met):
        verdict = "" if met is None else "yes" if met else "NO"
        line = f"| {what} | {median} | {late} | {budget} | {count} | {verdict} |"
        print(line, file=sys.stderr, flush=True)
        self.lines.append(line)


def percentile95(samples):
    ordered = sorted(samples)
    return ordered[min(len(ordered) - 1, -(-len(ordered) * 95 // 100) - 1)]
