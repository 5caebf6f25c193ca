// SPDX-License-Identifier: MIT
#include "capture/OwnWrite.h"

#include <utility>

#include "base/ContentFingerprint.h"

namespace vantorel {

std::shared_ptr<OwnWrite> OwnWrite::readBack(Pasteboard& pasteboard,
                                             Pasteboard::ChangeCount change) {
  auto write = std::make_shared<OwnWrite>();
  const std::weak_ptr<OwnWrite> reading = write;
  pasteboard.readString(change, [reading](const std::optional<std::string>& text) {
    const auto self = reading.lock();
    if (self && text) self->textFingerprint_ = ContentFingerprint::data(bytesOf(*text));
  });
  pasteboard.readFileURLs(change, [reading](std::vector<std::filesystem::path> files) {
    if (const auto self = reading.lock()) self->files_ = std::move(files);
  });
  pasteboard.readImage(change, [reading](std::shared_ptr<const Image> image) {
    if (const auto self = reading.lock()) self->image_ = std::move(image);
  });
  return write;
}

bool OwnWrite::equals(const std::string& text) const {
  return textFingerprint_ && *textFingerprint_ == ContentFingerprint::data(bytesOf(text));
}

bool OwnWrite::equals(const std::vector<std::filesystem::path>& files) const {
  return !files_.empty() && files_ == files;
}

std::shared_ptr<const Image> OwnWrite::candidateFor(const Image& image) const {
  return image_ && image_->size() == image.size() ? image_ : nullptr;
}

bool samePicture(const Image& one, const Image& other) {
  const auto first = one.pngData();
  const auto second = other.pngData();
  return first && second && *first == *second;
}

}  // namespace vantorel
