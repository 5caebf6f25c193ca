// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/CommandShortcuts.h"

namespace vantorel {

/// The custom shortcuts of GNOME's settings. Changes are handed to the settings' own service, which
/// nobody waits for.
class GnomeCommandShortcuts : public CommandShortcuts {
 public:
  /// Null where no desktop reads such settings, or nothing would keep them.
  [[nodiscard]] static std::unique_ptr<GnomeCommandShortcuts> open();

  [[nodiscard]] std::string owner() const override { return "GNOME"; }
  [[nodiscard]] bool isSet() const override;
  [[nodiscard]] bool set(const HotKeyCombination& keys, const std::string& command) override;
  [[nodiscard]] bool remove() override;

 private:
  GnomeCommandShortcuts() = default;
};

/// The keys as GNOME writes them: "<Super><Shift>v".
[[nodiscard]] std::string gnomeAccelerator(const HotKeyCombination& keys);

}  // namespace vantorel
