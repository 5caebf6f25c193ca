// SPDX-License-Identifier: MIT
#include "base/Base64.h"

#include <array>
#include <cstdint>

namespace vantorel {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint32_t notADigit = 0xFF000000U;

constexpr std::array<std::uint32_t, 256> digitValues() {
  std::array<std::uint32_t, 256> values{};
  for (auto& value : values) value = notADigit;
  for (std::uint32_t i = 0; i < 64; ++i) values.at(static_cast<unsigned char>(alphabet[i])) = i;
  return values;
}
constexpr auto values = digitValues();

std::uint32_t valueOf(char digit) { return values[static_cast<unsigned char>(digit)]; }

char digit(std::uint32_t group, unsigned shift) { return alphabet[(group >> shift) & 63U]; }

std::byte byteAt(std::uint32_t group, unsigned shift) {
  return static_cast<std::byte>((group >> shift) & 255U);
}

}  // namespace

void writeBase64(char* to, ByteView bytes) {
  std::size_t i = 0;
  for (; i + 3 <= bytes.size(); i += 3) {
    const std::uint32_t group = std::to_integer<std::uint32_t>(bytes[i]) << 16U |
                                std::to_integer<std::uint32_t>(bytes[i + 1]) << 8U |
                                std::to_integer<std::uint32_t>(bytes[i + 2]);
    *to++ = digit(group, 18);
    *to++ = digit(group, 12);
    *to++ = digit(group, 6);
    *to++ = digit(group, 0);
  }
  const std::size_t rest = bytes.size() - i;
  if (rest == 0) return;
  std::uint32_t group = std::to_integer<std::uint32_t>(bytes[i]) << 16U;
  if (rest == 2) group |= std::to_integer<std::uint32_t>(bytes[i + 1]) << 8U;
  *to++ = digit(group, 18);
  *to++ = digit(group, 12);
  *to++ = rest == 2 ? digit(group, 6) : '=';
  *to = '=';
}

std::optional<Bytes> bytesFromBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  if (text.empty()) return Bytes();
  std::size_t padding = 0;
  if (text.back() == '=') padding = text[text.size() - 2] == '=' ? 2 : 1;
  const std::size_t whole = text.size() - (padding > 0 ? 4 : 0);
  Bytes bytes(text.size() / 4 * 3 - padding);
  std::byte* to = bytes.data();
  for (std::size_t i = 0; i < whole; i += 4) {
    const std::uint32_t group = valueOf(text[i]) << 18U | valueOf(text[i + 1]) << 12U |
                                valueOf(text[i + 2]) << 6U | valueOf(text[i + 3]);
    const std::uint32_t foreign =
        (valueOf(text[i]) | valueOf(text[i + 1]) | valueOf(text[i + 2]) | valueOf(text[i + 3])) &
        notADigit;
    if (foreign != 0) return std::nullopt;
    *to++ = byteAt(group, 16);
    *to++ = byteAt(group, 8);
    *to++ = byteAt(group, 0);
  }
  if (padding == 0) return bytes;
  const std::uint32_t first = valueOf(text[whole]);
  const std::uint32_t second = valueOf(text[whole + 1]);
  const std::uint32_t third = padding == 1 ? valueOf(text[whole + 2]) : 0;
  if (((first | second | third) & notADigit) != 0) return std::nullopt;
  const std::uint32_t group = first << 18U | second << 12U | third << 6U;
  const std::uint32_t strayBits = padding == 1 ? group & 0xFFU : group & 0xFFFFU;
  if (strayBits != 0) return std::nullopt;
  *to++ = byteAt(group, 16);
  if (padding == 1) *to = byteAt(group, 8);
  return bytes;
}

}  // namespace vantorel
