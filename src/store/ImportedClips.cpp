// SPDX-License-Identifier: MIT
#include "store/ImportedClips.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <utility>

#include "base/Uuid.h"
#include "store/ClipDuplicates.h"
#include "store/ClipOrder.h"

namespace vantorel {

std::optional<std::vector<ClipItem>> withStoredPictures(
    const std::vector<ImportedClip>& clips, const AssetFolder& assets, const SecureStorage& storage,
    const std::function<std::optional<std::string>(const std::string& hash)>& nameOf) {
  std::vector<ClipItem> items;
  std::map<std::string, std::string> written;  // names by hashes
  for (const ImportedClip& clip : clips) {
    items.push_back(clip.item);
    if (!clip.picture || !clip.item.contentHash) continue;
    const std::string& hash = *clip.item.contentHash;
    auto name = nameOf(hash);
    if (const auto known = written.find(hash); known != written.end()) name = known->second;
    if (!name) {
      name = Uuid::random().string() + "." + clip.picture->extension;
      written.emplace(hash, *name);  // one that failed at its last step stands there, too
      if (!assets.seal(*name, storage, *clip.picture->bytes)) {
        for (const auto& [unused, each] : written) assets.remove(each);
        return std::nullopt;
      }
    }
    items.back().assetFilename = std::move(name);
  }
  return items;
}

std::vector<ClipItem> merged(std::vector<ClipItem> items, std::vector<ClipItem> imported,
                             std::size_t maxPins) {
  numberPins(items);
  std::vector<ClipItem> pins;
  std::copy_if(items.begin(), items.end(), std::back_inserter(pins),
               [](const ClipItem& item) { return item.pinned(); });
  for (ClipItem& item : imported) {
    if (!item.pinned()) continue;
    const bool isPin = std::any_of(pins.begin(), pins.end(),
                                   [&](const ClipItem& pin) { return duplicates(item, pin); });
    if (isPin || pins.size() >= maxPins) {
      item.isPinned = false;
      item.customName.reset();
    } else {
      item.pinOrder = static_cast<std::int64_t>(pins.size());
      pins.push_back(item);
    }
  }
  items.insert(items.end(), std::make_move_iterator(imported.begin()),
               std::make_move_iterator(imported.end()));
  separateIdentities(items);
  return coalesced(std::move(items));
}

}  // namespace vantorel
