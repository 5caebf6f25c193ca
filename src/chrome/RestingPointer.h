// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPoint>
#include <optional>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"

class QWidget;

namespace vantorel {

/// Tells a pointer that goes to things from one that things come to. A window that comes to a
/// pointer at rest is not entered before the pointer moves. What moves under the pointer within the
/// window is entered and left as if the pointer had moved, and can tell that it has not. Main
/// thread.
class RestingPointer : public QObject {
  Q_OBJECT

 public:
  /// `window` has its native window already, and outlives this.
  RestingPointer(QWidget& window, Dispatch& dispatch);

  /// Something in the window has moved. What is under the pointer then is told in a later turn.
  void contentMoved();

  /// Whether what is entered or moved over at this moment has come to the pointer.
  [[nodiscard]] bool isFollowed() const { return followed_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool restsAt(const QPoint& pointer);
  void follow();

  QWidget& window_;
  Dispatch& dispatch_;
  std::optional<QPoint> rest_;  // where the pointer was when the window was shown or left
  bool isPlaceUntold_ = false;  // since the window was shown
  bool enterIsDue_ = false;     // the window is entered once the pointer moves
  bool awaited_ = false;
  bool followed_ = false;
  Lifetime life_;
};

}  // namespace vantorel
