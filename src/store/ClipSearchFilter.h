// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "store/ClipItem.h"

namespace vantorel {

enum class ClipTypeFilter { all, text, image, files, video };

inline constexpr std::array allClipTypeFilters = {ClipTypeFilter::all, ClipTypeFilter::text,
                                                  ClipTypeFilter::image, ClipTypeFilter::files,
                                                  ClipTypeFilter::video};

[[nodiscard]] std::string_view rawValue(ClipTypeFilter filter);
[[nodiscard]] std::optional<ClipTypeFilter> clipTypeFilter(std::string_view rawValue);
[[nodiscard]] bool includes(ClipTypeFilter filter, const ClipItem& item);

/// An entry's source application: its bundle identifier, else its name, else the empty string.
[[nodiscard]] std::string sourceKey(const ClipItem& item);

/// What an entry is searched by: its text, if it has one, followed by this.
[[nodiscard]] std::string searchedDetails(const ClipItem& item);

/// What the panel shows: one substring of what an entry says, one type, one source.
struct ClipSearchFilter {
  std::string query = {};  // as typed
  ClipTypeFilter type = ClipTypeFilter::all;
  std::optional<std::string> sourceId = {};  // a source key; absent: every source

  /// Folds the entry's text afresh each time; a list that is searched key by key goes through
  /// `ClipSearchIndex`.
  [[nodiscard]] bool includes(const ClipItem& item) const;

  /// The part of `includes` that does not look at the query.
  [[nodiscard]] bool includesTypeAndSource(const ClipItem& item) const;
};

}  // namespace vantorel
