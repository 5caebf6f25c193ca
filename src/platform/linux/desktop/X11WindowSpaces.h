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

 private:
  mutable std::uint32_t desktopProperty_ = 0;  // an atom; 0: not asked for yet
};

}  // namespace vantorel
