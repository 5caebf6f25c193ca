// SPDX-License-Identifier: MIT
#include "platform/linux/windows/PasteboardText.h"

#include "platform/linux/windows/PasteboardTargets.h"
#include "platform/linux/windows/TextCharsets.h"
#include "text/Unicode.h"

namespace vantorel {

namespace {

std::string utf8FromLatin1(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    if (value < 0x80) {
      text += byte;
    } else {
      text += static_cast<char>(0xC0U | (value >> 6U));
      text += static_cast<char>(0x80U | (value & 0x3FU));
    }
  }
  return text;
}

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

}  // namespace

std::string decodedText(ByteView bytes, TextEncoding encoding) {
  std::string_view text = textOf(bytes);
  while (!text.empty() && text.back() == '\0') text.remove_suffix(1);
  if (encoding == TextEncoding::unmarked && !isValidUtf8(text)) return utf8FromLatin1(text);
  return validUtf8(std::string(text));
}

std::optional<std::string> decodedAnswer(ByteView bytes, std::string_view target,
                                         std::string_view type) {
  if (type == targets::utf8String) return decodedText(bytes, TextEncoding::utf8);
  const auto stated = targets::plainTextCharset(target).value_or(std::string());
  const bool utf8 = target == targets::utf8String || stated == "utf-8";
  const bool compound = type == targets::compoundText ||
                        (target == targets::compoundText && type != targets::latin1String);
  if (compound || (!utf8 && !stated.empty())) {
    auto text = utf8FromCharset(bytes, compound ? compoundTextCharset : stated);
    while (text && !text->empty() && text->back() == '\0') text->pop_back();
    return text;
  }
  const bool believed = utf8 && type != targets::latin1String;
  return decodedText(bytes, believed ? TextEncoding::utf8 : TextEncoding::unmarked);
}

std::string latin1(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80) {
      text += utf8[i];
      continue;
    }
    // U+0080 to U+00FF are exactly the sequences that begin with C2 and C3.
    const bool fits = (lead == 0xC2 || lead == 0xC3) && i + 1 < utf8.size();
    text += fits ? static_cast<char>(((lead & 3U) << 6U) |
                                     (static_cast<unsigned char>(utf8[i + 1]) & 0x3FU))
                 : '?';
    while (i + 1 < utf8.size() && isContinuation(utf8[i + 1])) ++i;
  }
  return text;
}

}  // namespace vantorel
