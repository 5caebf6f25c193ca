# SPDX-License-Identifier: MIT
"""Types the commands of the documents, as somebody does who has just cloned the project.

What takes minutes, needs the administrator or another machine is played by a stand-in that notes how
it was called; all else is real. What even so is too much is looked up: its program and its options
have to be there. A command that stands in no table here fails."""

import json
import os
import re
import shutil
import stat
import subprocess
import tempfile
import unittest

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
BUILD = os.environ.get("VANTOREL_BUILD") or os.path.join(ROOT, "build", "release")

# Each is typed with the others of its block; beside it how the stand-ins are called by it, in that
# order.
TYPED = {
    "./run": ["cmake --preset release", "cmake --build build/release --target vantorel",
              "vantorel"],
    "./test": ["cmake --preset asan", "cmake --preset tsan", "ctest --test-dir build/all"],
    "./test --desktops": ["cmake --preset release", "ctest --test-dir build/release -C Desktops"],
    "./run --build && tools/packages packaging/test-packages.txt && tools/build release": [
        "cmake --build build/release --target vantorel", "cmake --build build/release"],
    "cmake --preset dev && cmake --build build/dev && ctest --test-dir build/dev": [
        "cmake --preset dev", "cmake --build build/dev", "ctest --test-dir build/dev"],
    "cmake -B build -G Ninja -DBUILD_TESTING=OFF": ["cmake -B build"],
    "cmake --build build": ["cmake --build build"],
    "sudo cmake --install build": ["cmake --install build"],
    "vantorel list | fzf | cut -f1 | xargs -r vantorel copy": ["fzf"],
    "scp -r ~/.local/share/ClipHistory new:.local/share/": ["scp -r"],
    'item="service com.vantorel.mvp.history-encryption account history-key-v1"': [],
    "secret-tool lookup $item | ssh new \"secret-tool store "
    "--label='Vantorel local history encryption' $item\"": [
        "secret-tool lookup service com.vantorel.mvp.history-encryption account history-key-v1"],
    "vantorel --quit": [],
    "sudo apt purge vantorel": ["apt purge vantorel"],
    "rm -rf ~/.local/share/ClipHistory ~/.config/vantorel "
    "~/.config/autostart/com.vantorel.Vantorel.desktop": [],
    "secret-tool clear service com.vantorel.mvp.history-encryption account history-key-v1": [
        "secret-tool clear service com.vantorel.mvp.history-encryption account history-key-v1"],
}
# Looked up: they make whole machines and packages, or measure for minutes.
LOOKED_UP = (
    "tools/package",
    "sudo apt install ./build/vantorel_*.deb",
    "sudo tools/fresh",
    "sudo tools/fresh ./test REGEX",
    "sudo tools/fresh --bring build/vantorel_*.deb tests/package/installed",
    "tests/desktop/results_table.py",
    "bench/program/run.py --rounds 24",
    "bench/program/run.py --session wayland --rounds 24",
    "build/release/vantorel_bench_store --benchmark_min_time=0.1",
    "build/release/vantorel_bench_security --benchmark_min_time=0.1",
    "build/release/vantorel_bench_search --benchmark_min_time=0.1",
    "build/release/vantorel_bench_panel",
    "build/release/vantorel_bench_text",
    "build/release/vantorel_bench_images --benchmark_filter=reducing --benchmark_min_time=0.3",
)
STAND_INS = ("apt", "apt-get", "cmake", "ctest", "fzf", "scp", "secret-tool", "ssh", "sudo")
STAND_IN = """#!/bin/sh
echo "${0##*/} $*" >>"$CALLS"
case "${0##*/}" in
  sudo) exec "$@" ;;
  ssh | fzf) cat >/dev/null ;;
esac
"""


def read(*parts):
    with open(os.path.join(*parts), encoding="utf-8") as file:
        return file.read()


def documents(tree):
    names = ["README.md", "CONTRIBUTING.md", "SECURITY.md"]
    names += ["docs/" + name for name in sorted(os.listdir(os.path.join(tree, "docs")))]
    return [name for name in names if name.endswith(".md")]


def blocks(text):
    return re.findall(r"^```(?:sh|bash|console)\n(.*?)^```", text, re.MULTILINE | re.DOTALL)


def commands(block):
    """One a line, without comments, however they are broken and set."""
    block = re.sub(r"(?:^|\s+)# .*", "", block)
    block = re.sub(r"\\\n|(?<=\|)\n", " ", block)
    return [re.sub(r"\s+", " ", line).strip() for line in block.splitlines() if line.strip()]


