// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/HotKeys.h"

namespace vantorel {

/// A keyboard whose shortcuts are pressed by the test. As on a desktop, one combination can be
/// registered once only.
class FakeHotKeys : public HotKeys {
 public:
  struct Registered {
    KeyCode keyCode = 0;
    HotKeyModifiers modifiers = 0;
    HotKeyId id;
    friend bool operator==(const Registered&, const Registered&) = default;
  };

  [[nodiscard]] bool installHandler(std::function<void(HotKeyId)> handler) override;
  void removeHandler() override;
  [[nodiscard]] std::optional<HotKeyRef> registerHotKey(const HotKeyCombination& combination,
                                                        HotKeyId id) override;
  void unregisterHotKey(HotKeyRef reference) override;
  [[nodiscard]] std::optional<HotKeyCombination> heldInstead(HotKeyRef reference) const override {
    return reference == chosenFor_ ? chosen_ : std::nullopt;
  }
  [[nodiscard]] bool isAwaited(HotKeyRef reference) const override {
    return awaited_.contains(reference);
  }
  void setAnswerHandler(const std::function<void(HotKeyRef, HotKeyAnswer)>& handler) override {
    answerHandler_ = handler;
  }
  void setMayAsk(bool may) override { mayAsk_ = may; }
  [[nodiscard]] std::string given(HotKeyRef reference) const override {
    return registered_.contains(reference) ? given_ : std::string();
  }

  // The test's side.

  /// Delivers a press with that id, registered or not; nothing happens without a handler.
  void pressHotKey(HotKeyId id);
  /// Presses a combination; false when nobody registered it.
  bool press(KeyCode keyCode, HotKeyModifiers modifiers);
  /// Another program has, or gives up, that combination.
  void take(KeyCode keyCode, HotKeyModifiers modifiers) { taken_.insert({keyCode, modifiers}); }
  void giveUp(KeyCode keyCode, HotKeyModifiers modifiers) { taken_.erase({keyCode, modifiers}); }
  /// From now on a registration is answered when the test says so.
  void setAnswersLater(bool later) { answersLater_ = later; }
  /// From now on a registration replaces one that is awaited.
  void setReplacesAwaited(bool replaces) { replacesAwaited_ = replaces; }
  /// From now on one that is answered with "absent" is awaited further.
  void setStaysAwaited(bool stays) { staysAwaited_ = stays; }
  [[nodiscard]] bool mayAsk() const { return mayAsk_; }
  /// From now on the desktop calls the keys that it gives so.
  void give(const std::string& keys) { given_ = keys; }
  /// Answers the newest registration.
  void answer(HotKeyAnswer answer);
  /// The user chooses other keys in the desktop's settings for the newest registration.
  void chooseInstead(const HotKeyCombination& keys);
  /// Called before a shortcut is given back.
  std::function<void()> onUnregister;
  void setHandlerInstallFails(bool fails) { installFails_ = fails; }

  [[nodiscard]] bool hasHandler() const { return static_cast<bool>(handler_); }
  [[nodiscard]] int handlerInstalls() const { return installs_; }
  [[nodiscard]] std::vector<Registered> registered() const;
  /// "register", "unregister" and "removeHandler", in the order they came.
  [[nodiscard]] const std::vector<std::string>& log() const { return log_; }

 private:
  std::function<void(HotKeyId)> handler_;
  std::map<HotKeyRef, Registered> registered_;
  std::function<void(HotKeyRef, HotKeyAnswer)> answerHandler_;
  std::set<HotKeyRef> awaited_;
  HotKeyRef chosenFor_ = 0;
  std::optional<HotKeyCombination> chosen_;
  bool answersLater_ = false;
  bool replacesAwaited_ = false;
  bool staysAwaited_ = false;
  bool mayAsk_ = true;
  std::string given_;
  std::set<std::pair<KeyCode, HotKeyModifiers>> taken_;
  std::vector<std::string> log_;
  HotKeyRef nextReference_ = 1;
  int installs_ = 0;
  bool installFails_ = false;
};

}  // namespace vantorel
