// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "platform/WindowSpaces.h"

namespace vantorel {

/// Virtual desktops as window managers agree on them. Speaks on the toolkit's own connection, so
/// that the wish arrives before the window is shown; where the toolkit does not speak X11, nothing
/// happens.
class X11WindowSpaces : public WindowSpaces {
 public:
  void joinAll(WindowNumber window) const override;
  void bringForward(WindowNumber window) const override;

 private:
  // Atoms; 0: not asked for yet.
  mutable std::uint32_t desktop_ = 0;
  mutable std::uint32_t states_ = 0;
  mutable std::uint32_t sticky_ = 0;
};

}  // namespace vantorel
