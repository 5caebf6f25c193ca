// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/HotKeys.h"
#include "platform/linux/x11/X11KeyGrabber.h"

namespace vantorel {

/// System-wide shortcuts by passive grabs on the root window, on a connection and thread of their
/// own, so that a press is noticed at once whatever the main thread does.
class X11HotKeys : public HotKeys {
 public:
  /// `dispatch` outlives the result. Null when there is no X server that knows keyboards.
  [[nodiscard]] static std::unique_ptr<X11HotKeys> open(Dispatch& dispatch,
                                                        const std::string& display = {});
  ~X11HotKeys() override;

  [[nodiscard]] bool installHandler(std::function<void(HotKeyId)> handler) override;
  void removeHandler() override;
  [[nodiscard]] std::optional<HotKeyRef> registerHotKey(const HotKeyCombination& combination,
                                                        HotKeyId id) override;
  void unregisterHotKey(HotKeyRef reference) override;

 private:
  X11HotKeys(Dispatch& dispatch, std::unique_ptr<X11Connection> connection);
  void announce(HotKeyRef reference) const;

  std::function<void(HotKeyId)> handler_;
  std::map<HotKeyRef, HotKeyId> ids_;
  HotKeyRef lastReference_ = 0;
  Lifetime life_;          // before the grabber, which gets a guarded callback
  X11KeyGrabber grabber_;  // its thread tells of presses
};

}  // namespace vantorel
