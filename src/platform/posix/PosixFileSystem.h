// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "base/FileSystem.h"

namespace vantorel {

/// Files as POSIX has them. Any thread.
class PosixFileSystem : public FileSystem {
 public:
  using OnDirectory = std::function<Error(const Path&)>;

  /// How a directory is kept out of backups, and how it is taken, is a matter of the desktop;
  /// without a way it counts as done. Called on the thread that asks.
  explicit PosixFileSystem(OnDirectory excludeFromBackup = {}, OnDirectory claim = {});

  [[nodiscard]] bool exists(const Path& path) override;
  [[nodiscard]] bool isLink(const Path& path) override;
  [[nodiscard]] bool isWithinReach(const Path& path) override;
  [[nodiscard]] std::optional<Bytes> readFile(const Path& path,
                                              std::uint64_t maximumBytes) override;
  [[nodiscard]] std::optional<std::uint64_t> fileSize(const Path& path) override;
  [[nodiscard]] std::optional<std::vector<Path>> list(const Path& directory) override;
  [[nodiscard]] Error createDirectories(const Path& path, unsigned permissions) override;
  [[nodiscard]] Error setPermissions(const Path& path, unsigned permissions) override;
  [[nodiscard]] Error excludeFromBackup(const Path& path) override;
  [[nodiscard]] Error claim(const Path& directory) override;
  [[nodiscard]] Error writeNewFile(const Path& path, ByteView bytes, unsigned permissions) override;
  [[nodiscard]] Error rename(const Path& from, const Path& to) override;
  [[nodiscard]] Error syncDirectory(const Path& path) override;
  [[nodiscard]] Error remove(const Path& path) override;

 private:
  OnDirectory excludeFromBackup_;
  OnDirectory claim_;
};

}  // namespace vantorel
