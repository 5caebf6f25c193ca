# SPDX-License-Identifier: MIT
"""What each program did, kept beside the build for the table in docs/desktops.md."""

import json
import os
import subprocess

_ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))


class Results:
    """A file of one entry per program; a run replaces what it finds out again."""

    def __init__(self, path=None):
        self.path = path or os.environ.get("VANTOREL_RESULTS") or os.path.join(
            _ROOT, "build", "desktops", "results.json")

    def all(self):
        if not os.path.exists(self.path):
            return {}
        with open(self.path, encoding="utf-8") as file:
            return json.load(file)

    def note(self, kind, desktop, what, how, detail=""):
        """`how` is "works" or "fails"; `detail` says how it fails."""
        results = self.all()
        entry = results.setdefault(kind.__name__, {})
        entry["package"] = kind.package
        entry["version"] = _version(kind.package)
        entry["window manager"] = desktop.window_manager.name
        entry[what] = {"how": how, "detail": detail}
        os.makedirs(os.path.dirname(self.path), exist_ok=True)
        with open(self.path, "w", encoding="utf-8") as file:
            json.dump(results, file, indent=1, sort_keys=True)


def _version(package):
    answer = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package],
                            capture_output=True, text=True, check=False)
    return answer.stdout.split("-")[0].split(":")[-1] if answer.returncode == 0 else "?"
