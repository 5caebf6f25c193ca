// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "panel/RowCommands.h"
#include "panel/RowContent.h"

namespace vantorel {

enum class RowAction { pastePlain, togglePin, rename, moveUp, moveDown, remove };

/// One line of a row's context menu; a separator when it has no action.
struct RowMenuLine {
  std::optional<RowAction> action;
  std::string title = {};
  bool enabled = true;
  std::string toolTip = {};
  friend bool operator==(const RowMenuLine&, const RowMenuLine&) = default;
};

/// What can be done with the entry of a row, from the top. Key symbols are not spelled out.
[[nodiscard]] std::vector<RowMenuLine> rowMenu(const RowContent& row);

/// Gives the command that the action stands for, if there is one.
void perform(const RowCommands& commands, RowAction action, Uuid id);

}  // namespace vantorel
