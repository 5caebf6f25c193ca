// SPDX-License-Identifier: MIT
#pragma once

#include "platform/qt/QtScreens.h"

namespace vantorel {

/// The screens where the X server is told of the pointer only while it is over a window of an X11
/// program. Elsewhere the server goes on naming the last place, at first the middle of the screen,
/// and says of it only that no window is there.
class XwaylandScreens : public QtScreens {
 public:
  [[nodiscard]] Point mouseLocation() const override;
};

}  // namespace vantorel
