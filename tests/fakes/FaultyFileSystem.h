// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "base/FileSystem.h"

namespace vantorel {

/// Passes every operation on to other files until told to fail, to lie or to die. Counts the
/// operations that change something, so that a test can put a failure at each of them.
class FaultyFileSystem : public FileSystem {
 public:
  enum class Operation {
    createDirectories,
    setPermissions,
    excludeFromBackup,
    claim,
    writeNewFile,
    rename,
    syncDirectory,
    remove,
  };
  /// How far the operation at which the program dies has come. Only a write has a middle: a file
  /// of half its length.
  enum class Progress { none, half, whole };

  explicit FaultyFileSystem(FileSystem& files) : files_(files) {}

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

  // The test's side.

  /// Every such operation fails, until `recover`. A write leaves half a file behind, as on a disk
  /// that fills up.
  void fail(Operation operation, std::errc error) { failing_[operation] = error; }
  /// The changing operation with this number, from 0, counted from now, fails once.
  void failAt(int number, std::errc error);
  /// Nothing has any effect any more after the changing operation with this number, from 0,
  /// counted from now, has come so far: what a process that is killed there leaves on the disk.
  void dieAt(int number, Progress progress);
  void recover();
  /// Reading answers nothing for this path, as for a file without permission.
  void makeUnreadable(const Path& path) { unreadable_[path] = true; }
  /// Sizes of this file cannot be told.
  void hideSize(const Path& path) { sizeless_[path] = true; }

  /// Changing operations since the beginning, with the name of the file that each concerned.
  struct Call {
    Operation operation;
    Path path;
  };
  [[nodiscard]] const std::vector<Call>& calls() const { return calls_; }
  [[nodiscard]] bool isDead() const { return dead_; }

 private:
  static constexpr int never = std::numeric_limits<int>::max();

  Error change(Operation operation, const Path& path, const std::function<Error()>& whole,
               const std::function<void()>& half = {});

  FileSystem& files_;
  std::vector<Call> calls_;
  std::map<Operation, std::errc> failing_;
  std::map<Path, bool> unreadable_;
  std::map<Path, bool> sizeless_;
  int countdownToFailure_ = never;
  std::errc nextError_{};
  int countdownToDeath_ = never;
  Progress progressAtDeath_ = Progress::none;
  bool dead_ = false;
};

}  // namespace vantorel
