// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <memory>

#include "platform/WindowBackdrops.h"

class QWidget;

namespace vantorel {

/// The shadow of a rounded window where nothing else gives it one: a window of its own around that
/// window, right below it, which takes no input and is no part of its frame. It is shown only while
/// the window is seen, and comes after the window's first picture; between two showings it is kept.
/// The window owns it. Main thread.
class WindowShadow : public QObject {
  Q_OBJECT

 public:
  /// `window` has a native window, and `backdrops` outlives it; null: there are no shadows.
  WindowShadow(QWidget& window, double cornerRadius, const WindowBackdrops* backdrops);
  ~WindowShadow() override;
  WindowShadow(const WindowShadow&) = delete;
  WindowShadow& operator=(const WindowShadow&) = delete;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  class Surface;

  [[nodiscard]] bool isWanted() const;
  void refresh();
  void hide();
  void follow();
  void place();

  QWidget& window_;
  double cornerRadius_;
  const WindowBackdrops* backdrops_;
  std::unique_ptr<Surface> surface_;  // from the first showing on
  std::unique_ptr<Observation> backdropChanges_;
};

}  // namespace vantorel
