// SPDX-License-Identifier: MIT
#include "store/PictureReadings.h"

#include <exception>
#include <utility>

#include "store/ImageTextRecognizer.h"
#include "store/StoredPicture.h"

namespace vantorel {
namespace {

std::optional<std::string> textOf(const PictureReadings::Services& services, const ClipItem& item,
                                  const std::stop_token& stop) {
  if (stop.stop_requested() || !services.storage) return std::nullopt;
  try {
    const auto image = storedPicture(services.assets, services.storage.get(), item);
    if (!image) return std::nullopt;
    return ImageTextRecognizer::recognize(services.recognition, *image, stop);
  } catch (const std::exception&) {  // no memory for it
    return std::nullopt;
  }
}

}  // namespace

PictureReadings::PictureReadings(Services services, const std::vector<ClipItem>& items,
                                 Report report)
    : services_(std::move(services)), items_(items), report_(std::move(report)) {}

PictureReadings::~PictureReadings() {
  for (auto& [id, stop] : underWay_) stop.request_stop();
}

void PictureReadings::begin(const ClipItem& item) {
  if (item.kind != ClipKind::image || item.recognizedText || !item.assetFilename) return;
  const auto [reading, isNew] = underWay_.try_emplace(item.id);
  if (!isNew) return;
  using Text = std::optional<std::string>;
  auto finish = life_.guard([this, id = item.id, hash = item.contentHash](const Text& text) {
    this->finish(id, hash, text);
  });
  // Touches nothing of this, and so may be called on the queue.
  auto post = life_.guard([&main = services_.dispatch, finish](const Text& text) {
    main.async([finish, text] { finish(text); });
  });
  // What is read stands for itself: the entry may change or go meanwhile, and so may this.
  services_.queue.async([services = services_, item, stop = reading->second.get_token(),
                         post = std::move(post)] { post(textOf(services, item, stop)); });
}

void PictureReadings::finish(Uuid id, const std::optional<std::string>& contentHash,
                             const std::optional<std::string>& text) {
  const auto reading = underWay_.extract(id);
  if (text) return report_(id, contentHash, *text);
  if (reading.empty() || !reading.mapped().stop_requested()) return;
  // It was given up since its entry was gone. Is there one again?
  if (const ClipItem* const item = findById(items_, id)) begin(*item);
}

void PictureReadings::stopNeedless() {
  for (auto& [id, stop] : underWay_) {
    if (findById(items_, id) == nullptr) stop.request_stop();
  }
}

}  // namespace vantorel
