// SPDX-License-Identifier: MIT
#include <libdeflate.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include "platform/qt/JpegOrientation.h"
#include "platform/qt/JpegStructure.h"
#include "platform/qt/PngStructure.h"
#include "platform/qt/PngTexts.h"

namespace {

using namespace vantorel;

/// The bytes behind a PNG's beginning, every chunk's checksum put right: it would keep the fuzzer
/// from whatever comes behind the first chunk.
Bytes asPng(ByteView bytes) {
  constexpr std::string_view signature = "\x89PNG\r\n\x1A\n";
  const auto start = bytesOf(signature);
  Bytes png(start.begin(), start.end());
  png.insert(png.end(), bytes.begin(), bytes.end());
  std::size_t at = start.size();
  while (png.size() - at >= 12) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      length = length << 8 | std::to_integer<std::size_t>(png[at + i]);
    }
    if (length > png.size() - at - 12) break;
    const auto checksum = libdeflate_crc32(0, png.data() + at + 4, length + 4);
    for (std::size_t i = 0; i < 4; ++i) {
      png[at + 8 + length + i] = static_cast<std::byte>(checksum >> (24 - 8 * i));
    }
    at += length + 12;
  }
  return png;
}

void expectSound(const std::optional<EncodedSize>& size) {
  if (size && !isAcceptable(*size)) std::abort();
}

}  // namespace

/// Whatever is offered as a picture: nothing is read beyond its bytes, and no size is believed
/// that the program would not hold.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto bytes = std::as_bytes(std::span(data, size));
  expectSound(checkedPng(bytes));
  expectSound(checkedPng(asPng(bytes)));
  for (const auto& [name, text] : textsOfPng(asPng(bytes)))
    if (name.find('\0') != std::string::npos) std::abort();
  expectSound(checkedJpeg(bytes));
  expectSound(shownSize(bytes, {3, 2}));
  return 0;
}
