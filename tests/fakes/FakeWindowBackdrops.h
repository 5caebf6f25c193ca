// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <utility>

#include "platform/Observers.h"
#include "platform/WindowBackdrops.h"

namespace vantorel {

/// A compositor that the test starts and stops; it runs at first, and does not blur.
class FakeWindowBackdrops : public WindowBackdrops {
 public:
  [[nodiscard]] Backdrop available() const override { return available_; }
  [[nodiscard]] bool shadesWindows() const override { return shadesWindows_; }
  [[nodiscard]] std::unique_ptr<Observation> observe(std::function<void()> changed) const override {
    return observers_.add(std::move(changed));
  }
  void blurBehind(WindowNumber window, const std::vector<PixelRect>& pixels) const override {
    ++requests_;
    blurred_[window] = pixels;
  }
  void placeBelow(WindowNumber window, WindowNumber other) const override {
    placedBelow_[other] = window;
  }

  // The test's side.

  /// Observers are told at once.
  void setAvailable(Backdrop backdrop) {
    available_ = backdrop;
    observers_.notify();
  }
  /// What the window asked for last; nothing when it never asked.
  [[nodiscard]] std::vector<PixelRect> blurred(WindowNumber window) const {
    const auto found = blurred_.find(window);
    return found == blurred_.end() ? std::vector<PixelRect>() : found->second;
  }
  void setShadesWindows(bool shades) {
    shadesWindows_ = shades;
    observers_.notify();
  }
  /// What was put below the window last; nothing when nothing was.
  [[nodiscard]] WindowNumber below(WindowNumber window) const {
    const auto found = placedBelow_.find(window);
    return found == placedBelow_.end() ? WindowNumber{} : found->second;
  }
  [[nodiscard]] int requests() const { return requests_; }

 private:
  Backdrop available_ = Backdrop::translucent;
  bool shadesWindows_ = false;
  mutable ChangeObservers observers_;
  mutable std::map<WindowNumber, std::vector<PixelRect>> blurred_;
  mutable std::map<WindowNumber, WindowNumber> placedBelow_;
  mutable int requests_ = 0;
};

}  // namespace vantorel
