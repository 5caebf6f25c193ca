// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Screens.h"

namespace vantorel {

/// The screens and the pointer as the toolkit knows them. Needs its application object.
class QtScreens : public Screens {
 public:
  [[nodiscard]] std::vector<Screen> screens() const override;
  [[nodiscard]] std::optional<Screen> mainScreen() const override;
  [[nodiscard]] Point mouseLocation() const override;
};

}  // namespace vantorel
