# SPDX-License-Identifier: MIT
"""The sealed history, read from outside with the key that the keyring holds."""

import json
import os
import stat
from datetime import datetime, timedelta, timezone

from cryptography.exceptions import InvalidTag
from cryptography.hazmat.primitives.ciphers.aead import AESGCM

MAGIC = b"VNTL1"
_NONCE = 12
_TAG = 16


def seal(key, plaintext):
    """An envelope as the program writes it."""
    nonce = os.urandom(_NONCE)
    return MAGIC + nonce + AESGCM(key).encrypt(nonce, plaintext, MAGIC)


def unseal(key, envelope):
    """The plaintext of an envelope; fails on anything that is not one under this key."""
    if envelope[:5] != MAGIC or len(envelope) < 5 + _NONCE + _TAG:
        raise ValueError("not an envelope")
    return AESGCM(key).decrypt(envelope[5:5 + _NONCE], envelope[5 + _NONCE:], MAGIC)


class History:
    """The history's directory on disk."""

    def __init__(self, data_home, key):
        self.directory = os.path.join(data_home, "ClipHistory")
        self.assets = os.path.join(self.directory, "Assets")
        self.file = os.path.join(self.directory, "history.vntl")
        self.legacy_file = os.path.join(self.directory, "history.json")
        self._key = key

    def key(self):
        key = self._key()
        if key is None:
            raise AssertionError("the keyring holds no key")
        return key

    def exists(self):
        return os.path.exists(self.file)

    def raw(self):
        """The file's bytes as they are on disk."""
        with open(self.file, "rb") as file:
            return file.read()

    def json(self):
        """The opened file's text."""
        return unseal(self.key(), self.raw())

    def items(self):
        """The entries, in the file's order; none when there is no file."""
        if not self.exists():
            return []
        return json.loads(self.json())

    def texts(self):
        return [item["text"] for item in self.items() if item["kind"] == "text"]

    def kinds(self):
        return [item["kind"] for item in self.items()]

    def asset(self, item):
        """The opened bytes of an image entry."""
        with open(os.path.join(self.assets, item["assetFilename"]), "rb") as file:
            return unseal(self.key(), file.read())

    def write(self, items, key=None):
        """Seals entries as the program does, for a test that begins with a history."""
        self.write_raw(seal(key or self.key(), json.dumps(items).encode()))

    def write_raw(self, data):
        os.makedirs(self.assets, mode=0o700, exist_ok=True)
        with open(self.file, "wb") as file:
            file.write(data)
        os.chmod(self.file, 0o600)

    def opens(self):
        """Whether the file as it is now can be opened and read."""
        try:
            self.items()
        except (InvalidTag, ValueError, OSError):
            return False
        return True

    def modes(self):
        """Permissions by path below the history's directory, the directory itself as "."."""
        found = {".": _mode(self.directory)}
        for folder, directories, files in os.walk(self.directory):
            for name in directories + files:
                path = os.path.join(folder, name)
                found[os.path.relpath(path, self.directory)] = _mode(path)
        return found


def text_item(text, number=0, **more):
    """A text entry with made-up but sound fields; `number` makes later ones older."""
    item = {
        "id": f"00000000-0000-4000-8000-{number:012X}",
        "kind": "text",
        "createdAt": _date(number),
        "title": "Text",
        "preview": text.strip()[:500],
        "text": text,
        "filePaths": [],
        "isPinned": False,
    }
    item.update(more)
    return item


def image_item(asset, number=0):
    """An image entry of a file in the assets directory; `number` makes later ones older."""
    item = text_item("", number, kind="image", title="Image", preview="64 × 48 px",
                     assetFilename=asset)
    del item["text"]
    return item


def files_holding(directory, needle):
    """The files below a directory that contain some bytes."""
    found = []
    for folder, _, files in os.walk(directory):
        for name in files:
            path = os.path.join(folder, name)
            try:
                with open(path, "rb") as file:
                    if needle in file.read():
                        found.append(path)
            except OSError:
                continue
    return found


def _date(seconds_ago):
    moment = datetime.now(timezone.utc) - timedelta(seconds=seconds_ago)
    return moment.strftime("%Y-%m-%dT%H:%M:%SZ")


def _mode(path):
    return stat.S_IMODE(os.lstat(path).st_mode)
