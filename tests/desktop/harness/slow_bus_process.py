# SPDX-License-Identifier: MIT
"""A door to a session bus that lets nobody in at once: slow_bus_process.py SOCKET BUS each|first
SECONDS.

Every connection to SOCKET reaches BUS, but what the bus says first comes late, as on a machine that
is busy with a login: SECONDS after each knock, or with "first" not before SECONDS after the first.
"""

import contextlib
import os
import socket
import sys
import threading
import time


def carry(source, target, late=0.0):
    """Until one side has ended, which ends the other."""
    with contextlib.suppress(OSError):
        while data := source.recv(65536):
            time.sleep(late)
            late = 0.0
            target.sendall(data)
    for end in (source, target):
        with contextlib.suppress(OSError):
            end.shutdown(socket.SHUT_RDWR)


def main(path, bus, whose, seconds):
    door = socket.socket(socket.AF_UNIX)
    door.bind(path + ".new")
    door.listen(64)
    os.rename(path + ".new", path)  # whoever sees it may knock
    first = None
    while True:
        outside, _ = door.accept()
        first = first or time.monotonic()
        late = seconds if whose == "each" else max(0.0, first + seconds - time.monotonic())
        inside = socket.socket(socket.AF_UNIX)
        inside.connect(bus)
        threading.Thread(target=carry, args=(outside, inside), daemon=True).start()
        threading.Thread(target=carry, args=(inside, outside, late), daemon=True).start()


main(*sys.argv[1:4], float(sys.argv[4]))
