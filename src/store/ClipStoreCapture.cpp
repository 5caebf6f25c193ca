// How captured content comes into the history, and what has to leave for it.
#include <algorithm>
#include <utility>

#include "base/ContentFingerprint.h"
#include "store/CapturedEntries.h"
#include "store/ClipDuplicates.h"
#include "store/ClipOrder.h"
#include "store/ClipRetention.h"
#include "store/ClipStore.h"
#include "store/SealedFile.h"

namespace vantorel {

struct ClipStore::EncodedImage {
  std::shared_ptr<const Bytes> bytes;
  std::string extension;
};

bool ClipStore::insert(const ClipItem& item) {
  auto insertion = inserted(items_, item);
  items_ = std::move(insertion.items);
  prune();
  numberPins(items_);
  saveNowOrLater();
  removeDiscardedAssets();
  removeOrphanedAssets();
  if (onChange) onChange();
  return insertion.isNews;
}

bool ClipStore::captureFiles(const std::vector<std::filesystem::path>& urls,
                             const SourceApp& source) {
  if (urls.empty()) return false;
  std::vector<std::string> paths;
  paths.reserve(urls.size());
  for (const auto& url : urls) paths.push_back(url.string());
  return insert(filesEntry(std::move(paths), source, services_.dispatch.now()));
}

bool ClipStore::captureImage(const Image& image, const SourceApp& source) {
  const auto encoded = encodedImage(image);
  if (!encoded) return false;
  const std::string hash = ContentFingerprint::data(*encoded->bytes);
  const ClipItem* existing = storedImage(hash);
  std::string name = existing != nullptr ? *existing->assetFilename
                                         : Uuid::random().string() + "." + encoded->extension;
  if (!secureStorage_) return false;
  if (existing == nullptr &&
      !writeSealed(services_.files, assetsUrl() / name, *secureStorage_, *encoded->bytes)) {
    return false;
  }
  ClipItem item = imageEntry(image.size(), std::move(name), hash, source, services_.dispatch.now());
  if (existing != nullptr) item.recognizedText = existing->recognizedText;
  const bool isNews = insert(item);
  const auto captured = std::find_if(items_.begin(), items_.end(), [&](const ClipItem& entry) {
    return entry.kind == ClipKind::image && entry.contentHash == hash;
  });
  if (captured != items_.end()) scheduleRecognition(*captured);
  return isNews;
}

/// Losslessly if that is small enough, else as a JPEG, else not at all: never scaled down.
std::optional<ClipStore::EncodedImage> ClipStore::encodedImage(const Image& image) const {
  constexpr double jpegCompression = 0.86;
  const auto fits = [this](const std::shared_ptr<const Bytes>& bytes) {
    return bytes && bytes->size() <= limits_.maxSingleImageBytes;
  };
  if (auto png = image.pngData(); fits(png)) return EncodedImage{std::move(png), "png"};
  if (auto jpeg = image.jpegData(jpegCompression); fits(jpeg)) {
    return EncodedImage{std::move(jpeg), "jpg"};
  }
  return std::nullopt;
}

/// An entry with these contents whose file is there and can be opened.
const ClipItem* ClipStore::storedImage(const std::string& contentHash) const {
  const auto found = std::find_if(items_.begin(), items_.end(), [&](const ClipItem& item) {
    return item.kind == ClipKind::image && item.contentHash == contentHash && assetData(item);
  });
  return found == items_.end() ? nullptr : &*found;
}

void ClipStore::prune() {
  auto retention =
      pruned(std::move(items_), services_.dispatch.now(), limits_.maxAge, limits_.maxItems);
  items_ = std::move(retention.kept);
  if (persistenceIsReady_) discardAssetsOf(retention.dropped);
  pruneAssetsBySize();
}

void ClipStore::pruneAssetsBySize() {
  auto retention = withinAssetBudget(
      std::move(items_), assets_.assetBytes(discardedAssets_), limits_.maxAssetBytes,
      [this](const std::string& name) { return assets_.fileSize(name); });
  items_ = std::move(retention.kept);
  if (persistenceIsReady_) discardAssetsOf(retention.dropped);
}

void ClipStore::discardAssetsOf(const std::vector<ClipItem>& dropped) {
  const auto stillNamed = namedAssets(items_);
  for (const std::string& name : namedAssets(dropped)) {
    if (stillNamed.count(name) == 0) discardedAssets_.insert(name);
  }
}

}  // namespace vantorel
