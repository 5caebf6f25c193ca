// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>

#include "platform/Bitmap.h"

class QPainter;
class QPalette;
class QRectF;

namespace vantorel {

/// The icon of the application that an entry is from, within a row that draws it.
class SourceIconView {
 public:
  enum class State {
    pending,  // perhaps asked for, but not answered: nothing is drawn
    unknown,  // nobody knows the application, or it has no icon
    icon
  };

  void setPending();
  void setUnknown();
  /// Null: unknown.
  void setIcon(SharedBitmap icon);
  [[nodiscard]] State state() const { return state_; }

  void draw(QPainter& painter, const QRectF& area, const QPalette& palette);

 private:
  State state_ = State::pending;
  SharedBitmap icon_;
  QPixmap prepared_;  // as drawn last
};

}  // namespace vantorel