class Commands(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.place = tempfile.mkdtemp(prefix="vantorel documents ")
        cls.addClassCleanup(shutil.rmtree, cls.place)
        cls.tree = os.path.join(cls.place, "vantorel")
        # The tree may be another user's.
        trust = {"GIT_CONFIG_COUNT": "1", "GIT_CONFIG_KEY_0": "safe.directory",
                 "GIT_CONFIG_VALUE_0": "*"}
        subprocess.run(["git", "clone", "--quiet", ROOT, cls.tree], check=True,
                       env={**os.environ, **trust})

    def setUp(self):
        self.home = self.folder("home")
        self.calls = os.path.join(self.home, "calls")
        programs = self.folder("programs")
        for name in STAND_INS:
            self.stand_in(os.path.join(programs, name))
        os.symlink(os.path.join(BUILD, "vantorel"), os.path.join(programs, "vantorel"))
        self.env = {"PATH": programs + ":/usr/bin:/bin", "HOME": self.home, "LANG": "C.UTF-8",
                    "CALLS": self.calls, "DISPLAY": ":none", "XDG_RUNTIME_DIR": self.home}

    def folder(self, name):
        path = tempfile.mkdtemp(prefix=name + "-", dir=self.place)
        self.addCleanup(shutil.rmtree, path)
        return path

    def stand_in(self, path):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(STAND_IN)
        os.chmod(path, stat.S_IRWXU)

    def all_blocks(self):
        for name in documents(self.tree):
            for block in blocks(read(self.tree, name)):
                yield name, block

    def test_each_is_in_a_table_and_in_a_document(self):
        written = {command for _, block in self.all_blocks() for command in commands(block)}
        known = {*TYPED, *LOOKED_UP}
        self.assertEqual((sorted(written - known), sorted(known - written)), ([], []))

    def test_what_is_typed_does_what_it_says(self):
        typed = set()
        for name, block in self.all_blocks():
            lines = [line for line in commands(block) if line in TYPED]
            if not lines:
                continue
            typed.update(lines)
            with self.subTest(document=name, lines=lines):
                self.stand_in(os.path.join(self.tree, "build", "release", "vantorel"))
                with open(self.calls, "w", encoding="utf-8"):
                    pass
                done = subprocess.run(
                    ["dbus-run-session", "--", "bash", "-e", "-u", "-o", "pipefail", "-c",
                     "\n".join(lines)],
                    cwd=self.tree, env=self.env, check=False, stdin=subprocess.DEVNULL,
                    stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=60)
                self.assertEqual(done.returncode, 0, done.stdout)
                self.assert_called([call for line in lines for call in TYPED[line]])
        self.assertEqual(set(TYPED) - typed, set())

    def assert_called(self, wanted):
        calls = read(self.calls).splitlines()
        remaining = iter(calls)
        for call in wanted:
            self.assertTrue(any(made.startswith(call) for made in remaining),
                            f"{call} is not among {calls}")
        presets = {each["name"] for each in
                   json.loads(read(self.tree, "CMakePresets.json"))["configurePresets"]}
        for call in calls:
            preset = re.match(r"cmake --preset (\S+)", call)
            self.assertTrue(preset is None or preset.group(1) in presets, call)

    def test_history_settings_and_start_at_login_are_removed(self):
        for path in (".local/share/ClipHistory/x", ".config/vantorel/defaults.json",
                     ".config/autostart/com.vantorel.Vantorel.desktop"):
            os.makedirs(os.path.dirname(os.path.join(self.home, path)), exist_ok=True)
            with open(os.path.join(self.home, path), "w", encoding="utf-8"):
                pass
        line = next(line for line in TYPED if line.startswith("rm -rf"))
        subprocess.run(["bash", "-c", line], env=self.env, check=True)
        left = [name for _, _, files in os.walk(self.home) for name in files]
        self.assertEqual(left, [])

    def test_the_key_is_called_as_in_the_program(self):
        keychain = read(self.tree, "src", "security", "HistoryKeychain.cpp") + read(
            self.tree, "src", "security", "HistoryKeychain.h")
        for name in ("com.vantorel.mvp.history-encryption", "history-key-v1",
                     "Vantorel local history encryption"):
            self.assertIn(f'"{name}"', keychain)

    def test_what_is_looked_up_is_there_with_its_options(self):
        benchmarks = read(self.tree, "bench", "CMakeLists.txt")
        for line in LOOKED_UP:
            with self.subTest(line):
                program, *arguments = line.removeprefix("sudo ").split()
                if program == "apt":
                    self.assertIn("\nPackage: vantorel\n",
                                  read(self.tree, "packaging", "debian", "control"))
                elif program.startswith("build/release/"):
                    self.assertIn(os.path.basename(program), benchmarks)
                    self.assert_measured(arguments)
                else:
                    self.assert_script(program, arguments)

    def assert_measured(self, arguments):
        for argument in arguments:
            if argument.startswith("--benchmark_filter="):
                sources = "".join(read(self.tree, "bench", name)
                                  for name in os.listdir(os.path.join(self.tree, "bench"))
                                  if name.endswith(".cpp"))
                self.assertIn(f"BENCHMARK({argument.partition('=')[2]}", sources)

    def assert_script(self, program, arguments):
        path = os.path.join(self.tree, program)
        self.assertTrue(os.access(path, os.X_OK), program)
        for argument in arguments:
            if argument.startswith("--"):
                self.assertIn(argument, read(path))
            elif "/" in argument and "*" not in argument:
                self.assertTrue(os.path.exists(os.path.join(self.tree, argument)), argument)

    def test_options_in_the_text_are_those_of_their_programs(self):
        options = subprocess.run([os.path.join(BUILD, "vantorel"), "--help"], env=self.env,
                                 check=True, stdout=subprocess.PIPE, text=True).stdout
        for name in documents(self.tree):
            for span in re.findall(r"`([^`\n]+)`", read(self.tree, name)):
                program, *arguments = span.split(" ")
                if not re.fullmatch(r"\./run|\./test|tools/[\w-]+|vantorel", program):
                    continue
                text = options if program == "vantorel" else read(self.tree, program)
                for argument in arguments:
                    if argument.startswith("--") and argument != "--":
                        with self.subTest(document=name, command=span):
                            self.assertIn(argument.partition("=")[0], text)


if __name__ == "__main__":
    unittest.main()
