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
#include "store/ClipRetention.h"

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

std::vector<ImportedClip> withContentsIn(const std::vector<ClipItem>& items,
                                         const std::vector<ImportedClip>& clips) {
  std::vector<ImportedClip> result;
  std::copy_if(clips.begin(), clips.end(), std::back_inserter(result), [&](const auto& clip) {
    return std::any_of(items.begin(), items.end(),
                       [&](const ClipItem& item) { return duplicates(clip.item, item); });
  });
  return result;
}

std::vector<ImportedClip> withinRoom(const std::vector<ImportedClip>& clips,
                                     const std::vector<ClipItem>& items, const HistoryRoom& room) {
  std::map<std::string, std::uint64_t> sizes;  // of pictures that are new, which their hashes name
  std::vector<ClipItem> imported;
  for (const ImportedClip& clip : clips) {
    imported.push_back(clip.item);
    if (!clip.picture || !clip.item.contentHash) continue;
    const auto stored = std::find_if(items.begin(), items.end(), [&](const ClipItem& item) {
      return item.assetFilename && duplicates(clip.item, item);
    });
    imported.back().assetFilename =
        stored != items.end() ? stored->assetFilename : clip.item.contentHash;
    if (stored == items.end()) sizes[*clip.item.contentHash] = clip.picture->bytes->size();
  }
  const auto sizeOf = [&](const std::string& name) {
    const auto size = sizes.find(name);
    return size != sizes.end() ? size->second : room.assets.fileSize(name);
  };
  const ClipStoreLimits& limits = room.limits;
  auto list = pruned(merged(items, std::move(imported), room.maxPins), room.now, limits.maxAge,
                     limits.maxItems)
                  .kept;
  const auto names = namedAssets(list);
  auto discarded = room.discarded;
  discarded.merge(namedAssets(items));
  for (const std::string& name : names) discarded.erase(name);
  std::uint64_t total = room.assets.assetBytes(discarded);
  for (const auto& [hash, size] : sizes) total += names.contains(hash) ? size : 0;
  list = withinAssetBudget(std::move(list), total, limits.maxAssetBytes, sizeOf).kept;
  return withContentsIn(list, clips);
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
