// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Date.h"
#include "base/Shared.h"
#include "base/Uuid.h"
#include "store/FilePaths.h"

namespace vantorel {

enum class ClipKind { text, image, files };

[[nodiscard]] std::string_view rawValue(ClipKind kind);
[[nodiscard]] std::optional<ClipKind> clipKind(std::string_view rawValue);

/// One entry of the history. The content fields never change once the entry is built: an entry
/// whose content changes is replaced by a new value. Cheap to copy.
struct ClipItem {
  Uuid id;
  ClipKind kind = ClipKind::text;
  Date createdAt{};
  std::string title;    // "Text", "Image", "File", "Video" or "3 files"
  std::string preview;  // one line: start of the text, size of the image, names of the files
  std::optional<SharedText> text;
  FilePaths filePaths;                       // absolute, in the order they were copied
  std::optional<std::string> assetFilename;  // name inside the assets directory
  std::optional<std::string> sourceAppName;
  std::optional<std::string> sourceBundleIdentifier;
  std::optional<std::string> contentHash;  // SHA-256, lower-case hexadecimal
  std::optional<SharedBytes> rtfData;
  std::optional<SharedBytes> htmlData;

  // What the user or the store changes later.
  std::optional<bool> isPinned;  // absent means not pinned
  std::optional<std::string> customName;
  std::optional<std::int64_t> pinOrder;  // 0-based among the pins
  std::optional<Date> lastCopiedAt;      // absent until copied again
  std::optional<std::string> recognizedText;

  [[nodiscard]] bool pinned() const { return isPinned.value_or(false); }
  /// When this content was last copied.
  [[nodiscard]] Date recency() const { return lastCopiedAt.value_or(createdAt); }

  friend bool operator==(const ClipItem&, const ClipItem&) = default;
};

/// The entry of that identity, or null. Good until the list changes.
[[nodiscard]] const ClipItem* findById(const std::vector<ClipItem>& items, Uuid id);
[[nodiscard]] ClipItem* findById(std::vector<ClipItem>& items, Uuid id);

}  // namespace vantorel
