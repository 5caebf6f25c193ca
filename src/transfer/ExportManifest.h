// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Bytes.h"
#include "base/Date.h"
#include "store/ClipItem.h"

namespace vantorel {

/// One form of an entry, in a file of its own.
struct ExportedFile {
  enum class Form { text, html, rtf, picture, paths };

  std::string name;  // without a directory
  Form form = Form::text;
  std::string sha256;  // of its bytes, lower-case hexadecimal
  friend bool operator==(const ExportedFile&, const ExportedFile&) = default;
};

/// What an export says of an entry beside its contents.
struct ExportedEntry {
  ClipKind kind = ClipKind::text;
  std::string preview;
  bool isPinned = false;
  std::optional<std::string> customName;
  std::optional<std::string> sourceAppName;
  std::optional<std::string> sourceBundleIdentifier;
  Date createdAt{};
  std::optional<Date> lastCopiedAt;
  std::optional<std::string> recognizedText;
  std::vector<ExportedFile> files;
  friend bool operator==(const ExportedEntry&, const ExportedEntry&) = default;
};

/// What ties the files of an export together; it lies beside them under this name.
inline constexpr std::string_view manifestName = "manifest.json";

/// Whether an export calls a file of an entry so: a number of four digits or more, and an ending.
[[nodiscard]] bool isExportedFileName(std::string_view name);

/// The entries as JSON, in their order, numbered for a reader; valid whatever was copied. Wipe it
/// after use.
[[nodiscard]] std::string manifestJson(const std::vector<ExportedEntry>& entries, Date exportedAt);

/// Reads what `manifestJson` says, and overwrites it; absent for anything that is not of this
/// shape, or of a later version. All texts are UTF-8, and names of files those that an export
/// gives.
[[nodiscard]] std::optional<std::vector<ExportedEntry>> readManifest(Bytes json);

}  // namespace vantorel
