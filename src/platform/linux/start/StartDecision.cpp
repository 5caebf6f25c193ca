// SPDX-License-Identifier: MIT
#include "platform/linux/start/StartDecision.h"

namespace vantorel {
namespace {

/// Each round needs another program to come and go in between.
constexpr int maximumRounds = 5;

StartDecision finished() {
  return {.course = StartDecision::Course::exit, .exitStatus = 0, .message = {}};
}

StartDecision failed(const char* message) {
  return {.course = StartDecision::Course::exit, .exitStatus = 1, .message = message};
}

StartDecision refused() {
  return failed("vantorel: the running Vantorel did not understand; quit it and start again.");
}

StartDecision decideByLock(const StartSteps& steps) {
  if (steps.lock() == InstanceLock::Result::heldByAnother) {
    return failed("vantorel: already running, and no session bus reaches it from here.");
  }
  return {};
}

}  // namespace

StartDecision decideBeforeToolkit(ForwardResult answer, IfNobodyRuns ifNobodyRuns) {
  if (answer == ForwardResult::forwarded) return finished();
  if (answer == ForwardResult::refused) return refused();
  if (ifNobodyRuns == IfNobodyRuns::start) return {};
  if (answer == ForwardResult::notRunning) return finished();
  return failed("vantorel: there is no session bus to reach a running Vantorel by.");
}

StartDecision decideWithToolkit(const StartSteps& steps) {
  for (int round = 0; round < maximumRounds; ++round) {
    const NameClaim claim = steps.claim();
    // Whoever lost the bus, or has another one, does not have the name but may have the history.
    if (claim != NameClaim::taken) return decideByLock(steps);
    const ForwardResult result = steps.forward();
    if (result == ForwardResult::forwarded) return finished();
    if (result == ForwardResult::refused) return refused();
    // Gone again, or the bus is: the next claim tells.
  }
  return failed("vantorel: could not find out whether Vantorel is running.");
}

}  // namespace vantorel
