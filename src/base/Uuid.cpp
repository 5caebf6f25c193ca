// SPDX-License-Identifier: MIT
#include "base/Uuid.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "base/Ascii.h"
#include "base/RandomBytes.h"

namespace vantorel {
namespace {

constexpr std::size_t textLength = 36;

bool hasHyphenAt(std::size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

}  // namespace

Uuid Uuid::random() {
  Uuid id;
  fillWithRandom(std::as_writable_bytes(std::span(id.bytes_)));
  id.bytes_[6] = static_cast<std::uint8_t>((id.bytes_[6] & 0x0FU) | 0x40U);  // version 4
  id.bytes_[8] = static_cast<std::uint8_t>((id.bytes_[8] & 0x3FU) | 0x80U);  // RFC 4122 variant
  return id;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
  if (text.size() != textLength) return std::nullopt;
  Uuid id;
  std::size_t digits = 0;
  for (std::size_t i = 0; i < textLength; ++i) {
    if (hasHyphenAt(i)) {
      if (text[i] != '-') return std::nullopt;
      continue;
    }
    const int value = hexValue(text[i]);
    if (value < 0) return std::nullopt;
    std::uint8_t& byte = id.bytes_.at(digits / 2);
    byte = static_cast<std::uint8_t>((byte << 4U) | static_cast<unsigned>(value));
    ++digits;
  }
  return id;
}

std::string Uuid::string() const {
  constexpr std::string_view hex = "0123456789ABCDEF";
  std::string text;
  text.reserve(textLength);
  for (const std::uint8_t byte : bytes_) {
    if (hasHyphenAt(text.size())) text.push_back('-');
    text.push_back(hex[byte >> 4U]);
    text.push_back(hex[byte & 0x0FU]);
  }
  return text;
}

}  // namespace vantorel

std::size_t std::hash<vantorel::Uuid>::operator()(const vantorel::Uuid& id) const noexcept {
  // The bits are random already, save in a damaged history, where a collision costs only time.
  std::size_t value = 0;
  std::memcpy(&value, id.bytes_.data(), std::min(sizeof value, id.bytes_.size()));
  return value;
}
