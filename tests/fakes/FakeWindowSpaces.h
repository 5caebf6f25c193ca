#pragma once

#include <vector>

#include "platform/WindowSpaces.h"

namespace vantorel {

/// Remembers which windows asked to be on every virtual desktop, in order.
class FakeWindowSpaces : public WindowSpaces {
 public:
  void joinAll(WindowNumber window) const override { joined_.push_back(window); }

  // The test's side.

  [[nodiscard]] const std::vector<WindowNumber>& joined() const { return joined_; }

 private:
  mutable std::vector<WindowNumber> joined_;
};

}  // namespace vantorel
