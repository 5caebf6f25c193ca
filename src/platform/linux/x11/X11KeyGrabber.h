// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>

#include "platform/HotKeys.h"
#include "platform/linux/x11/HotKeyGrabs.h"
#include "platform/linux/x11/X11Keyboard.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// Holds keys grabbed for this program and tells of each press, on a thread of its own. When
/// keyboards or modifiers change it moves the grabs to where the keys are now.
class X11KeyGrabber {
 public:
  /// `onPress` runs on the thread.
  X11KeyGrabber(std::unique_ptr<X11Connection> connection, std::function<void(HotKeyRef)> onPress);
  ~X11KeyGrabber();
  X11KeyGrabber(const X11KeyGrabber&) = delete;
  X11KeyGrabber& operator=(const X11KeyGrabber&) = delete;

  [[nodiscard]] bool isAvailable() const { return keyboard_.isAvailable(); }

  /// Takes the combination in every state of the Lock keys, or nothing of it: false when somebody
  /// has one of them (this program too) or the keyboard lacks a key. Waits for the server. Main
  /// thread.
  [[nodiscard]] bool add(HotKeyRef reference, HotKeyCombination combination);
  /// Gives it back; a press that begins later goes to whoever has the keyboard. Main thread.
  void remove(HotKeyRef reference);

 private:
  struct Registration {
    HotKeyCombination combination;
    std::set<KeyGrab> grabs;  // held now
  };

  [[nodiscard]] bool addOnThread(HotKeyRef reference, HotKeyCombination combination);
  /// A key that is held when it is taken, as one that was just recorded is, repeats: none of that
  /// is a press.
  void expectRelease(X11KeyCode code);
  void handle(const xcb_generic_event_t& event);
  void pressed(const xcb_key_press_event_t& event);
  void released(const xcb_key_release_event_t& event);
  void regrab();
  [[nodiscard]] std::set<KeyGrab> grab(const std::set<KeyGrab>& grabs);
  void ungrab(const std::set<KeyGrab>& grabs);

  std::function<void(HotKeyRef)> onPress_;
  X11Thread thread_;
  X11Keyboard keyboard_;

  // On the thread.
  KeyboardMap map_;
  std::map<HotKeyRef, Registration> registrations_;
  std::set<X11KeyCode> down_;  // held since a press that was told, or since they were taken
  X11Thread::TimerId regrabTimer_ = 0;
};

}  // namespace vantorel
