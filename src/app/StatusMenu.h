// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/Trouble.h"
#include "platform/LoginItem.h"
#include "platform/MenuRow.h"
#include "platform/Workspace.h"

namespace vantorel {

/// Everything that the menu depends on, as it is at one moment.
struct StatusMenuState {
  bool isLocked = false;  // so the desktop says; nothing opens then
  bool isPaused = false;
  bool ignoresPasswordManagers = false;
  std::optional<RunningApplication> lastPasteTarget = std::nullopt;
  /// The names of the excluded applications by identifier; an application that is not installed is
  /// called by its identifier.
  std::map<std::string, std::string> excludedApps = {};
  LoginItem::Status launchAtLogin = LoginItem::Status::disabled;
  /// Why no application can be excluded here; empty where they can.
  std::string sourcesUnknown = {};
};

/// The action of a row is the name of its command, and its represented object the argument.
[[nodiscard]] std::vector<MenuRow> statusMenuRows(const StatusMenuState& state);

/// A pause is the user's own doing, and goes before a trouble.
[[nodiscard]] std::string_view statusToolTip(bool isPaused, Trouble trouble = Trouble::none);

}  // namespace vantorel
