#pragma once

#include "platform/HotKeys.h"

namespace vantorel {

/// Where no program can have a shortcut that reaches it over every window.
class AbsentHotKeys : public HotKeys {
 public:
  [[nodiscard]] bool installHandler(std::function<void(HotKeyId)> /*handler*/) override {
    return false;
  }
  void removeHandler() override {}
  [[nodiscard]] std::optional<HotKeyRef> registerHotKey(KeyCode /*keyCode*/,
                                                        HotKeyModifiers /*modifiers*/,
                                                        HotKeyId /*id*/) override {
    return std::nullopt;
  }
  void unregisterHotKey(HotKeyRef /*reference*/) override {}
};

}  // namespace vantorel
