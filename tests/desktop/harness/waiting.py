# SPDX-License-Identifier: MIT
"""Waiting for named conditions."""

import os
import time

# A slow machine, or a program under a sanitizer, asks for more patience; no test becomes laxer by it.
PATIENCE = float(os.environ.get("VANTOREL_TEST_PATIENCE", "1"))
POLL_SECONDS = 0.005


class ConditionNotMet(AssertionError):
    """A named condition did not become true within its limit."""


def wait_for(what, condition, limit=20.0, describe=None):
    """Polls `condition` until it is true and answers its value; fails with `what` at the limit.

    `describe` is asked for the last state seen, so that the failure says what was there instead.
    """
    deadline = time.monotonic() + limit * PATIENCE
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() >= deadline:
            seen = f"; instead: {describe()}" if describe else ""
            raise ConditionNotMet(f"waited {limit * PATIENCE:g} s for {what}{seen}")
        time.sleep(POLL_SECONDS)


def stays_true(what, condition, seconds):
    """Fails with `what` as soon as `condition` is false within the next `seconds`.

    For the absence of an effect there is no event to wait for: only a span to watch.
    """
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if not condition():
            raise ConditionNotMet(f"{what} did not stay true for {seconds:g} s")
        time.sleep(POLL_SECONDS)
