// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "panel/PinDropTarget.h"
#include "platform/Dispatch.h"

class QWidget;
class QWindow;

namespace vantorel {

class ClipRowView;
class PinDragGhost;

/// A pinned row on its way to another place of its list, by the pointer that holds it. The list's
/// rows are the same as long as it lasts. Main thread.
class PinDrag : public QObject {
  Q_OBJECT

 public:
  /// `rows` are all of the list, children of `list`; `dragged` is one of them.
  PinDrag(QWidget& list, std::vector<ClipRowView*> rows, ClipRowView& dragged, Dispatch& dispatch);
  ~PinDrag() override;

  /// Escape was pressed. This may be destroyed by it.
  std::function<void()> onEscape;
  /// The list is to be scrolled by so many points, downwards if positive.
  std::function<void(double)> onScroll;

  [[nodiscard]] ClipRowView& dragged() const { return dragged_; }

  /// Begins, where the row was pressed, or goes on: the pointer is here on the desktop.
  void moveTo(const QPoint& pointer);

  struct Drop {
    Uuid dragged;
    Uuid onto;
    DropPlace place;
  };
  /// What letting go here does; nothing where the pin cannot go.
  [[nodiscard]] std::optional<Drop> drop(const QPoint& pointer);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void followPointer();
  void markTarget(const std::optional<PinDropTarget>& target);
  [[nodiscard]] double scrollStep() const;
  void scroll();

  QWidget& list_;
  std::vector<ClipRowView*> rows_;
  std::vector<DropRow> places_;
  ClipRowView& dragged_;
  Dispatch& dispatch_;
  QPointer<QWindow> window_;
  std::unique_ptr<PinDragGhost> ghost_;
  std::optional<QPoint> grip_;  // from the dragged row's place to the pointer, when it began
  QPoint pointer_;              // on the desktop
  std::optional<PinDropTarget> target_;
  std::unique_ptr<Timer> scrolling_;
};

}  // namespace vantorel
