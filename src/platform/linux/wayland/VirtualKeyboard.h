#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/wayland/ChordKeyboard.h"
#include "platform/linux/wayland/WaylandThread.h"

struct wl_seat;
struct zwp_virtual_keyboard_manager_v1;
struct zwp_virtual_keyboard_v1;

namespace vantorel {

/// A keyboard that the compositor takes for a real one, with a keymap of its own: what it presses
/// has nothing to do with the user's layout, nor with the keys that the user holds. Its connection
/// is its own too, for a compositor that does not want it hangs up on it.
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

  [[nodiscard]] bool isAvailable() const override { return isAvailable_; }
  [[nodiscard]] std::optional<KernelKey> keyOfV() const override;
  [[nodiscard]] Outcome press(const KernelChord& chord) override;

 private:
  VirtualKeyboard(WaylandThread& thread, std::unique_ptr<WaylandConnection> connection)
      : thread_(thread), connection_(std::move(connection)) {}
  [[nodiscard]] bool bind();
  void listen();
  void lose();

  WaylandThread& thread_;
  std::unique_ptr<WaylandConnection> connection_;
  std::atomic<bool> isAvailable_ = false;
  wl_seat* seat_ = nullptr;
  zwp_virtual_keyboard_manager_v1* manager_ = nullptr;
  zwp_virtual_keyboard_v1* keyboard_ = nullptr;
};

}  // namespace vantorel
