// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "base/FileSystem.h"

namespace vantorel {

/// Files and directories in memory that remember every change, and so what a disk may hold when its
/// power fails: the changes that were brought to it, and any of the others. One thread.
class MemoryDisk : public FileSystem {
 public:
  struct State {
    std::set<Path> directories;
    std::map<Path, std::shared_ptr<const Bytes>> files;
  };

  MemoryDisk() = default;
  /// What stands there from the beginning stands there for certain.
  explicit MemoryDisk(State state) : first_(std::move(state)), now_(first_) {}

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

  /// As the running system sees it.
  [[nodiscard]] const State& state() const { return now_; }
  /// How many changes there were. Bringing a directory to the disk is one.
  [[nodiscard]] std::size_t changeCount() const { return changes_.size(); }
  /// What the disk may hold when the power fails after that many changes. A file's bytes are there
  /// with its name, but for the file that was being written. The name of a new, renamed or removed
  /// file is the directory's, and may be the old one until that was brought to the disk. Of more
  /// than `mostTogether` such changes not every combination is tried, but many by `chance`.
  [[nodiscard]] std::vector<State> afterPowerLoss(std::size_t count, std::mt19937& chance) const;
  static constexpr std::size_t mostTogether = 6;
  /// Bringing directories to the disk has no effect: to see that this is noticed.
  void forgetDirectories() { forgetsDirectories_ = true; }

 private:
  struct Change {
    enum class Kind { directory, file, rename, remove, sync };
    Kind kind;
    Path path;
    Path to = {};
    std::shared_ptr<const Bytes> bytes = {};
  };

  static void apply(const Change& change, State& state);
  [[nodiscard]] bool isDirectory(const Path& path) const;
  Error add(Change change);

  State first_;
  State now_;
  std::vector<Change> changes_;
  bool forgetsDirectories_ = false;
};

}  // namespace vantorel
