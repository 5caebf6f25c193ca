#pragma once

#include "platform/WindowBackdrops.h"

namespace vantorel {

/// A compositor that the test starts and stops; it runs at first.
class FakeWindowBackdrops : public WindowBackdrops {
 public:
  [[nodiscard]] Backdrop available() const override { return available_; }

  // The test's side.

  void setAvailable(Backdrop backdrop) { available_ = backdrop; }

 private:
  Backdrop available_ = Backdrop::translucent;
};

}  // namespace vantorel
