// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "desktop/wayland/FakeCompositor.h"

struct wl_resource;

namespace vantorel {

/// The part of a fake compositor that is KWin's: its windows, keys pressed by clients on the user's
/// keyboard, and which modifiers the user holds.
class FakeKwin {
 public:
  /// telling: of held modifiers; quiet: of the Lock keys alone, as earlier ones.
  enum class States { telling, quiet };

  /// Before a client connects. The compositor dies before this ends.
  explicit FakeKwin(FakeCompositor& compositor, States states = States::telling);
  ~FakeKwin() = default;
  FakeKwin(const FakeKwin&) = delete;
  FakeKwin& operator=(const FakeKwin&) = delete;

  /// Another program opens a window, which comes to the front; it is described bit by bit.
  void open(const std::string& appId);
  void bringToFront(const std::string& appId);
  void close(const std::string& appId);
  /// The windows that were asked to come to the front, in order.
  [[nodiscard]] std::vector<std::string> activations();

  /// The user presses a modifier (as the protocol numbers them), or lets it go.
  void hold(std::uint32_t key, bool isHeld);
  /// "down 29", "up 29".
  [[nodiscard]] std::vector<std::string> pressed();

 private:
  struct Protocols;
  void tellFront();

  FakeCompositor& compositor_;
  // On the compositor's thread.
  wl_resource* manager_ = nullptr;
  wl_resource* states_ = nullptr;
  std::map<std::string, wl_resource*> windows_;  // by application id; null before it is asked for
  std::string front_;
  std::vector<std::string> activations_;
  std::map<std::uint32_t, bool> held_;
  std::vector<std::string> pressed_;
};

}  // namespace vantorel
