// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/Image.h"

namespace vantorel {

/// An image of a given size whose encoded forms are whatever the test says; null until then.
class FakeImage : public Image {
 public:
  explicit FakeImage(Size size) : size_(size) {}
  /// An image whose PNG form is the bytes of `png`.
  FakeImage(Size size, std::string_view png) : size_(size) { setPng(png); }

  [[nodiscard]] Size size() const override { return size_; }
  [[nodiscard]] std::shared_ptr<const Bytes> pngData() const override {
    ++pngCalls_;
    return png_;
  }
  [[nodiscard]] std::shared_ptr<const Bytes> jpegData(double compression) const override {
    jpegCompressions_.push_back(compression);
    return jpeg_;
  }

  // The test's side.

  void setPng(std::string_view bytes) { png_ = shared(bytes); }
  void setPng(Bytes bytes) { png_ = std::make_shared<const Bytes>(std::move(bytes)); }
  void setJpeg(std::string_view bytes) { jpeg_ = shared(bytes); }
  void setJpeg(Bytes bytes) { jpeg_ = std::make_shared<const Bytes>(std::move(bytes)); }
  [[nodiscard]] int pngCalls() const { return pngCalls_; }
  /// The factor of every call for a JPEG, in order.
  [[nodiscard]] const std::vector<double>& jpegCompressions() const { return jpegCompressions_; }

 private:
  static std::shared_ptr<const Bytes> shared(std::string_view text) {
    const ByteView view = bytesOf(text);
    return std::make_shared<const Bytes>(view.begin(), view.end());
  }

  Size size_;
  std::shared_ptr<const Bytes> png_;
  std::shared_ptr<const Bytes> jpeg_;
  mutable int pngCalls_ = 0;
  mutable std::vector<double> jpegCompressions_;
};

}  // namespace vantorel
