#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "app/HotKeyShortcut.h"
#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/HotKeys.h"
#include "platform/UserDefaults.h"

namespace vantorel {

/// Tells this program's hot keys from those of others: the letters "VNTL".
inline constexpr std::uint32_t clipHotKeySignature = 0x564e544c;
inline constexpr HotKeyId clipHotKeyId{clipHotKeySignature, 1};

/// Holds the one global shortcut from start to end. Main thread.
class HotKeyRegistration {
 public:
  /// Loads the user's shortcut; nothing is registered yet. All outlive this object.
  HotKeyRegistration(HotKeys& hotKeys, UserDefaults& defaults, Dispatch& dispatch);
  /// Gives the shortcut back if that has not been done.
  ~HotKeyRegistration();
  HotKeyRegistration(const HotKeyRegistration&) = delete;
  HotKeyRegistration& operator=(const HotKeyRegistration&) = delete;

  /// The shortcut was pressed: called in a later turn of the main queue than the press, so that
  /// whatever it does does not hold up the desktop's delivery of keys.
  std::function<void()> onPressed;
  /// What the user should be told.
  std::function<void(std::string_view)> onNotice;

  /// Registers the shortcut; one that cannot be had is given up for the default, which is stored.
  /// When that cannot be had either the program runs without. Where no program can have one, what
  /// is stored stays.
  void registerHotKey();
  enum class ApplyResult {
    unchanged,    // it is the shortcut already
    applied,      // it is the shortcut now, and stored
    unavailable,  // it cannot be had; the old one stays
  };
  /// Makes `candidate` the shortcut. The old one is given back only once the new one is held, so
  /// the same keys under another label are unavailable.
  [[nodiscard]] ApplyResult apply(const HotKeyShortcut& candidate);
  /// Gives back the shortcut, then the handler. `registerHotKey` may be called again.
  void unregisterHotKey();

  [[nodiscard]] const HotKeyShortcut& shortcut() const { return shortcut_; }
  /// Whether this desktop lets programs have shortcuts. Known once it was tried.
  [[nodiscard]] bool canBeHad() const { return handlerInstalled_; }
  [[nodiscard]] bool isRegistered() const { return reference_.has_value(); }

 private:
  void ensureHotKeyHandler();
  void handlePress(HotKeyId id);
  [[nodiscard]] std::optional<HotKeyRef> take(const HotKeyShortcut& shortcut);
  void tell(std::string_view notice) const;

  HotKeys& hotKeys_;
  UserDefaults& defaults_;
  Dispatch& dispatch_;
  HotKeyShortcut shortcut_;
  std::optional<HotKeyRef> reference_;
  bool handlerInstalled_ = false;
  Lifetime life_;
};

}  // namespace vantorel
