// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <set>
#include <string>

#include "base/FileSystem.h"

namespace vantorel {

/// Files that live in this object and fail when the test says so.
class MemoryFiles : public FileSystem {
 public:
  struct File {
    std::string text;
    unsigned permissions = 0644;
  };

  [[nodiscard]] bool exists(const Path& path) override;
  [[nodiscard]] bool isLink(const Path& /*path*/) override { return false; }
  [[nodiscard]] bool isWithinReach(const Path& path) override { return exists(path); }
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

  // The test's side.

  enum class Operation { createDirectories, writeNewFile, rename };

  std::map<Path, File> files;
  std::map<Path, unsigned> directories;
  std::set<Path> unreadable;
  std::set<Operation> failing;
  std::set<Path> written;  // every path that was ever created by writing

 private:
  [[nodiscard]] Error outcome(Operation operation) const;
};

}  // namespace vantorel
