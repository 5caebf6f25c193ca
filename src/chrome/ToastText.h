// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QString>

namespace vantorel {

/// A message made to fit into a toast. What is too long for one line has its letters condensed a
/// little; what still is gets a second line, smaller; only the rest of that one ends with an
/// ellipsis. A refusal says what is refused at its end, so the end is worth much.
struct ToastText {
  QString text;  // with a line end between two lines
  QFont font;

  /// `message` is one line; `width` is what a line may take, in points.
  [[nodiscard]] static ToastText fitted(const QString& message, int width);
};

}  // namespace vantorel
