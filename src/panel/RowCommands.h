// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include "store/ClipItem.h"

namespace vantorel {

enum class DropPlace { before, after };

/// What rows ask of whoever owns the list; each names the entry of the row. Any may be empty.
struct RowCommands {
  /// The entry itself, for its preview; absent when it is not shown any more.
  std::function<std::optional<ClipItem>(Uuid id)> entry;
  std::function<void(Uuid id)> onChoose;
  std::function<void(Uuid id)> onPastePlain;
  std::function<void(Uuid id)> onDelete;
  std::function<void(Uuid id)> onTogglePin;
  std::function<void(Uuid id)> onRename;
  std::function<void(Uuid id, int step)> onMovePin;
  /// The pinned row `dragged` was dropped on the pinned row `onto`.
  std::function<void(Uuid dragged, Uuid onto, DropPlace place)> onDropPin;
};

}  // namespace vantorel
