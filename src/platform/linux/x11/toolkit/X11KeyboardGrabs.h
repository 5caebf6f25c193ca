// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyboardGrabs.h"

namespace vantorel {

/// Grabs on the toolkit's own connection, so that the keys come to the window like any others,
/// translated by the layout in force.
class X11KeyboardGrabs : public KeyboardGrabs {
 public:
  [[nodiscard]] std::unique_ptr<Observation> grabKeyboard(WindowNumber window) override;
};

}  // namespace vantorel
