// SPDX-License-Identifier: MIT
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/linux/windows/PasteboardText.h"
#include "text/Unicode.h"

/// What an owner answers when its text is asked for, under whatever target and label: what comes
/// out is UTF-8, and can be offered again to programs that read less.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vantorel;
  constexpr std::array<std::string_view, 7> labels{"UTF8_STRING",
                                                   "STRING",
                                                   "COMPOUND_TEXT",
                                                   "text/plain;charset=utf-16",
                                                   "TEXT",
                                                   "text/plain",
                                                   "text/plain;charset=iso-2022-jp"};
  if (size < 2) return 0;
  const auto target = labels.at(data[0] % labels.size());
  const auto type = labels.at(data[1] % labels.size());
  const ByteView bytes(reinterpret_cast<const std::byte*>(data) + 2, size - 2);
  for (const auto encoding : {TextEncoding::utf8, TextEncoding::unmarked}) {
    if (!isValidUtf8(decodedText(bytes, encoding))) std::abort();
  }
  const auto text = decodedAnswer(bytes, target, type);
  if (!text) return 0;
  if (!isValidUtf8(*text)) std::abort();
  if (latin1(*text).size() > text->size()) std::abort();
  return 0;
}
