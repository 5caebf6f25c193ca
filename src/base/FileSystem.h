// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

#include "base/Bytes.h"

namespace vantorel {

/// The few file operations that the history is made of, one step each, so that what happens when
/// any of them fails can be tried. Nothing throws; an empty error code is success. At a path with a
/// NUL byte nothing stands, and nothing can be put. Any thread.
class FileSystem {
 public:
  using Path = std::filesystem::path;
  using Error = std::error_code;

  virtual ~FileSystem() = default;

  /// Whether anything stands at `path`. A path that may not be looked at counts as standing: it is
  /// safer to find a file unreadable than to take it for absent.
  [[nodiscard]] virtual bool exists(const Path& path) = 0;
  /// Whether a symbolic link stands at `path`, wherever it leads.
  [[nodiscard]] virtual bool isLink(const Path& path) = 0;
  /// Whether somebody who opens `path` would find something there: no link to nothing, and nothing
  /// that may not be looked at.
  [[nodiscard]] virtual bool isWithinReach(const Path& path) = 0;
  /// The whole file; absent when it cannot be read or is larger than `maximumBytes`.
  [[nodiscard]] virtual std::optional<Bytes> readFile(const Path& path,
                                                      std::uint64_t maximumBytes) = 0;
  /// Size of a regular file in bytes; absent when it cannot be told.
  [[nodiscard]] virtual std::optional<std::uint64_t> fileSize(const Path& path) = 0;
  /// Names of everything in the directory, hidden ones too; absent when it cannot be listed.
  [[nodiscard]] virtual std::optional<std::vector<Path>> list(const Path& directory) = 0;

  /// Creates the directory with its missing parents; success when it exists already.
  [[nodiscard]] virtual Error createDirectories(const Path& path, unsigned permissions) = 0;
  [[nodiscard]] virtual Error setPermissions(const Path& path, unsigned permissions) = 0;
  /// Keeps the directory out of backups as far as the file system can be told.
  [[nodiscard]] virtual Error excludeFromBackup(const Path& path) = 0;
  /// Takes the directory for this process until it ends, or until it takes another. Success, too,
  /// when it has it already, and where directories cannot be taken; `device_or_resource_busy` when
  /// another process has it.
  [[nodiscard]] virtual Error claim(const Path& directory) = 0;

  /// Creates `path`, which must not exist, with `permissions` from its first moment, writes the
  /// bytes and brings them to the disk.
  [[nodiscard]] virtual Error writeNewFile(const Path& path, ByteView bytes,
                                           unsigned permissions) = 0;
  /// Replaces `to` by `from` in one step.
  [[nodiscard]] virtual Error rename(const Path& from, const Path& to) = 0;
  /// Brings the directory's entries to the disk.
  [[nodiscard]] virtual Error syncDirectory(const Path& path) = 0;
  [[nodiscard]] virtual Error remove(const Path& path) = 0;
};

}  // namespace vantorel
