// SPDX-License-Identifier: MIT
#include "platform/linux/windows/ImagePreparation.h"

#include <utility>

namespace vantorel {

std::shared_ptr<const Image> preparedImage(const ImageDecoder& decoder,
                                           std::shared_ptr<const Bytes> bytes,
                                           std::size_t largestPng) {
  if (!bytes || bytes->empty()) return nullptr;
  auto image = decoder.decode(std::move(bytes));
  if (!image) return nullptr;
  const auto png = image->pngData();
  if (!png) return nullptr;
  if (png->size() > largestPng && !image->jpegData(jpegCompression)) return nullptr;
  return image;
}

}  // namespace vantorel
