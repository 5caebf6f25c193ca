// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/x11/X11Property.h"

namespace vantorel {

/// Another program that asks for a selection, step by step or at once, and waits for the answers.
class Requestor {
 public:
  explicit Requestor(const std::string& display);

  /// The whole conversation, pieces included. Absent when refused or not answered.
  [[nodiscard]] std::optional<X11Property> get(const std::string& target,
                                               const std::string& selection = "CLIPBOARD",
                                               xcb_timestamp_t time = XCB_CURRENT_TIME);

  // The steps of it.
  void ask(const std::string& target, const std::string& selection = "CLIPBOARD",
           xcb_timestamp_t time = XCB_CURRENT_TIME);
  /// Waits for the owner's word; false when it refused or said nothing.
  [[nodiscard]] bool answered();
  /// Takes what lies in the property, and so asks for the next piece; waits for a first one when
  /// there is none.
  [[nodiscard]] std::optional<X11Property> take();

  /// Several targets in one request; the properties hold the answers, absent where refused.
  [[nodiscard]] std::vector<std::optional<X11Property>> getMultiple(
      const std::vector<std::string>& names);

  /// How many bytes an incremental answer has announced.
  [[nodiscard]] static bool isIncremental(X11Connection& connection, const X11Property& property);
  [[nodiscard]] X11Connection& connection() { return *connection_; }
  [[nodiscard]] xcb_window_t window() const { return window_; }

 private:
  X11Reply<xcb_generic_event_t> nextEvent();

  std::unique_ptr<X11Connection> connection_;
  xcb_window_t window_;
  xcb_atom_t property_;
};

}  // namespace vantorel
