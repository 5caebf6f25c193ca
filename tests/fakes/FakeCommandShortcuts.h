// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/CommandShortcuts.h"

namespace vantorel {

/// A desktop's list with room for one command.
class FakeCommandShortcuts : public CommandShortcuts {
 public:
  [[nodiscard]] std::string owner() const override { return "GNOME"; }
  [[nodiscard]] bool isSet() const override { return entry.has_value(); }
  [[nodiscard]] bool set(const HotKeyCombination& keys, const std::string& command) override {
    if (isReadOnly) return false;
    entry = {keys, command};
    return true;
  }
  [[nodiscard]] bool remove() override {
    if (isReadOnly) return false;
    entry.reset();
    return true;
  }

  std::optional<std::pair<HotKeyCombination, std::string>> entry;
  bool isReadOnly = false;
};

}  // namespace vantorel
