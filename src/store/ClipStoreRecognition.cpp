// How the text in pictures comes into the history.
#include <algorithm>
#include <exception>
#include <utility>

#include "store/ClipStore.h"
#include "store/ImageTextRecognizer.h"
#include "store/SealedFile.h"

namespace vantorel {
namespace {

/// What reading one picture needs. It stands for itself: the entry may change or go meanwhile.
struct Reading {
  TextRecognition& recognition;
  AssetFolder assets;
  std::string assetFilename;
  std::shared_ptr<const SecureStorage> storage;
  std::stop_token stop;
};

std::optional<std::string> textOf(const Reading& reading) {
  if (reading.stop.stop_requested() || !reading.storage) return std::nullopt;
  try {
    auto file = reading.assets.read(reading.assetFilename);
    if (!file) return std::nullopt;
    const auto image = openedIfSealed(reading.storage.get(), std::move(*file));
    if (!image) return std::nullopt;
    return ImageTextRecognizer::recognize(reading.recognition, *image, reading.stop);
  } catch (const std::exception&) {  // no memory for it
    return std::nullopt;
  }
}

}  // namespace

void ClipStore::scheduleRecognition(const ClipItem& item) {
  if (item.kind != ClipKind::image || item.recognizedText || !item.assetFilename) return;
  if (!scheduledRecognition_.insert(item.id).second) return;
  Reading reading{services_.recognition, assets_, *item.assetFilename, secureStorage_,
                  stopRecognition_.get_token()};
  Dispatch& dispatch = services_.dispatch;
  services_.recognitionQueue.async([this, alive = std::weak_ptr(alive_), &dispatch,
                                    reading = std::move(reading), id = item.id,
                                    hash = item.contentHash] {
    auto text = textOf(reading);
    if (reading.stop.stop_requested()) return;
    dispatch.async([this, alive, id, hash, text = std::move(text)] {
      if (alive.expired()) return;
      scheduledRecognition_.erase(id);
      if (text) setRecognizedText(*text, id, hash);
    });
  });
}

void ClipStore::setRecognizedText(const std::string& text, const Uuid& id,
                                  const std::optional<std::string>& contentHash) {
  const auto item = std::find_if(items_.begin(), items_.end(), [&](const ClipItem& entry) {
    return entry.id == id && entry.kind == ClipKind::image && entry.contentHash == contentHash;
  });
  if (item == items_.end() || item->recognizedText) return;
  item->recognizedText = text;
  saveAndNotify();
  if (onSearchIndexChange) onSearchIndexChange();
}

}  // namespace vantorel
