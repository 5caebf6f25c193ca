# SPDX-License-Identifier: MIT
"""What the hard round tried and what came of it, kept beside the build for docs/trust.md."""

import json
import os

_ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))


class Trials:
    """A file of one entry per fault; a run replaces what it tries again."""

    def __init__(self, path=None):
        self.path = path or os.environ.get("VANTOREL_TRIALS") or os.path.join(
            _ROOT, "build", "hard", "trials.json")

    def all(self):
        if not os.path.exists(self.path):
            return {}
        with open(self.path, encoding="utf-8") as file:
            return json.load(file)

    def note(self, fault, tried, held, figures=""):
        """`tried` and `held` say in words how often or how much."""
        trials = self.all()
        trials[fault] = {"tried": tried, "held": held, "figures": figures}
        os.makedirs(os.path.dirname(self.path), exist_ok=True)
        with open(self.path, "w", encoding="utf-8") as file:
            json.dump(trials, file, indent=1, ensure_ascii=False, sort_keys=True)
