// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/ClipItem.h"
#include "store/ClipSearchFilter.h"

/// What the panel's two filter buttons and their menus say. UTF-8.
namespace vantorel::FilterMenus {

struct TypeRow {
  ClipTypeFilter type = ClipTypeFilter::all;
  std::string_view title;
  bool on = false;
  friend bool operator==(const TypeRow&, const TypeRow&) = default;
};

/// A source that the list can be narrowed to: its key and the name it goes by.
struct Source {
  std::string key;
  std::string name;
  friend bool operator==(const Source&, const Source&) = default;
};

/// What a filter button shows. An active filter is drawn in the accent colour.
struct ButtonState {
  std::string_view symbol;
  bool active = false;
  std::string value;  // what a screen reader says after the button's name
  std::string toolTip;
  friend bool operator==(const ButtonState&, const ButtonState&) = default;
};

inline constexpr std::string_view typeButtonName = "Filter by type";
inline constexpr std::string_view sourceButtonName = "Filter by app";
inline constexpr std::string_view allSources = "All apps";

[[nodiscard]] std::string_view label(ClipTypeFilter type);

/// One row for each type, in the order of `allClipTypeFilters`.
[[nodiscard]] std::vector<TypeRow> typeRows(ClipTypeFilter selected);

/// Every source in the history by name, in the order that a reader expects; one that occurs under
/// several names goes by the name of its last entry.
[[nodiscard]] std::vector<Source> sources(const std::vector<ClipItem>& items);

/// What the user calls the chosen source: by its first entry, or "Unknown" when none is left.
[[nodiscard]] std::string sourceName(const std::vector<ClipItem>& items,
                                     const std::optional<std::string>& selected);

[[nodiscard]] ButtonState typeButton(ClipTypeFilter selected);
[[nodiscard]] ButtonState sourceButton(const std::vector<ClipItem>& items,
                                       const std::optional<std::string>& selected);

}  // namespace vantorel::FilterMenus
