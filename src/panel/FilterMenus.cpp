// SPDX-License-Identifier: MIT
#include "panel/FilterMenus.h"

#include <algorithm>

#include "chrome/TextPresentation.h"
#include "text/NameOrder.h"

namespace vantorel::FilterMenus {
namespace {

// Names come from other programs and stand in one line of a menu.
constexpr std::size_t maxNameCharacters = 60;

std::string nameOf(const ClipItem& item) {
  const auto name =
      TextPresentation::singleLine(item.sourceAppName.value_or(std::string()), maxNameCharacters);
  return name.empty() ? "Unknown" : name;
}

}  // namespace

std::string_view label(ClipTypeFilter type) {
  switch (type) {
    case ClipTypeFilter::all:
      return "All types";
    case ClipTypeFilter::text:
      return "Text";
    case ClipTypeFilter::image:
      return "Images";
    case ClipTypeFilter::files:
      return "Files";
    case ClipTypeFilter::video:
      break;
  }
  return "Videos";
}

std::vector<TypeRow> typeRows(ClipTypeFilter selected) {
  std::vector<TypeRow> rows;
  rows.reserve(allClipTypeFilters.size());
  for (const auto type : allClipTypeFilters) rows.push_back({type, label(type), type == selected});
  return rows;
}

std::vector<Source> sources(const std::vector<ClipItem>& items) {
  std::vector<Source> gathered;
  for (const auto& item : items) {
    const auto key = sourceKey(item);
    const auto known = std::find_if(gathered.begin(), gathered.end(),
                                    [&](const Source& source) { return source.key == key; });
    if (known == gathered.end()) {
      gathered.push_back({key, nameOf(item)});
    } else {
      known->name = nameOf(item);
    }
  }
  const NameOrder before;
  std::stable_sort(gathered.begin(), gathered.end(),
                   [&](const Source& a, const Source& b) { return before(a.name, b.name); });
  return gathered;
}

std::string sourceName(const std::vector<ClipItem>& items,
                       const std::optional<std::string>& selected) {
  if (!selected) return std::string(allSources);
  const auto first = std::find_if(items.begin(), items.end(), [&](const ClipItem& item) {
    return sourceKey(item) == *selected;
  });
  return first == items.end() ? "Unknown" : nameOf(*first);
}

ButtonState typeButton(ClipTypeFilter selected) {
  const bool active = selected != ClipTypeFilter::all;
  const std::string name(label(selected));
  return {active ? "line.3.horizontal.decrease.circle.fill" : "line.3.horizontal.decrease", active,
          name, "Type: " + name};
}

ButtonState sourceButton(const std::vector<ClipItem>& items,
                         const std::optional<std::string>& selected) {
  const auto name = sourceName(items, selected);
  return {selected ? "app.fill" : "app", selected.has_value(), name, "App: " + name};
}

}  // namespace vantorel::FilterMenus
