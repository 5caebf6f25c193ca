// SPDX-License-Identifier: MIT
#include "chrome/RestingPointer.h"

#include <QApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>
#include <utility>

namespace vantorel {

namespace {

/// On Wayland a program is told of the pointer only while it is over a window of its own.
bool isToldEverywhere() { return QGuiApplication::platformName() != QLatin1String("wayland"); }

}  // namespace

RestingPointer::RestingPointer(QWidget& window, Dispatch& dispatch)
    : window_(window), dispatch_(dispatch) {
  window_.windowHandle()->installEventFilter(this);
}

bool RestingPointer::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Show:
      isPlaceUntold_ = !isToldEverywhere();
      [[fallthrough]];
    case QEvent::Leave:
      rest_ = QCursor::pos();
      enterIsDue_ = false;
      break;
    case QEvent::Enter: {
      const auto place = static_cast<const QEnterEvent&>(*event).globalPosition().toPoint();
      // It may have been there before the window: what it does next tells.
      if (std::exchange(isPlaceUntold_, false)) rest_ = place;
      enterIsDue_ = restsAt(place);
      return enterIsDue_;
    }
    case QEvent::MouseMove: {
      const auto& move = static_cast<const QMouseEvent&>(*event);
      if (move.buttons() == Qt::NoButton && restsAt(move.globalPosition().toPoint())) return true;
      if (std::exchange(enterIsDue_, false)) {
        QEnterEvent enter(move.position(), move.scenePosition(), move.globalPosition());
        QCoreApplication::sendEvent(watched, &enter);
      }
      return false;
    }
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

bool RestingPointer::restsAt(const QPoint& pointer) {
  if (rest_ != pointer) rest_.reset();
  return rest_.has_value();
}

void RestingPointer::contentMoved() {
  if (awaited_ || !window_.underMouse()) return;
  awaited_ = true;
  dispatch_.async(life_.guard([this] { follow(); }));
}

void RestingPointer::follow() {
  awaited_ = false;
  const bool busy = QGuiApplication::mouseButtons() != Qt::NoButton ||
                    QApplication::activePopupWidget() != nullptr;
  if (busy || !window_.isVisible() || !window_.underMouse()) return;
  const QPoint pointer = QCursor::pos();
  QMouseEvent move(QEvent::MouseMove, window_.mapFromGlobal(pointer), pointer, Qt::NoButton,
                   Qt::NoButton, QGuiApplication::keyboardModifiers());
  followed_ = true;
  QCoreApplication::sendEvent(window_.windowHandle(), &move);
  followed_ = false;
}

}  // namespace vantorel
