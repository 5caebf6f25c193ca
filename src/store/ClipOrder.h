// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/ClipItem.h"

namespace vantorel {

/// The order of the history: pins first, by their numbers, then the newest first. True when `a` is
/// listed before `b`; entries that are equal in this order keep their places in a stable sort.
[[nodiscard]] bool itemSort(const ClipItem& a, const ClipItem& b);

/// Numbers the pins 0, 1, 2, ... as they stand in the list.
void numberPins(std::vector<ClipItem>& items);

[[nodiscard]] std::size_t pinnedCount(const std::vector<ClipItem>& items);

/// What a pin is called when its user says `name`: without white space around it, and cut at 80
/// characters; absent when nothing is left.
[[nodiscard]] std::optional<std::string> pinName(std::string_view name);

/// The list with the pin `id` moved next to the pin `relativeTo`: pins first, then everything else
/// as it stood. Empty when nothing is to be moved: both must be pinned, and differ.
[[nodiscard]] std::optional<std::vector<ClipItem>> withMovedPin(const std::vector<ClipItem>& items,
                                                                Uuid id, Uuid relativeTo,
                                                                bool before);

}  // namespace vantorel
