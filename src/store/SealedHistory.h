// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "base/FileSystem.h"
#include "security/SecureStorage.h"
#include "store/ClipItem.h"
#include "store/HistoryDirectories.h"

namespace vantorel {

/// The history's sealed file in its base directory. Cheap to copy. Any thread.
class SealedHistory {
 public:
  /// What the file is called in its directory.
  static constexpr std::string_view fileName = "history.vntl";
  /// And one of an old version, which is not sealed.
  static constexpr std::string_view legacyFileName = "history.json";
  /// More than an envelope adds to what it seals.
  static constexpr std::uint64_t maximumOverhead = 4096;

  struct Services {
    FileSystem& files;
    std::shared_ptr<const SecureStorage> storage;  // may be null: nothing can be written then
  };
  /// saved: the list stands on the disk. failed: it does not, and may the next time. tooLarge: it
  /// never will, unless it changes.
  enum class Outcome { saved, failed, tooLarge };

  /// Whether there may be a history at `path` that only the key opens under which it was sealed.
  [[nodiscard]] static bool mayBeSealed(FileSystem& files, const std::filesystem::path& path);

  /// The services outlive this. No more than `maximumBytes` of JSON are written.
  SealedHistory(Services services, HistoryDirectories directories, std::filesystem::path path,
                std::uint64_t maximumBytes);

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// The list that stands there; absent when there is none, or it does not open or is damaged.
  /// Changes nothing.
  [[nodiscard]] std::optional<std::vector<ClipItem>> read() const;

  /// Puts the list in the file's place in one step, as far as it fits in there (see
  /// `withinHistorySize`). Makes the directories again, should somebody have taken them away.
  [[nodiscard]] Outcome write(const std::vector<ClipItem>& items) const;

  /// Of writes that a sudden end cut short.
  void removeUnfinishedWrites() const;

 private:
  Services services_;
  HistoryDirectories directories_;
  std::filesystem::path path_;
  std::uint64_t maximumBytes_;
};

}  // namespace vantorel
