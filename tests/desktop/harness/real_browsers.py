# SPDX-License-Identifier: MIT
"""Browsers, and the mail program that is built like one."""

import os
import time

from .real_program import ASK_AGAIN, START_LIMIT, RealProgram
from .waiting import wait_for


class _Browser(RealProgram):
    suffix = "html"
    rich = ("htmlData",)

    def contents(self, text):
        # The title tells what stands in the field, from outside and at any time.
        return (f"<!doctype html><meta charset=utf-8><title>loading</title>"
                f"<div id=field contenteditable autofocus>{text.replace(' ', ' <b>', 1)}</b></div>"
                f"<script>onload=()=>{{field.focus();document.title='loaded';}}</script>").encode()

    def wait_until_ready(self):
        self.desktop.windows.wait_for_title_containing("loaded", START_LIMIT)


class Firefox(_Browser):
    package = "firefox-esr"
    window_class = "firefox-esr"
    source = "firefox-esr"

    def before_start(self):
        self.profile = os.path.dirname(self.case.path("firefox", "x"))
        self.case.file("firefox", "user.js", contents="".join(
            f'user_pref("{name}", {value});\n' for name, value in (
                ("browser.shell.checkDefaultBrowser", "false"),
                ("browser.aboutwelcome.enabled", "false"),
                ("browser.startup.homepage_override.mstone", '"ignore"'),
                ("datareporting.policy.dataSubmissionPolicyBypassNotification", "true"),
                ("browser.sessionstore.resume_from_crash", "false"),
                ("app.normandy.enabled", "false"),
                ("termsofuse.acceptedVersion", "999"),
                ("termsofuse.bypassNotification", "true"),
            )).encode())

    def command(self):
        return ["firefox-esr", "--no-remote", "--profile", self.profile, f"file://{self.path}"]


class Chromium(_Browser):
    package = "chromium"
    window_class = "chromium"
    source = "chromium"

    def command(self):
        # Nobody but a container's or a test's root runs it as root, without its sandbox.
        return ["chromium", "--no-sandbox", "--no-first-run", "--no-default-browser-check",
                "--password-store=basic", "--disable-gpu", "--disable-background-networking",
                f"--user-data-dir={os.path.dirname(self.case.path('chromium', 'x'))}",
                f"file://{self.path}"]


class Thunderbird(RealProgram):
    """The window in which a message is written, of a profile with one made-up account."""

    package = "thunderbird"
    window_class = "Mail"
    source = "thunderbird"
    suffix = "html"
    rich = ("htmlData",)

    def before_start(self):
        self.profile = os.path.dirname(self.case.path("thunderbird", "x"))
        self.case.file("thunderbird", "user.js", contents="".join(
            f'user_pref("{name}", {value});\n' for name, value in (
                ("mail.accountmanager.accounts", '"account1"'),
                ("mail.accountmanager.defaultaccount", '"account1"'),
                ("mail.account.account1.server", '"server1"'),
                ("mail.account.account1.identities", '"id1"'),
                ("mail.identity.id1.useremail", '"nobody@example.org"'),
                ("mail.identity.id1.fullName", '"Nobody"'),
                ("mail.identity.id1.valid", "true"),
                ("mail.identity.id1.smtpServer", '"smtp1"'),
                ("mail.server.server1.type", '"none"'),
                ("mail.server.server1.hostname", '"Local Folders"'),
                ("mail.server.server1.userName", '"nobody"'),
                ("mail.smtpservers", '"smtp1"'),
                ("mail.smtpserver.smtp1.hostname", '"localhost"'),
                ("mail.provider.suppress_dialog_on_startup", "true"),
                ("mail.shell.checkDefaultClient", "false"),
                ("mailnews.start_page.enabled", "false"),
                ("app.donation.eoy.version.viewed", "999"),
                ("datareporting.policy.dataSubmissionPolicyBypassNotification", "true"),
            )).encode())

    def contents(self, text):
        self.text = text
        return b""

    def command(self):
        return ["thunderbird", "--profile", self.profile]

    def wait_until_ready(self):
        self.desktop.windows.wait_for_title_containing("Local Folders", START_LIMIT)
        asked = []

        def writing():
            if not asked or time.monotonic() - asked[-1] > 5:
                asked.append(time.monotonic())
                self.desktop.keyboard.chord("Ctrl+n")
            return self._titled("Write: ")

        self.message = wait_for("a window to write in", writing, 30, self.desktop.windows.titles)[0]
        self.desktop.windows.activate(self.message)
        # What is typed before it has loaded is lost: so the first field is tried until it copies.
        asked.clear()

        def takes_keys():
            if not asked or time.monotonic() - asked[-1] > ASK_AGAIN:
                asked.append(time.monotonic())
                self.desktop.keyboard.type("x")
                self.press(("Ctrl+a", "Ctrl+x"))
            return self.owns_the_clipboard()

        wait_for("the first field to take keys", takes_keys, 30)
        self.press(("Tab", "Tab"))
        self.desktop.keyboard.type(self.text)

    def close(self):
        self.desktop.windows.close(self.message)
        # It asks what becomes of the draft.
        question = wait_for("the question", lambda: self._titled("Save Message"), 10,
                            self.desktop.windows.titles)[0]
        self.desktop.windows.wait_active(question)
        self.desktop.keyboard.chord("Alt+d")
        self.desktop.windows.wait_window_gone(self.message)
        super().close()

    def _titled(self, part):
        return [window for window in self.desktop.windows.all()
                if part in (self.desktop.windows.title(window) or "")]
