// SPDX-License-Identifier: MIT
#include "store/ClipSearchFilter.h"

#include <algorithm>

#include "store/CapturedEntries.h"
#include "text/CaseFolding.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

/// The source key without a copy.
std::string_view sourceOf(const ClipItem& item) {
  if (item.sourceBundleIdentifier) return *item.sourceBundleIdentifier;
  return item.sourceAppName ? std::string_view(*item.sourceAppName) : std::string_view();
}

}  // namespace

std::string_view rawValue(ClipTypeFilter filter) {
  switch (filter) {
    case ClipTypeFilter::all:
      return "all";
    case ClipTypeFilter::text:
      return "text";
    case ClipTypeFilter::image:
      return "image";
    case ClipTypeFilter::files:
      return "files";
    case ClipTypeFilter::video:
      return "video";
  }
  return {};
}

std::optional<ClipTypeFilter> clipTypeFilter(std::string_view rawValue) {
  const auto found =
      std::find_if(allClipTypeFilters.begin(), allClipTypeFilters.end(),
                   [&](ClipTypeFilter filter) { return vantorel::rawValue(filter) == rawValue; });
  return found != allClipTypeFilters.end() ? std::optional(*found) : std::nullopt;
}

bool includes(ClipTypeFilter filter, const ClipItem& item) {
  switch (filter) {
    case ClipTypeFilter::all:
      return true;
    case ClipTypeFilter::text:
      return item.kind == ClipKind::text;
    case ClipTypeFilter::image:
      return item.kind == ClipKind::image;
    case ClipTypeFilter::files:
      return item.kind == ClipKind::files && !isVideo(item);
    case ClipTypeFilter::video:
      return isVideo(item);
  }
  return false;
}

std::string sourceKey(const ClipItem& item) { return std::string(sourceOf(item)); }

std::string searchedDetails(const ClipItem& item) {
  std::string details;
  const auto add = [&](std::string_view part) {
    details += ' ';
    details += part;
  };
  add(item.preview);
  add(item.title);
  add(item.customName.value_or(""));
  add(item.sourceAppName.value_or(""));
  if (item.filePaths.empty()) add("");
  for (const auto& path : item.filePaths) add(path);
  add(item.recognizedText.value_or(""));
  return details;
}

bool ClipSearchFilter::includes(const ClipItem& item) const {
  if (!includesTypeAndSource(item)) return false;
  const auto needle = foldedForSearch(trimmed(query));
  if (needle.empty()) return true;
  const auto searched = (item.text ? item.text->get() : std::string()) + searchedDetails(item);
  return containsFolded(foldedForSearch(searched), needle);
}

bool ClipSearchFilter::includesTypeAndSource(const ClipItem& item) const {
  return vantorel::includes(type, item) && (!sourceId || *sourceId == sourceOf(item));
}

}  // namespace vantorel
