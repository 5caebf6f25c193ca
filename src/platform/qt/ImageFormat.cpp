// SPDX-License-Identifier: MIT
#include "platform/qt/ImageFormat.h"

#include <array>
#include <string_view>

namespace vantorel {
namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view start;
  const char* format;
  std::string_view later = {};  // from the ninth byte
};

constexpr std::array signatures = {Signature{"\x89PNG\r\n\x1A\n"sv, "png"},
                                   Signature{"\xFF\xD8\xFF"sv, "jpeg"},
                                   Signature{"GIF87a"sv, "gif"},
                                   Signature{"GIF89a"sv, "gif"},
                                   Signature{"BM"sv, "bmp"},
                                   Signature{"II*\0"sv, "tiff"},
                                   Signature{"MM\0*"sv, "tiff"},
                                   Signature{"II+\0"sv, "tiff"},
                                   Signature{"MM\0+"sv, "tiff"},
                                   Signature{"RIFF"sv, "webp", "WEBP"sv},
                                   Signature{"\0\0\1\0"sv, "ico"}};

}  // namespace

const char* imageFormatOf(ByteView bytes) {
  constexpr std::size_t laterAt = 8;
  const auto text = textOf(bytes);
  for (const auto& [start, format, later] : signatures) {
    if (!text.starts_with(start)) continue;
    if (later.empty() || (text.size() > laterAt && text.substr(laterAt).starts_with(later)))
      return format;
  }
  return nullptr;
}

}  // namespace vantorel
