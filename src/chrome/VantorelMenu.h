// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>
#include <functional>
#include <string_view>

#include "chrome/GlassFinish.h"
#include "platform/AccessibilityPreferences.h"
#include "platform/WindowBackdrops.h"

namespace vantorel {

/// A menu on rounded glass. It is shown with `popup` and never waits: rows report by their
/// actions. Main thread.
class VantorelMenu : public QMenu {
  Q_OBJECT

 public:
  /// A title as menus take it: an ampersand would mark the letter after it.
  [[nodiscard]] static QString label(std::string_view title);

  VantorelMenu(const AccessibilityPreferences& accessibility, const WindowBackdrops* backdrops,
               QWidget* parent = nullptr);

  /// The menu has gone, with or without a choice; called once for each showing, before a chosen
  /// row's action. The menu must not be destroyed by it.
  std::function<void()> onClosed;

  /// A menu of this kind behind a row of this one, which owns it.
  VantorelMenu& addSubmenu(const QString& title);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  const AccessibilityPreferences& accessibility_;
  const WindowBackdrops* backdrops_;
  GlassFinish finish_;
};

}  // namespace vantorel
