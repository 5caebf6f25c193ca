// SPDX-License-Identifier: MIT
#include "platform/qt/JpegOrientation.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace vantorel {
namespace {

using namespace std::string_view_literals;

/// Numbers in a note that says itself which of their bytes comes first. Absent beyond its end.
class Note {
 public:
  explicit Note(ByteView bytes) : bytes_(bytes), isLittle_(textOf(bytes).starts_with("II*\0"sv)) {}

  [[nodiscard]] bool isSound() const { return isLittle_ || textOf(bytes_).starts_with("MM\0*"sv); }
  [[nodiscard]] std::optional<std::uint32_t> number(std::size_t at, unsigned length) const {
    if (at > bytes_.size() || bytes_.size() - at < length) return std::nullopt;
    std::uint32_t value = 0;
    for (unsigned i = 0; i < length; ++i)
      value = value << 8U |
              std::to_integer<std::uint32_t>(bytes_[at + (isLittle_ ? length - 1 - i : i)]);
    return value;
  }

 private:
  ByteView bytes_;
  bool isLittle_;
};

/// What a camera notes on how its picture lies: 5 to 8 on its side.
bool liesOnItsSide(const Note& note) {
  constexpr std::size_t entrySize = 12;
  constexpr std::uint32_t orientation = 0x0112;
  constexpr std::uint32_t shortNumber = 3;
  if (!note.isSound()) return false;
  const auto list = note.number(4, 4);
  const auto count = list ? note.number(*list, 2) : std::nullopt;
  for (std::size_t i = 0; count && i < *count; ++i) {
    const std::size_t entry = std::size_t{*list} + 2 + i * entrySize;
    const auto value = note.number(entry + 8, 2);
    if (!value) return false;
    if (note.number(entry, 2) == orientation)
      return note.number(entry + 2, 2) == shortNumber && note.number(entry + 4, 4) == 1 &&
             *value >= 5 && *value <= 8;
  }
  return false;
}

/// The first note of a camera among the segments before the pixels; empty when there is none.
ByteView cameraNote(ByteView jpeg) {
  constexpr unsigned application1 = 0xE1;
  constexpr unsigned startOfScan = 0xDA;
  constexpr auto name = "Exif\0\0"sv;
  const auto byte = [&](std::size_t at) { return std::to_integer<unsigned>(jpeg[at]); };
  std::size_t at = 2;
  while (jpeg.size() > at && jpeg.size() - at >= 4) {
    if (byte(at) != 0xFF) return {};
    const unsigned marker = byte(at + 1);
    if (marker == 0xFF || marker == 0x01) {  // a fill byte; one without a length
      at += marker == 0xFF ? 1 : 2;
      continue;
    }
    const std::size_t length = byte(at + 2) << 8U | byte(at + 3);
    if (marker == startOfScan || length < 2 || length > jpeg.size() - at - 2) return {};
    const auto data = jpeg.subspan(at + 4, length - 2);
    if (marker == application1 && textOf(data).starts_with(name)) return data.subspan(name.size());
    at += 2 + length;
  }
  return {};
}

}  // namespace

EncodedSize shownSize(ByteView jpeg, EncodedSize stored) {
  return liesOnItsSide(Note(cameraNote(jpeg))) ? EncodedSize{stored.height, stored.width} : stored;
}

}  // namespace vantorel
