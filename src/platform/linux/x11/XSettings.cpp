// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XSettings.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace vantorel {

namespace {

enum class Kind : std::uint8_t { integer = 0, string = 1, colour = 2 };

/// Reads numbers in the writer's byte order, never past the end.
class Reader {
 public:
  explicit Reader(ByteView bytes) : bytes_(bytes) {
    bigEndian_ = !bytes.empty() && bytes[0] != std::byte{0};
  }

  [[nodiscard]] bool skip(std::size_t count) {
    if (count > bytes_.size() - position_) return false;
    position_ += count;
    return true;
  }

  [[nodiscard]] std::optional<std::uint32_t> number(std::size_t size) {
    const auto start = position_;
    if (!skip(size)) return std::nullopt;
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i) {
      const auto at = start + (bigEndian_ ? i : size - 1 - i);
      value = value << 8U | std::to_integer<std::uint32_t>(bytes_[at]);
    }
    return value;
  }

  /// A text and what fills it up to a multiple of four.
  [[nodiscard]] std::optional<std::string> text(std::size_t length) {
    const auto start = position_;
    if (!skip(length)) return std::nullopt;
    const auto padding = (4 - length % 4) % 4;
    if (!skip(padding)) return std::nullopt;
    return std::string(textOf(bytes_.subspan(start, length)));
  }

 private:
  ByteView bytes_;
  std::size_t position_ = 0;
  bool bigEndian_ = false;
};

/// False when the entry is damaged.
bool readSetting(Reader& reader, XSettings& settings) {
  const auto kind = reader.number(1);
  if (!kind || !reader.skip(1)) return false;
  const auto nameLength = reader.number(2);
  if (!nameLength) return false;
  auto name = reader.text(*nameLength);
  // Then the serial number of the last change.
  if (!name || !reader.skip(4)) return false;
  switch (static_cast<Kind>(*kind)) {
    case Kind::integer: {
      const auto value = reader.number(4);
      if (!value) return false;
      settings.insert_or_assign(std::move(*name), static_cast<std::int32_t>(*value));
      return true;
    }
    case Kind::string: {
      const auto length = reader.number(4);
      if (!length) return false;
      auto value = reader.text(*length);
      if (!value) return false;
      settings.insert_or_assign(std::move(*name), std::move(*value));
      return true;
    }
    case Kind::colour:
      return reader.skip(8);
  }
  return false;
}

}  // namespace

XSettings parseXSettings(ByteView bytes) {
  XSettings settings;
  Reader reader(bytes);
  // Byte order, three unused bytes and a serial number come first.
  if (!reader.skip(8)) return settings;
  const auto count = reader.number(4);
  for (std::uint32_t i = 0; count && i < *count; ++i) {
    if (!readSetting(reader, settings)) break;
  }
  return settings;
}

}  // namespace vantorel
