# SPDX-License-Identifier: MIT
"""A session bus that activates only what a test allows it to."""

import os
import shutil

_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <keep_umask/>
  <listen>{listen}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="max_message_size">1000000000</limit>
  <limit name="max_incoming_bytes">1000000000</limit>
  <limit name="max_outgoing_bytes">1000000000</limit>
</busconfig>
"""

# The accessibility bus is started on demand. The keyring is not in the list on purpose: a test
# starts it in the state that it needs, and "absent" has to mean absent.
_ACTIVATABLE = ("org.a11y.Bus.service", "ca.desrt.dconf.service")
_SERVICES = "/usr/share/dbus-1/services"


class SessionBus:
    """The daemon and its address."""

    def __init__(self, processes, runtime_directory):
        self._processes = processes
        self._runtime = runtime_directory
        self.process = None
        self.address = None

    def stop(self):
        self._processes.stop(self.process)

    def start(self, env):
        """Starts it, at the address that it had if it was started before."""
        services = os.path.join(self._runtime, "dbus-services")
        os.makedirs(services, exist_ok=True)
        for service in _ACTIVATABLE:
            source = os.path.join(_SERVICES, service)
            if os.path.exists(source):
                shutil.copy(source, services)
        configuration = os.path.join(self._runtime, "session-bus.conf")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(_CONFIGURATION.format(listen=self.address or f"unix:dir={self._runtime}",
                                             services=services))
        read_end, write_end = os.pipe()
        try:
            self.process = self._processes.start(
                "dbus-daemon",
                ["dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile",
                 f"--print-address={write_end}"],
                env, pass_fds=(write_end,))
        finally:
            os.close(write_end)
        with os.fdopen(read_end, "r", encoding="utf-8") as stream:
            # Without the daemon's own mark, as a login's bus is named: another may take its place.
            self.address = stream.readline().strip().split(",guid=")[0]
        if not self.address:
            raise RuntimeError("the session bus did not start")
