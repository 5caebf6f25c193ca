// SPDX-License-Identifier: MIT
#include "store/HistorySize.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/Base64.h"

namespace vantorel {
namespace {

/// Of keys, indentation, and values of a fixed length.
constexpr std::uint64_t emptyEntry = 1024;
constexpr std::uint64_t emptyPath = 16;

/// What escaping adds to a character of a JSON string.
unsigned char added(char character) {
  const auto code = static_cast<unsigned char>(character);
  const bool isNamed = code >= 8 && code <= 13 && code != 11;  // \b \t \n \f \r
  if (code < 0x20) return isNamed ? 1 : 5;
  return code == '"' || code == '\\' ? 1 : 0;
}

std::uint64_t escapedLength(std::string_view text) {
  constexpr std::size_t block = 32;  // whose sum fits into one byte: the compiler adds 16 at once
  std::uint64_t total = text.size();
  for (; text.size() >= block; text.remove_prefix(block)) {
    unsigned char sum = 0;
    for (std::size_t i = 0; i < block; ++i) sum = static_cast<unsigned char>(sum + added(text[i]));
    total += sum;
  }
  for (const char character : text) total += added(character);
  return total;
}

std::uint64_t escapedLengthIfAny(const std::optional<std::string>& text) {
  return text ? escapedLength(*text) : 0;
}

std::uint64_t richSize(const ClipItem& item) {
  std::uint64_t size = 0;
  if (item.rtfData) size += base64Length(item.rtfData->get().size());
  if (item.htmlData) size += base64Length(item.htmlData->get().size());
  return size;
}

}  // namespace

std::uint64_t historySize(const ClipItem& item) {
  std::uint64_t size = emptyEntry + escapedLength(item.title) + escapedLength(item.preview) +
                       escapedLengthIfAny(item.assetFilename) +
                       escapedLengthIfAny(item.sourceAppName) +
                       escapedLengthIfAny(item.sourceBundleIdentifier) +
                       escapedLengthIfAny(item.contentHash) + escapedLengthIfAny(item.customName) +
                       escapedLengthIfAny(item.recognizedText) + richSize(item);
  if (item.text) size += escapedLength(item.text->get());
  for (const std::string& path : item.filePaths) size += emptyPath + escapedLength(path);
  return size;
}

std::uint64_t historySize(const std::vector<ClipItem>& items) {
  std::uint64_t size = emptyPath;
  for (const ClipItem& item : items) size += historySize(item);
  return size;
}

std::optional<std::vector<ClipItem>> withinHistorySize(std::vector<ClipItem> items,
                                                       std::uint64_t maximumBytes) {
  std::uint64_t size = historySize(items);
  for (auto item = items.rbegin(); size > maximumBytes && item != items.rend(); ++item) {
    size -= richSize(*item);
    item->rtfData.reset();
    item->htmlData.reset();
  }
  std::vector<ClipItem> kept;
  for (auto item = items.rbegin(); item != items.rend(); ++item) {
    if (size > maximumBytes && !item->pinned()) {
      size -= historySize(*item);
    } else {
      kept.push_back(std::move(*item));
    }
  }
  if (size > maximumBytes) return std::nullopt;
  std::reverse(kept.begin(), kept.end());
  return kept;
}

}  // namespace vantorel
