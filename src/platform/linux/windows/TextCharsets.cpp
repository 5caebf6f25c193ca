// SPDX-License-Identifier: MIT
#include "platform/linux/windows/TextCharsets.h"

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <limits>
#include <utility>

#include "text/Unicode.h"

namespace vantorel {

namespace {

constexpr std::size_t longest = std::numeric_limits<std::int32_t>::max() / 4;
// Programs that read nothing else are older than texts of this size.
constexpr std::size_t longestCompoundText = 4'194'304;

icu::LocalUConverterPointer converterFor(const char* charset) {
  UErrorCode error = U_ZERO_ERROR;
  icu::LocalUConverterPointer converter(ucnv_open(charset, &error));
  return U_SUCCESS(error) ? std::move(converter) : icu::LocalUConverterPointer();
}

}  // namespace

std::optional<std::string> utf8FromCharset(ByteView bytes, const std::string& charset) {
  // Without a name the process's own charset would be taken.
  if (charset.empty() || bytes.size() > longest) return std::nullopt;
  const auto converter = converterFor(charset.c_str());
  if (converter.isNull()) return std::nullopt;
  UErrorCode error = U_ZERO_ERROR;
  const icu::UnicodeString text(textOf(bytes).data(), static_cast<std::int32_t>(bytes.size()),
                                converter.getAlias(), error);
  if (U_FAILURE(error)) return std::nullopt;
  std::string utf8;
  text.toUTF8String(utf8);
  return validUtf8(std::move(utf8));
}

std::optional<std::string> compoundText(std::string_view utf8) {
  if (utf8.size() > longestCompoundText) return std::nullopt;
  const auto converter = converterFor(compoundTextCharset);
  if (converter.isNull()) return std::nullopt;
  UErrorCode error = U_ZERO_ERROR;
  const auto text = icu::UnicodeString::fromUTF8(
      icu::StringPiece(utf8.data(), static_cast<std::int32_t>(utf8.size())));
  // What a character can take, and the return to the first charset.
  std::string compound(
      static_cast<std::size_t>(UCNV_GET_MAX_BYTES_FOR_STRING(
          static_cast<std::size_t>(text.length()), ucnv_getMaxCharSize(converter.getAlias()))),
      '\0');
  const auto size = ucnv_fromUChars(converter.getAlias(), compound.data(),
                                    static_cast<std::int32_t>(compound.size()), text.getBuffer(),
                                    text.length(), &error);
  if (U_FAILURE(error)) return std::nullopt;
  compound.resize(static_cast<std::size_t>(size));
  // What it lacks is left out without a word.
  if (utf8FromCharset(bytesOf(compound), compoundTextCharset) != utf8) return std::nullopt;
  return compound;
}

}  // namespace vantorel
