# SPDX-License-Identifier: MIT
"""The private keyring, in each state that a user's keyring can be found in."""

import enum
import os
import signal
import subprocess

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402  (the version has to be named first)

from .waiting import wait_for  # noqa: E402

SERVICE = "com.vantorel.mvp.history-encryption"
ACCOUNT = "history-key-v1"

_NAME = "org.freedesktop.secrets"
_PATH = "/org/freedesktop/secrets"
_WITHOUT_QUESTIONS = "org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface"
_PASSWORD = b"the private desktop's keyring"


class KeyringState(enum.Enum):
    UNLOCKED = "unlocked"
    LOCKED = "locked"            # its collection is there, nobody can unlock it
    NO_COLLECTION = "no default collection"
    ABSENT = "absent"            # no service on the bus, and none that could be started
    STOPPED = "stopped"          # the service owns its name and answers nothing


class Keyring:
    """The keyring daemon of one private session."""

    def __init__(self, processes, bus_call):
        self._processes = processes
        self._call = bus_call
        self._env = None
        self.process = None

    def attach(self, env):
        """For a keyring that another program will be."""
        self._env = env

    def start(self, state, env):
        self._env = env
        if state is KeyringState.ABSENT:
            return
        argv = ["gnome-keyring-daemon", "--foreground", "--components=secrets",
                "--control-directory=" + os.path.join(env["XDG_RUNTIME_DIR"], "keyring")]
        if state is KeyringState.NO_COLLECTION:
            self.process = self._processes.start("gnome-keyring", argv, env)
        else:
            self.process = self._processes.start("gnome-keyring", argv + ["--unlock"], env,
                                                 stdin=subprocess.PIPE)
            self.process.stdin.write(_PASSWORD)
            self.process.stdin.close()
            self.process.stdin = None
        wait_for("the keyring's name on the bus", self._has_owner)
        if state is not KeyringState.NO_COLLECTION:
            wait_for("the default collection to be unlocked", lambda: self.is_locked() is False)
        if state is KeyringState.LOCKED:
            self.lock()
        if state is KeyringState.STOPPED:
            self.suspend()

    def lock(self):
        path = self.default_collection()
        self._call(_NAME, _PATH, "org.freedesktop.Secret.Service.Lock", f"[objectpath '{path}']")
        wait_for("the default collection to be locked", lambda: self.is_locked() is True)

    def suspend(self):
        """The daemon keeps its name and answers nothing any more."""
        os.kill(self.process.pid, signal.SIGSTOP)
        wait_for("the keyring daemon to be stopped", lambda: _state(self.process.pid) == "T")

    def resume(self):
        os.kill(self.process.pid, signal.SIGCONT)

    def stop(self):
        """The daemon ends; its collections stay on the disk."""
        self._processes.stop(self.process)
        wait_for("the keyring's name to be free", lambda: not self._has_owner())

    def unlock(self):
        """Unlocks the default collection without asking anybody, as a log-in does."""
        path = self.default_collection()
        self._with_master_password("UnlockWithMasterPassword", GLib.Variant("o", path))
        wait_for("the default collection to be unlocked", lambda: self.is_locked() is False)

    def create_collection(self, label="made"):
        """Makes a collection that no alias names, without asking anybody."""
        properties = {"org.freedesktop.Secret.Collection.Label": GLib.Variant("s", label)}
        self._with_master_password("CreateWithMasterPassword", GLib.Variant("a{sv}", properties))
        return _PATH + "/collection/" + label

    def make_default(self, path):
        self._call(_NAME, _PATH, "org.freedesktop.Secret.Service.SetAlias", "default", path)
        wait_for("the default collection", lambda: self.default_collection() == path)

    def _with_master_password(self, method, subject):
        """A session lasts as long as the connection that opened it: both calls go over one."""
        bus = Gio.DBusConnection.new_for_address_sync(
            self._env["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)

        def call(interface, name, arguments):
            return bus.call_sync(_NAME, _PATH, interface, name, arguments, None,
                                 Gio.DBusCallFlags.NONE, 10000, None)

        session = call("org.freedesktop.Secret.Service", "OpenSession",
                       GLib.Variant("(sv)", ("plain", GLib.Variant("s", ""))))[1]
        master = GLib.Variant("(oayays)", (session, b"", _PASSWORD, "text/plain"))
        call(_WITHOUT_QUESTIONS, method, GLib.Variant.new_tuple(subject, master))
        bus.close_sync(None)

    def default_collection(self):
        """The object path of the default collection, "/" when there is none."""
        answer = self._call(_NAME, _PATH, "org.freedesktop.Secret.Service.ReadAlias", "default")
        return answer.split("'")[1]

    def is_locked(self):
        path = self.default_collection()
        if path == "/":
            return None
        answer = self._call(_NAME, path, "org.freedesktop.DBus.Properties.Get",
                            "org.freedesktop.Secret.Collection", "Locked")
        return "true" in answer

    def item_count(self):
        """How many items of ours the keyring holds, in locked collections too."""
        answer = self._call(_NAME, _PATH, "org.freedesktop.Secret.Service.SearchItems",
                            f"{{'service': '{SERVICE}', 'account': '{ACCOUNT}'}}")
        return answer.count("/org/freedesktop/secrets/collection/")

    def key(self):
        """The stored key, or nothing."""
        answer = self._processes.run(
            ["secret-tool", "lookup", "service", SERVICE, "account", ACCOUNT], self._env)
        return answer.stdout or None

    def store(self, key, label="Vantorel local history encryption"):
        """Puts a key there as the program would."""
        self._processes.run(
            ["secret-tool", "store", f"--label={label}", "service", SERVICE, "account", ACCOUNT],
            self._env, input=key, stdin=None)
        wait_for("the stored key to be found", lambda: self.key() == key)

    def label(self):
        answer = self._processes.run(
            ["secret-tool", "search", "service", SERVICE, "account", ACCOUNT], self._env)
        for line in answer.stdout.split(b"\n"):
            if line.startswith(b"label = "):
                return line[len(b"label = "):].decode()
        return None

    def _has_owner(self):
        return "true" in self._call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                    "org.freedesktop.DBus.NameHasOwner", _NAME)


def _state(pid):
    with open(f"/proc/{pid}/stat", encoding="utf-8") as stat:
        return stat.read().rsplit(")", 1)[1].split()[0]
