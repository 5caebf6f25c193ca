#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Measures the real program on a private desktop and prints a table in Markdown.

    bench/program/run.py [--session x11|wayland] [--build build/release] [--rounds 40]
                         [--output FILE]

The figures in milliseconds come from `vantorel_program_bench`, which speaks to the X server itself
and listens to the file system, or from `vantorel_wayland_bench`, which speaks to the compositor; the
rest is read from /proc here. Budgets stand beside the figures. A Wayland session measures what the
session makes different: pictures, their text and memory are left out, and so are pauses of the main
thread, which nobody can ask for there.
"""

import argparse
import json
import os
import random
import subprocess
import sys
import tempfile
import time

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
sys.path.insert(0, os.path.join(ROOT, "tests", "desktop"))

from harness import pictures  # noqa: E402  (found through the path above)
from harness.desktop import PrivateDesktop  # noqa: E402
from harness.history import image_item, seal, text_item  # noqa: E402
from harness.sway import SwayDesktop, leave_root  # noqa: E402
from harness.vantorel import Vantorel  # noqa: E402
from harness.waiting import wait_for  # noqa: E402

from table import Table  # noqa: E402  (beside this file)

KEY = bytes(range(32))
ENTRIES = 50
IDLE_SECONDS = 30
SETTLING_SECONDS = 35


class Bench:
    """One program on one private desktop, and the measuring tool beside it."""

    text_type = "UTF8_STRING"
    opening = "shortcut pressed"
    measures_memory = True
    measures_pictures = True

    def __init__(self, build, desktop):
        self.tool = [os.path.join(build, "vantorel_program_bench")]
        self.program = os.path.join(build, "vantorel")
        self.desktop = desktop
        self.vantorel = Vantorel(desktop)

    def start_with(self, items):
        """Starts with a history of these entries, and nothing else of an earlier measurement."""
        if self.vantorel.is_running():
            self.vantorel.quit()
        self.desktop.keyring.store(KEY)
        self.vantorel.history.write(items, KEY)
        self.desktop.pointer.move(2, 2)
        self._start()

    def _start(self):
        self.vantorel.start(accessible=False)

    def measure(self, what, *arguments):
        answer = self.desktop.run([*self.tool, what, *map(str, arguments)], limit=600)
        if answer.returncode != 0:
            raise RuntimeError(f"{what}: {answer.stderr.decode().strip()}")
        return json.loads(answer.stdout)

    def file(self, name, data):
        path = os.path.join(self.desktop.files, name)
        with open(path, "wb") as file:
            file.write(data)
        return path

    def memory(self):
        """The program's proportional memory in megabytes."""
        with open(f"/proc/{self.vantorel.process.pid}/smaps_rollup", encoding="utf-8") as file:
            for line in file:
                if line.startswith("Pss:"):
                    return int(line.split()[1]) / 1024
        raise RuntimeError("no proportional memory in /proc")


class WaylandBench(Bench):
    """The same in a Wayland session. An output that is refreshed a thousand times a second shows
    within a millisecond what was painted."""

    text_type = "text/plain;charset=utf-8"
    opening = "`vantorel --toggle` begun"
    measures_memory = False  # which the program shows to an administrator alone
    measures_pictures = False

    def __init__(self, build, desktop):
        super().__init__(build, desktop)
        self.tool = [os.path.join(build, "vantorel_wayland_bench"), self.program]
        width, height = desktop.size
        desktop.sway(f"output HEADLESS-1 mode --custom {width}x{height}@1000Hz")

    def _start(self):
        self.vantorel.start(accessible=False, capturing=False)
        self.measure("await")


