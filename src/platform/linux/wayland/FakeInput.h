// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "base/FileDescriptor.h"
#include "platform/linux/wayland/ChordKeyboard.h"
#include "platform/linux/wayland/KeyboardConnection.h"

struct org_kde_kwin_fake_input;
struct org_kde_kwin_keystate;
struct wl_keyboard;
struct wl_seat;

namespace vantorel {

/// Keys as KWin takes them, from programs alone whose desktop entry asks for it: on the keyboard
/// that the user has, under the user's layout, and together with what the user holds. Held
/// modifiers are let go first where KWin lets others do that, and waited for where it says when the
/// user has.
class FakeInput : public ChordKeyboard {
 public:
  /// The protocol and its version that would be spoken there; absent where there is none, or not
  /// for this program.
  [[nodiscard]] static std::optional<std::string> protocol(const WaylandConnection& connection);

  /// Null where keys are not taken. `thread` has started and outlives the result. Waits for the
  /// compositor alone. Not on the thread.
  [[nodiscard]] static std::unique_ptr<FakeInput> open(
      WaylandThread& thread, std::unique_ptr<WaylandConnection> connection);
  ~FakeInput() override;
  FakeInput(const FakeInput&) = delete;
  FakeInput& operator=(const FakeInput&) = delete;

  [[nodiscard]] bool isAvailable() const override { return keys_.isOpen(); }
  [[nodiscard]] std::optional<KernelKey> keyOfV() const override { return v_; }
  [[nodiscard]] Outcome press(const KernelChord& chord) override;

 private:
  struct Listeners;
  FakeInput(WaylandThread& thread, std::unique_ptr<WaylandConnection> connection)
      : keys_(thread, std::move(connection)) {}
  [[nodiscard]] bool bind();
  void readKeymap(const FileDescriptor& file, std::uint32_t bytes);
  [[nodiscard]] bool isSomethingHeld() const;
  void letGo();

  KeyboardConnection keys_;
  wl_seat* seat_ = nullptr;
  wl_keyboard* keyboard_ = nullptr;          // the user's, for its keymap; null without one
  org_kde_kwin_keystate* states_ = nullptr;  // null where held modifiers are not told
  org_kde_kwin_fake_input* input_ = nullptr;
  // On the thread.
  std::optional<KernelKey> v_;
  std::array<bool, 8> held_{};  // by what the protocol calls a key
};

}  // namespace vantorel
