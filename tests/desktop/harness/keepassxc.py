# SPDX-License-Identifier: MIT
"""KeePassXC as the keyring of a private desktop: started by hand, after everything else."""

import base64
import os
import subprocess
import uuid

_PASSWORD = b"the private database\n"
_GROUP = uuid.UUID("6b8b4567-327b-43c6-a436-30d2d3a81c11")

# A database says itself which of its groups other programs see.
_CONTENTS = f"""<?xml version="1.0" encoding="utf-8" standalone="yes"?>
<KeePassFile>
  <Meta><CustomData><Item>
    <Key>FDO_SECRETS_EXPOSED_GROUP</Key><Value>{{{_GROUP}}}</Value>
  </Item></CustomData></Meta>
  <Root><Group>
    <UUID>{base64.b64encode(_GROUP.bytes).decode()}</UUID><Name>Root</Name>
  </Group></Root>
</KeePassFile>
"""

_SETTINGS = """[General]
ConfigVersion=2
UpdateCheckMessageShown=true
[GUI]
CheckForUpdates=false
[FdoSecrets]
Enabled=true
ShowNotification=false
ConfirmAccessItem=false
ConfirmDeleteItem=false
"""


class KeePassXc:
    def __init__(self, desktop):
        self._desktop = desktop
        self._database = desktop.path("secrets.kdbx")
        self.process = None
        settings = os.path.join(desktop.env["XDG_CONFIG_HOME"], "keepassxc", "keepassxc.ini")
        os.makedirs(os.path.dirname(settings), exist_ok=True)
        with open(settings, "w", encoding="utf-8") as file:
            file.write(_SETTINGS)
        contents = desktop.path("secrets.xml")
        with open(contents, "w", encoding="utf-8") as file:
            file.write(_CONTENTS)
        desktop.run(["keepassxc-cli", "import", "--set-password", contents, self._database],
                    stdin=None, input=_PASSWORD * 2).check_returncode()

    def start(self):
        """Opens the database, as its user does; no window shows on the desktop."""
        self.process = self._desktop.start(
            "keepassxc", ["keepassxc", "--pw-stdin", self._database],
            {"QT_QPA_PLATFORM": "offscreen"}, stdin=subprocess.PIPE)
        self.process.stdin.write(_PASSWORD)
        self.process.stdin.close()
        self.process.stdin = None

    def stop(self):
        self._desktop.processes.stop(self.process)
