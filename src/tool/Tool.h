// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/xdg/XdgDirectories.h"
#include "platform/posix/PosixFileSystem.h"
#include "security/SecureStorage.h"
#include "tool/EntryList.h"
#include "tool/HistoryOnDisk.h"
#include "tool/LooplessDispatch.h"
#include "tool/ToolLine.h"

namespace vantorel {

/// A start that answers in the terminal. It needs the keyring, and neither a window system nor a
/// toolkit. Reads the history beside the running instance, which alone changes it.
class Tool {
 public:
  explicit Tool(EnvironmentLookup lookup);

  /// Does what the line says; answers the exit status and has said on stderr what went wrong.
  [[nodiscard]] int run(const ToolLine& line);

 private:
  /// Reads the history; the exit status where that fails.
  [[nodiscard]] std::optional<int> open();
  [[nodiscard]] int get(const ToolLine& line);
  [[nodiscard]] int copy(const ToolLine& line);
  [[nodiscard]] int exportTo(const ToolLine& line);
  [[nodiscard]] int importFrom(const ToolLine& line);

  const EnvironmentLookup lookup_;
  LooplessDispatch dispatch_;
  PosixFileSystem files_;
  XdgDirectories directories_;
  std::optional<HistoryOnDisk> history_;
  std::shared_ptr<SecureStorage> storage_;
  std::vector<NumberedEntry> entries_;
};

}  // namespace vantorel
