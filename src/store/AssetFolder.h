// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/FileSystem.h"
#include "security/SecureStorage.h"

namespace vantorel {

/// The directory of sealed image files, one file per image. Failures are answers, not errors.
/// Names come from the history, which may be damaged: a name that would lead out of the directory
/// is treated as a missing file. So is every file while the directory is a symbolic link: what it
/// leads to is somebody else's. Files that are not called as the store calls its own, "UUID.png" or
/// "UUID.jpg", are never deleted. Any thread.
class AssetFolder {
 public:
  /// No image that was ever stored is larger; what is, is not read.
  static constexpr std::uint64_t maximumFileBytes = std::uint64_t{1} << 28U;

  AssetFolder(FileSystem& files, std::filesystem::path directory);

  [[nodiscard]] const std::filesystem::path& directory() const { return directory_; }
  [[nodiscard]] bool isLink() const { return files_.isLink(directory_); }
  /// Absent for a name that is not a plain file name, and in a directory that is a link.
  [[nodiscard]] std::optional<std::filesystem::path> pathOf(const std::string& name) const;

  /// Total size of the store's own files but those in `except`; one whose size cannot be read
  /// counts 0.
  [[nodiscard]] std::uint64_t assetBytes(const std::set<std::string>& except = {}) const;
  /// Size of one file, 0 when unknown.
  [[nodiscard]] std::uint64_t fileSize(const std::string& name) const;
  /// The file's bytes as they stand on the disk.
  [[nodiscard]] std::optional<Bytes> read(const std::string& name) const;
  /// Seals the bytes and puts them in the file's place in one step.
  [[nodiscard]] bool seal(const std::string& name, const SecureStorage& storage,
                          ByteView plaintext) const;
  void remove(const std::string& name) const;
  /// Deletes the store's own files that are not in `named`, and what is left of writes that a
  /// sudden end cut short.
  void removeOrphans(const std::set<std::string>& named) const;

 private:
  [[nodiscard]] std::vector<std::string> ownFiles() const;

  FileSystem& files_;
  std::filesystem::path directory_;
};

}  // namespace vantorel
