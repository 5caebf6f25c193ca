// SPDX-License-Identifier: MIT
#include "unit/platform/qt/PngChunks.h"

#include <string_view>

namespace vantorel::png {
namespace {

std::uint32_t checksum(std::string_view text) {
  std::uint32_t crc = 0xFFFF'FFFF;
  for (const char c : text) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB8'8320 : 0);
  }
  return ~crc;
}

}  // namespace

std::string number(std::uint32_t value) {
  std::string text;
  for (const int shift : {24, 16, 8, 0}) text += static_cast<char>(value >> shift);
  return text;
}

std::string chunk(const std::string& type, const std::string& data) {
  return number(static_cast<std::uint32_t>(data.size())) + type + data +
         number(checksum(type + data));
}

std::string ihdr(const Header& header) {
  return chunk("IHDR", number(header.width) + number(header.height) + header.depth +
                           header.colourType + header.compression + header.filter +
                           header.interlace);
}

}  // namespace vantorel::png
