// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <optional>
#include <vector>

#include "platform/linux/wayland/ToplevelSource.h"

namespace vantorel {

/// What is known of windows: written on the thread that hears of them, read on any.
class ToplevelList {
 public:
  /// A window without a description yet; answers its token, which no other ever gets.
  [[nodiscard]] WindowToken add();
  /// From now on the window is as described. Answers it when it has come to the front by that.
  std::optional<Toplevel> settle(const Toplevel& described);
  void remove(WindowToken token);
  /// Nothing more will be told: nothing is known to be in front.
  void forgetFront();

  // As those of `ToplevelSource`.
  [[nodiscard]] std::optional<Toplevel> active() const;
  [[nodiscard]] std::optional<Toplevel> find(WindowToken token) const;
  [[nodiscard]] std::vector<Toplevel> all() const;

 private:
  mutable std::mutex mutex_;  // all below
  std::vector<Toplevel> windows_;
  WindowToken lastToken_ = ToplevelSource::firstToken;
  std::uint64_t timesInFront_ = 0;
};

}  // namespace vantorel
