# SPDX-License-Identifier: MIT
"""The test programs, built once; each mutation is compiled and linked beside them."""

import json
import os
import re
import resource
import shlex
import signal
import subprocess
import tempfile
import time
from pathlib import Path

_ROOT = Path(__file__).resolve().parents[2]
# A program that a mutation drives mad does not take the machine's memory.
_MOST_MEMORY = 4 << 30
_CODE = re.compile(r"^\S+ [TDBR] (\S+)$", re.MULTILINE)


class Failure(Exception):
    """What keeps the whole run from going on."""


class Programs:
    """A preset's unit tests in a build directory of their own."""

    def __init__(self, preset):
        self._preset = preset
        # As deep as the ordinary one, so that both share what the compiler's cache holds.
        name = "mutate" if preset == "core-only" else f"mutate-{preset}"
        self.directory = _ROOT / "build" / name
        self._configure()
        self._commands = {}
        for entry in json.loads((self.directory / "compile_commands.json").read_text()):
            file = (self.directory / entry["file"]).resolve().relative_to(_ROOT)
            self._commands.setdefault(str(file), entry["command"])
        targets = self._ninja("-t", "targets", "all")
        names = re.findall(r"^(\w+_test): CXX_EXECUTABLE", targets, re.MULTILINE)
        self._links = {name: self._link(name) for name in names}
        self._times = {}
        self._symbols = {}

    def builds(self, file):
        return file in self._commands

    def build(self, names):
        """Builds programs as they are and runs them. Answers what fails."""
        if names:
            self._run(["cmake", "--build", str(self.directory), "--target", *names])
        failing = []
        for name in names:
            if name in self._times:
                continue
            began = time.monotonic()
            failed = self.run(name, self.directory / name, 600)
            if failed:
                failing.append(failed)
            self._times[name] = time.monotonic() - began
        return failing

    def of_room(self, file):
        """The programs that test a file's room: tests/unit has the rooms of src."""
        room = os.path.dirname(file.removeprefix("src/"))
        near = [name for name in self._links if self._folder(name) == f"tests/unit/{room}"]
        if not near and "/" in room:
            return self.of_room(f"src/{room}")
        return near

    def others(self, file):
        """All the other programs that hold the file's code."""
        near = self.of_room(file)
        far = [name for name in self._links if name not in near]
        self._run(["cmake", "--build", str(self.directory), "--target", *far])
        code = self._code(self.directory / self._object(file))
        return [name for name in far if code & self._code(self.directory / name)]

    def compile(self, file, text, target):
        """Compiles a changed source file. False when it is not C++ any more."""
        source = target.with_suffix(".cpp")
        source.write_text(text)
        command = shlex.split(self._commands[file])
        if os.path.basename(command[0]) == "ccache":
            del command[0]
        output = command.index("-o")
        command[output + 1] = str(target)
        command[-1] = str(source)
        # With the containers' own checks, which the shipped program has too.
        done = subprocess.run([*command, "-w", "-g0", "-O0", "-D_GLIBCXX_ASSERTIONS"], cwd=self.directory,
                              capture_output=True, check=False)
        return done.returncode == 0

    def link(self, name, mutant, target):
        """Links a program with a changed object, which comes before the library that has it too."""
        command = list(self._links[name])
        command[command.index("-o") + 1] = str(target)
        command[1:1] = ["-fuse-ld=gold", "-Wl,--strip-debug", str(mutant)]
        self._run(command)

    def limit(self, name):
        return 10 + 5 * self._times[name]

    def run(self, name, program, limit):
        """None when every test passes, else what failed first."""
        with tempfile.TemporaryDirectory(prefix="mutate-", ignore_cleanup_errors=True) as scratch:
            process = subprocess.Popen(
                [str(program), "--gtest_fail_fast", "--gtest_brief=1"],
                cwd=self.directory / self._folder(name), env={**os.environ, "TMPDIR": scratch},
                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, preexec_fn=_limited,
                start_new_session=True)
            try:
                output, _ = process.communicate(timeout=limit)
            except subprocess.TimeoutExpired:
                return f"{name} takes longer than {limit:.0f} s"
            finally:
                _end(process)
        if process.returncode == 0:
            return None
        failed = re.search(rb"\[  FAILED  \] (\S+)", output)
        return failed.group(1).decode() if failed else f"{name} ends with {process.returncode}"

    def _configure(self):
        os.environ.update(CCACHE_BASEDIR=str(_ROOT), CCACHE_NOHASHDIR="1")
        self._run(["cmake", "--preset", self._preset, "-B", str(self.directory)])

    def _link(self, name):
        for part in self._ninja("-t", "commands", name).splitlines()[-1].split(" && "):
            if f" -o {name} " in part:
                return shlex.split(part)
        raise Failure(f"no command links {name}")

    def _folder(self, name):
        own = f"/CMakeFiles/{name}.dir/"
        return next(word.split(own)[0] for word in self._links[name] if own in word)

    def _object(self, file):
        command = shlex.split(self._commands[file])
        return command[command.index("-o") + 1]

    def _code(self, file):
        if file not in self._symbols:
            done = subprocess.run(["nm", "--defined-only", str(file)], capture_output=True,
                                  text=True, check=True)
            self._symbols[file] = set(_CODE.findall(done.stdout))
        return self._symbols[file]

    def _ninja(self, *arguments):
        return subprocess.run(["ninja", "-C", str(self.directory), *arguments], check=True,
                              capture_output=True, text=True).stdout

    def _run(self, command):
        done = subprocess.run(command, cwd=_ROOT if command[0] == "cmake" else self.directory,
                              capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise Failure((done.stdout + done.stderr)[-4000:])


def _limited():
    resource.setrlimit(resource.RLIMIT_AS, (_MOST_MEMORY, _MOST_MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def _end(process):
    """With all that it has started."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()
