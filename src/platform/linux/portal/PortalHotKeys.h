// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/HotKeys.h"

namespace vantorel {

class Portal;

/// Shortcuts by the desktop's portal. It knows one of this program, asks its user the first time
/// and from then on gives the same keys without a question. Which keys that are the user may change
/// in the desktop's settings; this program may not, so while it holds some, others are not to be
/// had. Where none are, they stay awaited: a portal that comes later may have them. Main thread.
class PortalHotKeys : public HotKeys {
 public:
  /// Both outlive this.
  PortalHotKeys(Dispatch& dispatch, Portal& portal);
  /// Gives the keys back.
  ~PortalHotKeys() override;
  PortalHotKeys(const PortalHotKeys&) = delete;
  PortalHotKeys& operator=(const PortalHotKeys&) = delete;

  [[nodiscard]] bool installHandler(std::function<void(HotKeyId)> handler) override;
  void removeHandler() override { handler_ = nullptr; }
  /// In place of one that is awaited.
  [[nodiscard]] std::optional<HotKeyRef> registerHotKey(const HotKeyCombination& combination,
                                                        HotKeyId id) override;
  void unregisterHotKey(HotKeyRef reference) override;
  [[nodiscard]] bool isAwaited(HotKeyRef reference) const override;
  void setAnswerHandler(const std::function<void(HotKeyRef, HotKeyAnswer)>& handler) override {
    answerHandler_ = handler;
  }
  void setMayAsk(bool may) override { mayAsk_ = may; }
  [[nodiscard]] std::string given(HotKeyRef reference) const override;

 private:
  struct Registration {
    HotKeyRef reference = 0;
    HotKeyId id;
    std::optional<HotKeyAnswer> answer = {};
    std::string keys = {};
    [[nodiscard]] bool isHeld() const { return answer == HotKeyAnswer::held; }
  };

  void answered(HotKeyRef reference, HotKeyAnswer answer, const std::string& keys);
  void pressed(HotKeyRef reference) const;
  [[nodiscard]] bool isRegistered(HotKeyRef reference) const {
    return registration_ && registration_->reference == reference;
  }

  Portal& portal_;
  std::function<void(HotKeyId)> handler_;
  std::function<void(HotKeyRef, HotKeyAnswer)> answerHandler_;
  std::optional<Registration> registration_;
  HotKeyRef lastReference_ = 0;
  bool mayAsk_ = true;
  Lifetime life_;
};

}  // namespace vantorel
