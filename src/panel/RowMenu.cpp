// SPDX-License-Identifier: MIT
#include "panel/RowMenu.h"

namespace vantorel {

std::vector<RowMenuLine> rowMenu(const RowContent& row) {
  std::vector<RowMenuLine> lines;
  if (row.kind == ClipKind::text) lines.push_back({RowAction::pastePlain, "Paste as Plain Text"});
  lines.push_back({RowAction::togglePin, pinTitle(row), row.canPin, pinToolTip(row)});
  if (row.pinned) {
    lines.push_back({RowAction::rename, "Rename…"});
    lines.push_back({RowAction::moveUp, "Move Up"});
    lines.push_back({RowAction::moveDown, "Move Down"});
  }
  lines.push_back({std::nullopt});
  lines.push_back({RowAction::remove, "Delete"});
  return lines;
}

void perform(const RowCommands& commands, RowAction action, Uuid id) {
  const auto call = [&id](const std::function<void(Uuid)>& command) {
    if (command) command(id);
  };
  switch (action) {
    case RowAction::pastePlain:
      return call(commands.onPastePlain);
    case RowAction::togglePin:
      return call(commands.onTogglePin);
    case RowAction::rename:
      return call(commands.onRename);
    case RowAction::moveUp:
      if (commands.onMovePin) commands.onMovePin(id, -1);
      return;
    case RowAction::moveDown:
      if (commands.onMovePin) commands.onMovePin(id, 1);
      return;
    case RowAction::remove:
      return call(commands.onDelete);
  }
}

}  // namespace vantorel
