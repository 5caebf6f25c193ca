#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "base/FileSystem.h"
#include "security/SecureStorage.h"
#include "store/ClipItem.h"
#include "store/HistoryDirectories.h"

namespace vantorel {

/// The history's sealed file in its base directory. Cheap to copy. Any thread.
class SealedHistory {
 public:
  /// `files` outlives this; without a storage nothing is written.
  SealedHistory(FileSystem& files, HistoryDirectories directories, std::filesystem::path path,
                std::shared_ptr<const SecureStorage> storage);

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// Puts the list in the file's place in one step. Makes the directories again, should somebody
  /// have taken them away.
  [[nodiscard]] bool write(const std::vector<ClipItem>& items) const;

  /// Of writes that a sudden end cut short.
  void removeUnfinishedWrites() const;

 private:
  FileSystem& files_;
  HistoryDirectories directories_;
  std::filesystem::path path_;
  std::shared_ptr<const SecureStorage> storage_;
};

}  // namespace vantorel
