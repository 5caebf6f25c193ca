#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace vantorel {

/// The keys of an entry's JSON object, in alphabetical order, as they are written.
enum class HistoryKey {
  assetFilename,
  contentHash,
  createdAt,
  customName,
  filePaths,
  htmlData,
  id,
  isPinned,
  kind,
  lastCopiedAt,
  pinOrder,
  preview,
  recognizedText,
  rtfData,
  sourceAppName,
  sourceBundleIdentifier,
  text,
  title,
};

inline constexpr std::array<std::string_view, 18> historyKeyNames = {"assetFilename",
                                                                     "contentHash",
                                                                     "createdAt",
                                                                     "customName",
                                                                     "filePaths",
                                                                     "htmlData",
                                                                     "id",
                                                                     "isPinned",
                                                                     "kind",
                                                                     "lastCopiedAt",
                                                                     "pinOrder",
                                                                     "preview",
                                                                     "recognizedText",
                                                                     "rtfData",
                                                                     "sourceAppName",
                                                                     "sourceBundleIdentifier",
                                                                     "text",
                                                                     "title"};

[[nodiscard]] constexpr std::string_view name(HistoryKey key) {
  return historyKeyNames[static_cast<std::size_t>(key)];
}

[[nodiscard]] constexpr std::optional<HistoryKey> historyKey(std::string_view name) {
  for (std::size_t i = 0; i < historyKeyNames.size(); ++i) {
    if (historyKeyNames[i] == name) return static_cast<HistoryKey>(i);
  }
  return std::nullopt;
}

}  // namespace vantorel
