// How the text in pictures comes into the history.
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
  const auto [scheduled, isNew] = scheduledRecognition_.try_emplace(item.id);
  if (!isNew) return;
  Reading reading{services_.recognition, assets_, *item.assetFilename, secureStorage_,
                  scheduled->second.get_token()};
  Dispatch& dispatch = services_.dispatch;
  services_.recognitionQueue.async([this, alive = std::weak_ptr(alive_), &dispatch,
                                    reading = std::move(reading), id = item.id,
                                    hash = item.contentHash] {
    auto text = textOf(reading);
    if (alive.expired()) return;
    dispatch.async([this, alive, id, hash, text = std::move(text)] {
      if (!alive.expired()) finishRecognition(id, hash, text);
    });
  });
}

void ClipStore::finishRecognition(Uuid id, const std::optional<std::string>& contentHash,
                                  const std::optional<std::string>& text) {
  const auto scheduled = scheduledRecognition_.find(id);
  const bool wasStopped =
      scheduled != scheduledRecognition_.end() && scheduled->second.stop_requested();
  scheduledRecognition_.erase(id);
  if (text) return setRecognizedText(*text, id, contentHash);
  if (!wasStopped) return;
  // It was given up since its entry was gone. Is there one again?
  const ClipItem* const item = findById(items_, id);
  if (item != nullptr) scheduleRecognition(*item);
}

/// Of entries that are gone: a cleared picture is let go at once, and the next one's turn comes.
void ClipStore::stopNeedlessRecognition() {
  for (auto& [id, stop] : scheduledRecognition_) {
    if (findById(items_, id) == nullptr) stop.request_stop();
  }
}

void ClipStore::setRecognizedText(const std::string& text, Uuid id,
                                  const std::optional<std::string>& contentHash) {
  ClipItem* const item = findById(items_, id);
  if (item == nullptr || item->kind != ClipKind::image || item->contentHash != contentHash ||
      item->recognizedText) {
    return;
  }
  item->recognizedText = text;
  saveAndNotify();
  if (onSearchIndexChange) onSearchIndexChange();
}

}  // namespace vantorel
