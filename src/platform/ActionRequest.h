// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vantorel {

/// What becomes of a request while nobody runs: the program starts to do it, or it counts as done,
/// as quitting does.
enum class IfNobodyRuns { start, end };

/// What a start of the program, or another program, asks of the running instance: one of the
/// actions that it offers, with the text that goes with it, if any. Without a name it is asked to
/// show itself ("reopen the application").
struct ActionRequest {
  std::string action = {};
  std::string argument = {};
  IfNobodyRuns ifNobodyRuns = IfNobodyRuns::start;

  friend bool operator==(const ActionRequest&, const ActionRequest&) = default;
};

/// An action as other programs may ask for it.
struct OfferedAction {
  std::string name = {};
  bool takesText = false;  // which must not be missing then
  bool isAwaited = false;  // who asks for it is answered when it was done, not when it was heard
};

}  // namespace vantorel
