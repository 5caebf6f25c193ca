# SPDX-License-Identifier: MIT
"""Processes that never outlive the test that started them."""

import ctypes
import os
import secrets
import signal
import subprocess

from .waiting import wait_for

_LIBC = ctypes.CDLL(None, use_errno=True)
_PR_SET_PDEATHSIG = 1
_TOKEN = "VANTOREL_PRIVATE_DESKTOP"


def _die_with_parent():
    _LIBC.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL, 0, 0, 0)


class Processes:
    """Starts processes in groups of their own, keeps their output, ends every one of them.

    A process that detaches itself (a daemon, a clipboard tool) is found by the token which it
    inherits in its environment, so nothing is ever ended by its name.
    """

    def __init__(self, log_directory):
        self.log_directory = log_directory
        self.token = secrets.token_hex(8)
        self._started = []

    def environment(self, base):
        return {**base, _TOKEN: self.token}

    def start(self, name, argv, env, **options):
        """Starts `argv`; its output goes to a log named after `name` unless `options` say otherwise."""
        log = open(os.path.join(self.log_directory, f"{name}.log"), "ab")
        options.setdefault("stdin", subprocess.DEVNULL)
        options.setdefault("stdout", log)
        options.setdefault("stderr", log)
        process = subprocess.Popen(argv, env=self.environment(env), start_new_session=True,
                                   preexec_fn=_die_with_parent, **options)
        log.close()
        process.display_name = name
        self._started.append(process)
        return process

    def run(self, argv, env, limit=30, **options):
        """Runs `argv` to its end and answers the completed process."""
        options.setdefault("stdin", subprocess.DEVNULL)
        options.setdefault("capture_output", True)
        return subprocess.run(argv, env=self.environment(env), timeout=limit, check=False, **options)

    def stop(self, process, sign=signal.SIGTERM, limit=5):
        """Ends one process and its group; answers its exit status."""
        if process.poll() is None:
            self._signal_group(process.pid, sign)
            try:
                process.wait(limit)
            except subprocess.TimeoutExpired:
                self._signal_group(process.pid, signal.SIGKILL)
                process.wait(limit)
        self._close(process)
        return process.returncode

    def stop_all(self):
        for process in reversed(self._started):
            if process.poll() is None:
                self._signal_group(process.pid, signal.SIGKILL)
        for process in self._started:
            process.wait(10)
            self._close(process)
        self._started.clear()
        wait_for("the private desktop's last process to end", self._none_left, limit=10)

    def stragglers(self):
        """Living processes that carry our token, whoever started them."""
        found = []
        mine = f"{_TOKEN}={self.token}".encode()
        for entry in os.listdir("/proc"):
            if not entry.isdigit() or int(entry) == os.getpid():
                continue
            try:
                with open(f"/proc/{entry}/environ", "rb") as environment:
                    if mine in environment.read().split(b"\0"):
                        found.append(int(entry))
            except OSError:
                continue
        return found

    def _none_left(self):
        left = self.stragglers()
        for pid in left:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                continue
        return not left

    @staticmethod
    def _signal_group(pid, sign):
        try:
            os.killpg(pid, sign)
        except ProcessLookupError:
            pass

    @staticmethod
    def _close(process):
        for stream in (process.stdin, process.stdout, process.stderr):
            if stream is not None:
                try:
                    stream.close()
                except BrokenPipeError:
                    pass