def texts(size, count=ENTRIES):
    """Entries of a size; every second one holds the letters that the typing measurement types."""
    words = random.Random(7)
    items = []
    for number in range(count):
        line = " ".join("".join(words.choice("bcdefghijklmnop") for _ in range(6))
                        for _ in range(12)) + "\n"
        body = (line * (size // len(line) + 1))[:size - 3] + ("aa." if number % 2 else "ab.")
        items.append(text_item(f"{number} {body}", number))
    return items


def screenshot_like(seed):
    """A 3840 × 2160 picture that compresses as a screen full of windows does, about 2 MB."""
    choose = random.Random(seed)
    width, height = 3840, 2160
    tile = [bytes(choose.choice((30, 60, 200, 240, 255)) for _ in range(3 * width))
            for _ in range(24)]
    rows = [tile[0]] * height
    for y in range(0, height, 40):
        for line in range(24):
            rows[min(height - 1, y + line)] = tile[line]
    plain = bytes((245, 245, 247)) * width
    return pictures.png_of_rows(width, [
        row[:4800] + plain[4800:] if y % 3 else plain for y, row in enumerate(rows)], level=6)


def measure_panel(bench, table, rounds):
    bench.start_with(texts(20_000))
    table.milliseconds(f"{bench.opening} to panel painted", bench.measure("open", rounds)["open"],
                       16, 33)
    typed = bench.measure("type", rounds)
    table.milliseconds("key typed in the search field to list painted",
                       typed["type"] + typed["erase"], 8)
    table.milliseconds("entry chosen to text in the target",
                       bench.measure("paste", rounds)["paste"], 5)
    bench.start_with(texts(1_000_000))
    typed = bench.measure("type", max(10, rounds // 4))
    table.milliseconds("key typed with 50 entries of 1 MB", typed["type"] + typed["erase"], 16)


def measure_copying(bench, table, rounds):
    line = "the quick brown fox jumps over the lazy dog 0123456789\n"
    small = bench.file("small.txt", (line * 20)[:1000].encode())
    folder = bench.vantorel.history.directory
    bench.start_with([])
    copied = bench.measure("copy", rounds, folder, bench.text_type, small)
    table.information("1 KB text copied to handed over", copied["served"])
    table.milliseconds("1 KB text copied to in the history (its sealing begun)", copied["begun"], 4)
    table.milliseconds("1 KB text copied to sealed on disk", copied["sealed"], 3)
    bench.start_with(texts(20_000))
    copied = bench.measure("copy", rounds, folder, bench.text_type, small)
    table.milliseconds("the same with a full history of 50 × 20 KB", copied["sealed"], 5)
    for size, name, rounds_of_it, budget in ((1_000_000, "1 MB", max(5, rounds // 4), 16),
                                             (10_000_000, "10 MB", max(3, rounds // 8), 50)):
        big = bench.file("big.txt", (line * (size // len(line) + 1))[:size].encode())
        pauses, sealed = [], []
        for _ in range(rounds_of_it):
            # Afresh each time, since every such text makes the history longer.
            bench.start_with(texts(20_000))
            copied = bench.measure("copy", 1, folder, bench.text_type, big)
            pauses += copied.get("pause", [])
            sealed += copied["sealed"]
        table.information(f"{name} of text copied to sealed on disk", sealed)
        if pauses:
            table.milliseconds(f"longest pause of the main thread, {name} of text", pauses, budget)


def measure_pictures(bench, table):
    folder = bench.vantorel.history.directory
    shots = [bench.file(f"shot{number}.png", screenshot_like(number)) for number in range(8)]
    megabytes = os.path.getsize(shots[0]) / 1e6
    bench.start_with(texts(20_000, 40))
    copied = bench.measure("copy", len(shots), folder, "image/png", *shots)
    table.milliseconds(f"3840 × 2160 screenshot copied (PNG, {megabytes:.1f} MB) to sealed on disk",
                       copied["sealed"], 60)
    table.milliseconds("longest pause of the main thread meanwhile", copied["pause"], 16)
    noise = [bench.file(f"noise{number}.png", pictures.png_of_rows(
        1950, [random.Random(number * 2000 + y).randbytes(3 * 1950) for y in range(2000)], level=0))
        for number in range(3)]
    pushed = bench.measure("copy", len(noise), folder, "image/png", *noise)
    table.information(f"{os.path.getsize(noise[0]) / 1e6:.1f} MB of noise copied to sealed on disk",
                      pushed["sealed"])
    table.milliseconds("longest pause of the main thread, the largest images", pushed["pause"], 50)


SENTENCES = ("The invoice of March was paid on Tuesday.", "Open recent files from the last week.",
             "Nobody answered the second letter.", "Version 5.12 is ready to be installed.",
             "Please send a copy to orders@northwind.example today.",
             "Rain is expected in the north, 14 degrees at night.")


def page_of_text(bench, lines, letters, pixels):
    """A page of so many lines of so many letters each, of a type of this size."""
    choose = random.Random(lines)
    text = []
    for _ in range(lines):
        line = ""
        while len(line) < letters:
            line += choose.choice(SENTENCES) + " "
        text.append(line[:letters])
    return bench.desktop.picture_of("\n".join(text), f"DejaVu Sans {pixels * 72 / 96:g}")


def measure_reading(bench, table, rounds):
    small, large = page_of_text(bench, 6, 80, 16), page_of_text(bench, 46, 160, 40)
    bench.start_with([])
    for what, picture, budget in (("six lines", small, 1000), ("a page", large, None)):
        times, letters = [], 0
        for number in range(5):
            # A picture is read once: each round has another.
            bench.vantorel.clipboard.copy_as("image/png", picture + bytes([number]))
            start = time.monotonic()
            wait_for("the text", lambda: bench.vantorel.newest().get("recognizedText"), 120)
            times.append((time.monotonic() - start) * 1000)
            letters = len(bench.vantorel.newest()["recognizedText"])
            bench.vantorel.history.write([], KEY)
            bench.start_with([])
        width, height = pictures.png_size(picture)
        what = f"{what} ({letters} characters, {width} × {height} px), copied to found by its words"
        if budget:
            table.milliseconds(what, times, budget)
        else:
            table.information(what, times)
    bench.vantorel.quit()
    unread = []
    for number in range(40):
        unread.append(image_item(f"00000000-0000-4000-8000-{number:012}.vimg", number))
        _write_asset(bench, unread[-1], large)
    history = texts(20_000, 10) + unread
    bench.start_with(history)
    opened = bench.measure("open", rounds)["open"]
    typed = bench.measure("type", rounds)
    left = [item for item in bench.vantorel.history.items()
            if item["kind"] == "image" and "recognizedText" not in item]
    if not left:
        raise RuntimeError("the pictures were read before the panel was measured")
    table.milliseconds("shortcut pressed to panel painted, pictures being read", opened, 16, 33)
    table.milliseconds("key typed to list painted, pictures being read",
                       typed["type"] + typed["erase"], 8)
    bench.start_with(history)
    bench.vantorel.quit()
    started = bench.measure("start", max(10, rounds // 4), bench.program)
    table.milliseconds("start to capturing with 40 unread pictures", started["start"], 100)
    table.information("first opening then, to the last of the seen thumbnails", started["first"])


def _write_asset(bench, item, picture):
    os.makedirs(bench.vantorel.history.assets, mode=0o700, exist_ok=True)
    with open(os.path.join(bench.vantorel.history.assets, item["assetFilename"]), "wb") as file:
        file.write(seal(KEY, picture))


def measure_bursts(bench, table):
    bench.start_with([])
    bench.measure("burst", 20, 30)
    wait_for("the last copy on disk", lambda: "burst 19" in bench.vantorel.history.texts())
    kept = len([text for text in bench.vantorel.history.texts() if text.startswith("burst ")])
    table.plain("copies 30 ms apart kept", f"{kept} of 20", "20 of 20", kept == 20)


def measure_starting(bench, table, rounds):
    bench.start_with(texts(20_000))
    bench.vantorel.quit()
    started = bench.measure("start", max(10, rounds // 4), bench.program)
    table.milliseconds("start to capturing", started["start"], 100)
    table.milliseconds("first opening after the start", started["first"], 33)
    if not bench.measures_pictures:
        return
    shots = []
    for number in range(8):
        shots.append(image_item(f"00000000-0000-4000-8000-{number:012}.vimg", number) |
                     {"recognizedText": "read"})
        _write_asset(bench, shots[-1], screenshot_like(number))
    bench.start_with(shots + texts(20_000, 40))
    bench.vantorel.quit()
    started = bench.measure("start", max(10, rounds // 4), bench.program, 2)
    table.milliseconds("first opening 2 s after the start, eight 4K pictures on top, all shown",
                       started["first"], 33)


def measure_idle(bench, table):
    bench.start_with(texts(20_000))
    bench.measure("open", 3)
    time.sleep(SETTLING_SECONDS)  # threads that were needed for the opening end after 30 s
    if bench.measures_memory:
        table.plain("proportional memory, 50 texts", f"{bench.memory():.1f} MB", "30 MB",
                    bench.memory() <= 30)
    pid = bench.vantorel.process.pid
    before = _spent(pid)
    time.sleep(IDLE_SECONDS)  # the span that is measured, not a wait for something
    after = _spent(pid)
    # What a thread did that has ended meanwhile is lost with it; it was asleep until it ended.
    spans = [(after[task], before.get(task, (0, 0))) for task in after]
    share = sum(late[0] - early[0] for late, early in spans) / 1e9 / IDLE_SECONDS * 100
    switches = sum(late[1] - early[1] for late, early in spans) / IDLE_SECONDS
    table.plain("idle, panel hidden: share of a core", f"{share:.3f} %", "0 %", share < 0.001)
    # Everything that may happen on this desktop is announced, so nothing has to look by itself.
    table.plain("idle: times a second that a thread went to sleep", f"{switches:.2f}", "0",
                switches < 0.05)


def measure_memory_with_pictures(bench, table):
    for count, budget in ((8, 45), (45, 60)):
        bench.start_with([])
        shots = [bench.file(f"shot{number}.png", screenshot_like(number)) for number in range(count)]
        bench.measure("copy", count, bench.vantorel.history.directory, "image/png", *shots)
        bench.measure("open", 1)
        _scroll_through(bench)
        used = bench.memory()
        table.plain(f"proportional memory, {count} pictures of 4K, all shown once",
                    f"{used:.1f} MB", f"{budget} MB", used <= budget)


def _scroll_through(bench):
    bench.vantorel.open_panel()
    for _ in range(ENTRIES):
        bench.desktop.keyboard.tap("Down")
    bench.vantorel.press_shortcut()
    bench.vantorel.wait_until_hidden()


def _spent(pid):
    """{thread: (nanoseconds of processor time, voluntary switches)}."""
    spent = {}
    for task in os.listdir(f"/proc/{pid}/task"):
        with open(f"/proc/{pid}/task/{task}/schedstat", encoding="utf-8") as file:
            nanoseconds = int(file.read().split()[0])
        with open(f"/proc/{pid}/task/{task}/status", encoding="utf-8") as file:
            switches = next(int(line.split()[1]) for line in file
                            if line.startswith("voluntary_ctxt_switches"))
        spent[task] = (nanoseconds, switches)
    return spent


def installed_size(build, table):
    with tempfile.TemporaryDirectory() as place:
        subprocess.run(["cmake", "--install", build, "--prefix", place], check=True,
                       capture_output=True)
        size = sum(os.path.getsize(os.path.join(folder, name))
                   for folder, _, names in os.walk(place) for name in names) / 1e6
    table.plain("everything that is installed", f"{size:.2f} MB", "3.5 MB", size <= 3.5)


def _main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--session", choices=("x11", "wayland"), default="x11")
    parser.add_argument("--build", default=os.path.join(ROOT, "build", "release"))
    parser.add_argument("--rounds", type=int, default=40)
    parser.add_argument("--only", help="one of the measurements, by a part of its name")
    parser.add_argument("--output", help="a file for the table")
    arguments = parser.parse_args()
    build = os.path.abspath(arguments.build)
    is_wayland = arguments.session == "wayland"
    if is_wayland:
        leave_root()
    os.environ["VANTOREL_PROGRAM"] = os.path.join(build, "vantorel")
    table = Table()
    steps = {
        "panel": lambda bench: measure_panel(bench, table, arguments.rounds),
        "copying": lambda bench: measure_copying(bench, table, arguments.rounds),
        "pictures": lambda bench: measure_pictures(bench, table),
        "reading": lambda bench: measure_reading(bench, table, arguments.rounds),
        "bursts": lambda bench: measure_bursts(bench, table),
        "starting": lambda bench: measure_starting(bench, table, arguments.rounds),
        "idle": lambda bench: measure_idle(bench, table),
        "memory": lambda bench: measure_memory_with_pictures(bench, table),
    }
    for name, step in steps.items():
        if arguments.only and arguments.only not in name:
            continue
        if is_wayland and name not in ("panel", "copying", "bursts", "starting", "idle"):
            continue
        desktop_class, bench_class = ((SwayDesktop, WaylandBench) if is_wayland else
                                      (PrivateDesktop, Bench))
        with desktop_class() as desktop:
            step(bench_class(build, desktop))
    if not is_wayland:
        installed_size(build, table)
    text = "\n".join(table.lines) + "\n"
    print(text)
    if arguments.output:
        with open(arguments.output, "w", encoding="utf-8") as file:
            file.write(text)


if __name__ == "__main__":
    try:
        _main()
    except (RuntimeError, AssertionError, subprocess.SubprocessError) as problem:
        sys.exit(f"the measurement failed: {problem}")
