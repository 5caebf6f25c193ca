// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/Date.h"
#include "security/SecureStorage.h"
#include "store/AssetFolder.h"
#include "store/CapturedEntries.h"
#include "store/ClipItem.h"
#include "store/ClipStoreLimits.h"

namespace vantorel {

/// An entry of another history. One of an image has no asset yet, but its picture.
struct ImportedClip {
  ClipItem item;
  std::optional<EncodedImage> picture;
};

/// The entries with their pictures stored, each under a new name, or under the one that `nameOf`
/// knows for its hash. Absent when one could not be stored, after which none is left.
[[nodiscard]] std::optional<std::vector<ClipItem>> withStoredPictures(
    const std::vector<ImportedClip>& clips, const AssetFolder& assets, const SecureStorage& storage,
    const std::function<std::optional<std::string>(const std::string& hash)>& nameOf);

/// What a history may hold, and the files of its pictures, apart from those to be `discarded`.
struct HistoryRoom {
  Date now;
  const ClipStoreLimits& limits;
  std::size_t maxPins;
  const AssetFolder& assets;
  std::set<std::string> discarded;
};

/// The clips that would be left of all of them beside `items`. Nothing is written.
[[nodiscard]] std::vector<ImportedClip> withinRoom(const std::vector<ImportedClip>& clips,
                                                   const std::vector<ClipItem>& items,
                                                   const HistoryRoom& room);

/// The clips whose contents are those of an entry of the list.
[[nodiscard]] std::vector<ImportedClip> withContentsIn(const std::vector<ClipItem>& items,
                                                       const std::vector<ImportedClip>& clips);

/// The list with the `imported` ones as if they had been copied here when they were copied there:
/// what repeats an entry is merged with it, and all stand by their times. A pin among them is one
/// here, behind those that are, as long as there are fewer than `maxPins`; one that is a pin here
/// already keeps its place and name.
[[nodiscard]] std::vector<ClipItem> merged(std::vector<ClipItem> items,
                                           std::vector<ClipItem> imported, std::size_t maxPins);

}  // namespace vantorel
