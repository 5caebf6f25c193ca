# SPDX-License-Identifier: MIT
"""Office programs and editors of texts and pictures."""

import os
import time

from . import pictures
from .real_program import ASK_AGAIN, START_LIMIT, RealProgram
from .waiting import wait_for

PICTURE_SIZE = (160, 120)


class _SavingEditor(RealProgram):
    """Read from the file that it saves: what is selected is what it pastes, or nobody is told."""

    save_keys = ("Ctrl+s",)

    def text_after_paste(self, expected, limit=10):
        asked = [time.monotonic()]  # not at once: a selection would be pasted over

        def there():
            if time.monotonic() - asked[-1] > ASK_AGAIN:
                asked.append(time.monotonic())
                self.press(self.save_keys)
            return expected in self._saved()

        wait_for(f"{expected!r} in {self.package}", there, limit, self._saved)
        return self._saved()

    def _saved(self):
        with open(self.path, encoding="utf-8", errors="replace") as file:
            return file.read()


class _Office(_SavingEditor):
    rich = ("htmlData", "rtfData")
    kind = ""
    body = ""
    _DOCUMENT = (
        '<?xml version="1.0" encoding="UTF-8"?><office:document '
        'xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" '
        'xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" '
        'xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0" office:version="1.3" '
        'office:mimetype="application/vnd.oasis.opendocument.{mime}"><office:body>'
        '<office:{mime}>{body}</office:{mime}></office:body></office:document>')

    def contents(self, text):
        return self._DOCUMENT.format(mime=self.kind, body=self.body.format(text)).encode()

    def command(self):
        profile = os.path.dirname(self.case.path("office", "x"))
        return ["soffice", "--nologo", "--norestore", "--nofirststartwizard", "--nolockcheck",
                f"-env:UserInstallation=file://{profile}", self.path]

    def environment(self):
        return {"SAL_USE_VCLPLUGIN": "gtk3"}


class Writer(_Office):
    package = "libreoffice-writer"
    window_class = "libreoffice-writer"
    source = "libreoffice-writer"
    suffix = "fodt"
    kind = "text"
    body = "<text:p>{}</text:p>"


class Calc(_Office):
    package = "libreoffice-calc"
    window_class = "libreoffice-calc"
    source = "libreoffice-calc"
    suffix = "fods"
    kind = "spreadsheet"
    body = ('<table:table table:name="one"><table:table-row><table:table-cell '
            'office:value-type="string"><text:p>{}</text:p></table:table-cell></table:table-row>'
            '</table:table>')
    end_keys = ("Ctrl+Home", "Down")


class Gimp(RealProgram):
    """An image editor: it holds pictures, and copies what is visible."""

    package = "gimp"
    window_class = "gimp"
    source = "gimp"
    suffix = "png"
    copy_keys = ("Ctrl+Shift+c",)
    end_keys = ()

    def contents(self, text):
        return pictures.png(*PICTURE_SIZE)

    def command(self):
        return ["gimp", "--no-splash", "--no-data", "--new-instance", self.path]

    def wait_until_ready(self):
        self.desktop.windows.activate(
            self.desktop.windows.wait_for_title_containing("(imported)", START_LIMIT))


class GnomeTextEditor(RealProgram):
    package = "gnome-text-editor"
    window_class = "gnome-text-editor"
    source = "org.gnome.TextEditor"

    def command(self):
        return ["gnome-text-editor", "--standalone", self.path]

    def environment(self):
        return {"GSK_RENDERER": "cairo"}


class FocusWriter(_SavingEditor):
    package = "focuswriter"
    window_class = "focuswriter"
    source = "focuswriter"
    rich = ("htmlData", "rtfData")

    def command(self):
        return ["focuswriter", self.path]


class Mousepad(RealProgram):
    package = "mousepad"
    window_class = "mousepad"
    source = "org.xfce.mousepad"

    def command(self):
        return ["mousepad", "--disable-server", self.path]


class FeatherPad(_SavingEditor):
    package = "featherpad"
    window_class = "featherpad"
    source = "featherpad"

    def command(self):
        return ["featherpad", "--standalone", self.path]


class Emacs(_SavingEditor):
    package = "emacs-gtk"
    window_class = "emacs"
    source = "emacs"
    copy_keys = ("Ctrl+x", "h", "Alt+w")
    save_keys = ("Ctrl+x", "Ctrl+s")
    end_keys = ("Alt+Shift+.",)

    def command(self):
        return ["emacs", "-Q", self.path]


class GVim(_SavingEditor):
    package = "vim-gtk3"
    window_class = "gvim"
    source = "gvim"

    def command(self):
        return ["gvim", "-f", self.path]

    # Typed after Escape.
    copy_keys = 'ggVG"+y'
    end_keys = "GA"
    save_keys = ":w\n"

    def press(self, keys):
        self.desktop.keyboard.tap("Escape")
        self.desktop.keyboard.type(keys)
