// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/Image.h"

namespace vantorel {

/// Knows as images exactly the bytes that the test has introduced to it.
class FakeImageDecoder : public ImageDecoder {
 public:
  [[nodiscard]] std::shared_ptr<const Image> decode(
      std::shared_ptr<const Bytes> bytes) const override {
    const std::lock_guard lock(mutex_);
    decoded_.push_back(*bytes);
    const auto found = images_.find(*bytes);
    return found != images_.end() ? found->second : nullptr;
  }

  [[nodiscard]] SharedBitmap bitmap(ByteView encoded, PixelSize fitting) const override {
    const std::lock_guard lock(mutex_);
    drawn_.push_back(fitting);
    const auto found = bitmaps_.find(Bytes(encoded.begin(), encoded.end()));
    return found != bitmaps_.end() ? found->second : nullptr;
  }

  // The test's side.

  void introduce(Bytes bytes, std::shared_ptr<const Image> image) {
    const std::lock_guard lock(mutex_);
    images_[std::move(bytes)] = std::move(image);
  }
  void introduce(Bytes bytes, SharedBitmap bitmap) {
    const std::lock_guard lock(mutex_);
    bitmaps_[std::move(bytes)] = std::move(bitmap);
  }
  /// What every bitmap that was asked for had to fit into, in order.
  [[nodiscard]] std::vector<PixelSize> drawn() const {
    const std::lock_guard lock(mutex_);
    return drawn_;
  }
  /// Everything that was given to be decoded, in order.
  [[nodiscard]] std::vector<Bytes> decoded() const {
    const std::lock_guard lock(mutex_);
    return decoded_;
  }

 private:
  mutable std::mutex mutex_;
  mutable std::vector<Bytes> decoded_;
  mutable std::vector<PixelSize> drawn_;
  std::map<Bytes, std::shared_ptr<const Image>> images_;
  std::map<Bytes, SharedBitmap> bitmaps_;
};

}  // namespace vantorel
