// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace vantorel {

/// Has screen readers say a sentence that they would not come across: nothing that the keyboard is
/// in says it. Nobody sees it. Main thread.
class SpokenNotice : public QWidget {
  Q_OBJECT

 public:
  explicit SpokenNotice(QWidget* window);

  void say(const QString& sentence);
  /// Keeps nothing of what was said last.
  void forget() { setAccessibleName({}); }
};

}  // namespace vantorel
