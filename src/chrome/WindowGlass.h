// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QWidget>
#include <functional>
#include <memory>

#include "chrome/GlassFinish.h"

namespace vantorel {

/// Fits a window to its rounded glass background: its shape where nothing is seen through windows,
/// and what is blurred behind it where something is. It follows the window's size, and while the
/// window is shown what the desktop can do and what the user asks to be spared. The window owns it.
class WindowGlass : public QObject {
  Q_OBJECT

 public:
  /// What the glass stands in and on; the ports outlive the window.
  struct Setting {
    QWidget& window;
    double cornerRadius = 0;
    const AccessibilityPreferences& accessibility;
    const WindowBackdrops* backdrops = nullptr;  // null: nothing is seen through the window
  };

  /// `onFinish` learns how the glass is drawn, each time before the window is shown or changes.
  WindowGlass(const Setting& setting, std::function<void(const GlassFinish&)> onFinish);
  ~WindowGlass() override;
  WindowGlass(const WindowGlass&) = delete;
  WindowGlass& operator=(const WindowGlass&) = delete;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void followDesktop();
  void refresh();
  void applyShape();
  void applyBlur();

  Setting setting_;
  std::function<void(const GlassFinish&)> onFinish_;
  GlassFinish finish_;
  std::vector<PixelRect> blurred_;  // what was asked for last
  std::unique_ptr<Observation> preferenceChanges_;
  std::unique_ptr<Observation> backdropChanges_;
};

}  // namespace vantorel
