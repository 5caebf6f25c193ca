// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "base/Bytes.h"
#include "base/Date.h"
#include "base/FileSystem.h"
#include "security/SecureStorage.h"
#include "store/ClipItem.h"
#include "store/HistoryDirectories.h"

namespace vantorel {

/// The history as it was saved last, for a reader beside the program that writes it. Changes
/// nothing. Any thread.
class HistoryOnDisk {
 public:
  /// `files` outlives this.
  HistoryOnDisk(FileSystem& files, const std::filesystem::path& base);

  /// absent: nothing was ever saved. old: an old version saved it, and the program has to be
  /// started once.
  enum class State { sealed, old, absent };
  [[nodiscard]] State state() const;

  /// The list as a start of the program at that moment would show it; absent when it does not open
  /// with that key, or is damaged.
  [[nodiscard]] std::optional<std::vector<ClipItem>> read(
      const std::shared_ptr<const SecureStorage>& storage, Date now) const;
  /// The encoded picture of an entry; absent when its file is missing or damaged.
  [[nodiscard]] std::optional<Bytes> picture(const SecureStorage& storage,
                                             const ClipItem& item) const;

 private:
  FileSystem& files_;
  HistoryDirectories directories_;
};

}  // namespace vantorel
