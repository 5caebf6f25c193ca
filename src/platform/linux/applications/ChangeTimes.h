// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <vector>

namespace vantorel {

/// When some files and directories last changed: to notice that they have changed since, without
/// being told by the system. Asks the disk once for each. For one thread at a time.
class ChangeTimes {
 public:
  ChangeTimes() = default;
  explicit ChangeTimes(const std::vector<std::filesystem::path>& paths);

  /// Whether any of them changed, appeared or vanished since this was made.
  [[nodiscard]] bool haveChanged() const;

 private:
  std::map<std::filesystem::path, std::filesystem::file_time_type> times_;
};

}  // namespace vantorel
