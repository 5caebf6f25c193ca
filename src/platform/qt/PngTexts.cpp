// SPDX-License-Identifier: MIT
#include "platform/qt/PngTexts.h"

#include <libdeflate.h>

#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/qt/PngChunk.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr std::size_t longestText = std::size_t{64} << 10U;  // bytes

std::optional<std::string> inflated(ByteView packed) {
  const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> inflater(
      libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
  std::string text(longestText, '\0');
  std::size_t size = 0;
  if (!inflater ||
      libdeflate_zlib_decompress(inflater.get(), packed.data(), packed.size(), text.data(),
                                 text.size(), &size) != LIBDEFLATE_SUCCESS)
    return std::nullopt;
  text.resize(size);
  return text;
}

std::string fromLatin1(std::string_view text) {
  std::string result;
  for (const char character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (code < 0x80) {
      result += character;
    } else {
      result += static_cast<char>(0xC0U | code >> 6U);
      result += static_cast<char>(0x80U | (code & 0x3FU));
    }
  }
  return result;
}

/// Takes what stands before the next NUL off the front, and that NUL; absent when there is none.
std::optional<std::string_view> nextWord(std::string_view& rest) {
  const auto end = rest.find('\0');
  if (end == std::string_view::npos) return std::nullopt;
  const auto word = rest.substr(0, end);
  rest.remove_prefix(end + 1);
  return word;
}

/// Of a text in UTF-8: whether it is packed and how, its language, the name in that language.
std::optional<std::string> international(std::string_view rest) {
  if (rest.size() < 2 || rest[1] != 0) return std::nullopt;
  const bool isPacked = rest[0] != 0;
  rest.remove_prefix(2);
  if (!nextWord(rest) || !nextWord(rest)) return std::nullopt;
  auto text = isPacked ? inflated(bytesOf(rest)) : std::string(rest);
  return text ? std::optional(validUtf8(std::move(*text))) : std::nullopt;
}

std::optional<std::string> packed(std::string_view rest) {
  if (rest.empty() || rest[0] != 0) return std::nullopt;
  const auto text = inflated(bytesOf(rest.substr(1)));
  return text ? std::optional(fromLatin1(*text)) : std::nullopt;
}

std::optional<std::string> textIn(std::string_view type, std::string_view rest) {
  if (type == "tEXt") return fromLatin1(rest);
  if (type == "zTXt") return packed(rest);
  return type == "iTXt" ? international(rest) : std::nullopt;
}

}  // namespace

std::map<std::string, std::string> textsOfPng(ByteView png) {
  std::map<std::string, std::string> texts;
  if (!textOf(png).starts_with(pngSignature)) return texts;
  auto left = png.subspan(pngSignature.size());
  while (const auto chunk = firstPngChunk(left)) {
    if (chunk->type == "IEND") return texts;
    left = left.subspan(chunk->totalSize);
    auto rest = textOf(chunk->data);
    const auto name = rest.size() <= longestText ? nextWord(rest) : std::nullopt;
    if (!name) continue;
    if (auto text = textIn(chunk->type, rest)) texts.emplace(*name, std::move(*text));
  }
  return {};
}

}  // namespace vantorel
