// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "base/FileSystem.h"
#include "base/Lifetime.h"
#include "platform/ActionAnswer.h"
#include "platform/Dispatch.h"
#include "store/ClipStore.h"
#include "transfer/HistoryImport.h"

namespace vantorel {

/// Takes exported histories in while the program runs. Main thread.
class HistoryIntake {
 public:
  /// `store` and `dispatch` outlive this; `files` may be asked on a thread that lives longer.
  HistoryIntake(ClipStore& store, Dispatch& dispatch, std::shared_ptr<FileSystem> files);

  /// What came of it, for the user.
  std::function<void(const std::string& notice)> onNotice;

  /// Begins to read the export in that directory, where nobody waits for the disk, and takes it in
  /// whole, or not at all. `answer` comes when it is saved.
  void takeIn(const std::filesystem::path& directory, const ActionAnswer& answer = answerNobody);

 private:
  void taken(const ExportReading& reading, const ActionAnswer& answer);

  ClipStore& store_;
  Dispatch& dispatch_;
  std::shared_ptr<FileSystem> files_;
  Lifetime life_;
};

}  // namespace vantorel
