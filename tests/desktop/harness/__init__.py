# SPDX-License-Identifier: MIT
"""A private desktop for tests: its own home, bus, keyring, X server and applications.

Nothing here sleeps in the hope that something has happened meanwhile. Every wait names the
condition it waits for, and its limit is only there to turn a hang into a failure with a name.
"""
