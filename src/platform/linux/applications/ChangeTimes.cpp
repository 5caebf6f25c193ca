// SPDX-License-Identifier: MIT
#include "platform/linux/applications/ChangeTimes.h"

#include <algorithm>

#include "platform/linux/applications/DesktopEntryScan.h"

namespace vantorel {

ChangeTimes::ChangeTimes(const std::vector<std::filesystem::path>& paths) {
  for (const auto& path : paths) times_.emplace(path, changeTime(path));
}

bool ChangeTimes::haveChanged() const {
  return std::any_of(times_.begin(), times_.end(),
                     [](const auto& each) { return changeTime(each.first) != each.second; });
}

}  // namespace vantorel
