// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "desktop/wayland/FakeCompositor.h"
#include "fakes/Gate.h"

struct wl_client;
struct wl_resource;

namespace vantorel {

/// The part of a fake compositor that lets clients press keys, by virtual keyboards. What they did
/// is kept: "down 29", "up 29", "modifiers 4".
class FakeKeyboards {
 public:
  /// refusing: to whoever asks for a keyboard; hangingUp: on whoever presses a key; silent: from
  /// the first key on nobody is answered any more, until `speakAgain()`.
  enum class Manner { obliging, refusing, hangingUp, silent };

  /// Before a client connects. The compositor dies before this ends.
  explicit FakeKeyboards(FakeCompositor& compositor, Manner manner = Manner::obliging);
  ~FakeKeyboards() = default;
  FakeKeyboards(const FakeKeyboards&) = delete;
  FakeKeyboards& operator=(const FakeKeyboards&) = delete;

  [[nodiscard]] std::vector<std::string> pressed();
  /// The keymap of the last keyboard that was made.
  [[nodiscard]] std::string keymap();
  /// With the next key that goes down another window comes to the front.
  void bringToFrontMeanwhile(const std::string& appId);
  void speakAgain() { silence_.open(); }

 private:
  struct Protocols;
  void key(wl_resource* keyboard, std::uint32_t code, bool isDown);

  FakeCompositor& compositor_;
  const Manner manner_;
  // On the compositor's thread.
  std::vector<std::string> pressed_;
  std::string keymap_;
  std::string comesMeanwhile_;
  Gate silence_;
};

}  // namespace vantorel
