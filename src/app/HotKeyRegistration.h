// SPDX-License-Identifier: MIT
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

  enum class ApplyResult {
    unchanged,    // it is the shortcut already
    applied,      // it is the shortcut now, and stored
    unavailable,  // it cannot be had; the old one stays
    asked,        // the desktop answers later; the old one stays until then
    kept,         // it is stored, but no program can have keys here
    refused,      // the desktop's user said no; the old one stays
  };

  /// The shortcut was pressed: called in a later turn of the main queue than the press, so that
  /// whatever it does does not hold up the desktop's delivery of keys.
  std::function<void()> onPressed;
  /// What the user should be told.
  std::function<void(std::string_view)> onNotice;
  /// What became of an `apply` that was `asked`; not `unchanged`.
  std::function<void(ApplyResult)> onApplied;
  /// `display`, `canBeHad` or `consent` is another than before, without an `apply`.
  std::function<void()> onChange;

  /// Whether the desktop may put the question to its user that some put before they give keys. One
  /// who has said no is not asked again by this.
  enum class Asking { allowed, tooEarly };
  /// Registers the shortcut; one that cannot be had is given up for the default, which is stored.
  /// When that cannot be had either the program runs without. Where no program can have one, what
  /// is stored stays.
  void registerHotKey(Asking asking = Asking::allowed);
  /// Makes `candidate` the shortcut. The old one is given back only once the new one is held, so
  /// the same keys under another label may be unavailable. A newer candidate replaces one that is
  /// asked for. The desktop may ask its user, also again.
  [[nodiscard]] ApplyResult apply(const HotKeyShortcut& candidate);
  /// Gives back the shortcut, then the handler. `registerHotKey` may be called again.
  void unregisterHotKey();

  /// The one in use: the user's choice, here or in the desktop's own settings.
  [[nodiscard]] const HotKeyShortcut& shortcut() const { return instead_ ? *instead_ : shortcut_; }
  /// The keys in force: those that the desktop gave, else the shortcut.
  [[nodiscard]] std::string display() const;
  /// Whether the desktop says which keys these are, whatever this program would choose.
  [[nodiscard]] bool isGiven() const;
  /// What stands between the program and keys that the desktop would give it.
  enum class Consent { notMissing, notAskedFor, refused };
  [[nodiscard]] Consent consent() const { return consent_; }
  /// Whether this desktop lets programs have shortcuts, as far as it has said so.
  [[nodiscard]] bool canBeHad() const { return handlerInstalled_ && !isAbsent_; }
  [[nodiscard]] bool isRegistered() const { return reference_.has_value(); }

 private:
  struct Candidate {
    HotKeyShortcut shortcut;
    HotKeyRef reference = 0;
  };

  void ensureHotKeyHandler();
  void handlePress(HotKeyId id);
  void answered(HotKeyRef reference, HotKeyAnswer answer);
  void candidateAnswered(HotKeyAnswer answer);
  void note(HotKeyAnswer answer);
  void letAsk(bool may);
  void lookForOthersHeld(HotKeyRef reference);
  void fallBack();
  void dropCandidate();
  void adopt(const HotKeyShortcut& shortcut, HotKeyRef reference);
  void store(const HotKeyShortcut& shortcut);
  [[nodiscard]] std::optional<HotKeyRef> take(const HotKeyShortcut& shortcut);
  void tell(std::string_view notice) const;
  void changed() const;

  HotKeys& hotKeys_;
  UserDefaults& defaults_;
  Dispatch& dispatch_;
  HotKeyShortcut shortcut_;
  std::optional<HotKeyShortcut> instead_;  // which the desktop remembers, and nothing here stores
  std::optional<HotKeyRef> reference_;     // held, or asked for
  std::optional<Candidate> candidate_;     // asked for by `apply`
  bool handlerInstalled_ = false;
  bool isAbsent_ = false;  // so the desktop said
  bool mayAsk_ = false;
  Consent consent_ = Consent::notMissing;
  Lifetime life_;
};

}  // namespace vantorel
