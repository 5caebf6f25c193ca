// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/WindowSpaces.h"

namespace vantorel {

/// Remembers which windows asked to be on every virtual desktop, and in front, in order.
class FakeWindowSpaces : public WindowSpaces {
 public:
  void joinAll(WindowNumber window) const override { joined_.push_back(window); }
  void bringForward(WindowNumber window) const override { broughtForward_.push_back(window); }

  // The test's side.

  [[nodiscard]] const std::vector<WindowNumber>& joined() const { return joined_; }
  [[nodiscard]] const std::vector<WindowNumber>& broughtForward() const { return broughtForward_; }

 private:
  mutable std::vector<WindowNumber> joined_;
  mutable std::vector<WindowNumber> broughtForward_;
};

}  // namespace vantorel
