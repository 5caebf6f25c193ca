// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/Observers.h"
#include "platform/linux/windows/DesktopSettings.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// What an X desktop's settings manager publishes: animations switched off mean reduced motion, a
/// high-contrast theme means reduced transparency; and so does the absence of a compositor, for
/// nothing can be seen through then. A thread of its own follows the changes, so that a question
/// is answered from memory.
class X11DesktopSettings : public DesktopSettings {
 public:
  /// Knows the present state when it returns. Null when there is no X server. Changes are announced
  /// through `dispatch`, which outlives the result.
  [[nodiscard]] static std::unique_ptr<X11DesktopSettings> open(Dispatch& dispatch,
                                                                const std::string& display = {});
  ~X11DesktopSettings() override;
  X11DesktopSettings(const X11DesktopSettings&) = delete;
  X11DesktopSettings& operator=(const X11DesktopSettings&) = delete;

  [[nodiscard]] bool reduceMotion() const override { return reduceMotion_; }
  [[nodiscard]] bool reduceTransparency() const override { return highContrast_ || !composited_; }
  /// Also tells of `composited()`, `shadesWindows()` and `blurs()`.
  [[nodiscard]] std::unique_ptr<Observation> observe(std::function<void()> changed) const override;

  [[nodiscard]] std::string theme() const override;
  [[nodiscard]] std::string iconTheme() const override;

  /// Whether a compositor runs. Any thread.
  [[nodiscard]] bool composited() const { return composited_; }
  /// Whether the compositor is one that gives every window a shadow when its user wants that. Any
  /// thread.
  [[nodiscard]] bool shadesWindows() const { return composited_ && shadesWindows_; }
  /// Whether a compositor announces that it blurs what lies behind a window that asks for it, by
  /// the property `blurProperty()`. Any thread.
  [[nodiscard]] bool blurs() const { return composited_ && announcesBlur_; }
  [[nodiscard]] xcb_atom_t blurProperty() const { return blurProperty_; }

 private:
  X11DesktopSettings(Dispatch& dispatch, std::unique_ptr<X11Connection> connection);

  struct State;
  [[nodiscard]] State state() const;

  void watchSelections();
  void watchRoot();
  void read(const xcb_generic_event_t& event);
  void readCompositor();
  void readBlur();
  void followManager();
  void readSettings();
  [[nodiscard]] xcb_window_t ownerOf(xcb_atom_t selection) const;

  std::atomic<bool> reduceMotion_ = false;
  std::atomic<bool> highContrast_ = false;
  std::atomic<bool> composited_ = false;
  std::atomic<bool> shadesWindows_ = false;
  std::atomic<bool> announcesBlur_ = false;

  mutable ChangeObservers observers_;  // main thread
  mutable std::mutex mutex_;
  std::string theme_;      // guarded
  std::string iconTheme_;  // guarded

  X11Thread thread_;
  xcb_atom_t compositorSelection_;
  xcb_atom_t settingsSelection_;
  xcb_atom_t settingsProperty_;
  xcb_atom_t blurProperty_;
  xcb_atom_t supportedProperty_;            // what the window manager and the compositor understand
  xcb_window_t manager_ = XCB_WINDOW_NONE;  // of the settings; on the thread
  std::uint8_t fixesEvent_ = 0;
  Lifetime life_;
};

}  // namespace vantorel
