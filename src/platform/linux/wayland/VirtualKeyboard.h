// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/wayland/ChordKeyboard.h"
#include "platform/linux/wayland/KeyboardConnection.h"

struct wl_seat;
struct zwp_virtual_keyboard_manager_v1;
struct zwp_virtual_keyboard_v1;

namespace vantorel {

/// A keyboard that the compositor takes for a real one, with a keymap of its own: what it presses
/// has nothing to do with the user's layout, nor with the keys that the user holds.
///
/// It is made once and kept. Where the seat had no keyboard, programs miss what a new one presses
/// first.
class VirtualKeyboard : public ChordKeyboard {
 public:
  /// The protocol and its version that would be spoken there; absent where there is none.
  [[nodiscard]] static std::optional<std::string> protocol(const WaylandConnection& connection);

  /// Null where the compositor offers none, or refuses. `thread` has started and outlives the
  /// result. Waits for the compositor alone. Not on the thread.
  [[nodiscard]] static std::unique_ptr<VirtualKeyboard> open(
      WaylandThread& thread, std::unique_ptr<WaylandConnection> connection);
  ~VirtualKeyboard() override;
  VirtualKeyboard(const VirtualKeyboard&) = delete;
  VirtualKeyboard& operator=(const VirtualKeyboard&) = delete;

  [[nodiscard]] bool isAvailable() const override { return keys_.isOpen(); }
  [[nodiscard]] std::optional<KernelKey> keyOfV() const override;
  [[nodiscard]] Outcome press(const KernelChord& chord) override;

 private:
  VirtualKeyboard(WaylandThread& thread, std::unique_ptr<WaylandConnection> connection)
      : keys_(thread, std::move(connection)) {}
  [[nodiscard]] bool bind();

  KeyboardConnection keys_;
  wl_seat* seat_ = nullptr;
  zwp_virtual_keyboard_manager_v1* manager_ = nullptr;
  zwp_virtual_keyboard_v1* keyboard_ = nullptr;
};

}  // namespace vantorel
