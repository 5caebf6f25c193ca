#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "platform/KeyCodes.h"

namespace vantorel {

/// Names a shortcut to whoever registered it; comes back with each press, and no desktop here looks
/// inside. The signature is four characters that stand for the program.
struct HotKeyId {
  std::uint32_t signature = 0;
  std::uint32_t id = 0;
  friend bool operator==(const HotKeyId&, const HotKeyId&) = default;
};

/// A registration; meaningful only to the port that gave it.
using HotKeyRef = std::uint32_t;

/// System-wide shortcuts. Main thread; the handler is called there.
class HotKeys {
 public:
  virtual ~HotKeys() = default;

  /// Called once for each press (not for repeats while it is held) of a registered shortcut.
  /// False when shortcuts cannot be had here.
  [[nodiscard]] virtual bool installHandler(std::function<void(HotKeyId)> handler) = 0;
  virtual void removeHandler() = 0;

  /// Takes the key at that place with exactly these modifiers (Lock keys aside) for this program,
  /// in every window, on every layout. Absent when another program has it or the key is not on
  /// this keyboard. It stays taken when keyboards or layouts change.
  [[nodiscard]] virtual std::optional<HotKeyRef> registerHotKey(KeyCode keyCode,
                                                                HotKeyModifiers modifiers,
                                                                HotKeyId id) = 0;
  virtual void unregisterHotKey(HotKeyRef reference) = 0;
};

}  // namespace vantorel
