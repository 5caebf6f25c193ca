// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"

class QWidget;

namespace vantorel {

class ClipRowView;

/// Has screen readers say which row of the list is selected, once, while the list has the keyboard.
/// Main thread.
class SpokenSelection {
 public:
  /// `selected` answers the row, or null when there is none. All outlive this.
  SpokenSelection(QWidget& list, Dispatch& dispatch, std::function<ClipRowView*()> selected);

  /// A reader should say this: it is where it was, but something else is there.
  std::function<void(const QString&)> onSay;

  /// What is selected may be another row, or another entry.
  void tell();
  /// The reader was elsewhere meanwhile, or nothing is shown any more.
  void forget() { told_.reset(); }

 private:
  void tellNow();

  /// Where the reader was sent last, and what it found there.
  struct Told {
    ClipRowView* row = nullptr;
    QString name;
    bool pinned = false;
  };

  QWidget& list_;
  Dispatch& dispatch_;
  std::function<ClipRowView*()> selected_;
  std::optional<Told> told_;
  bool tells_ = false;  // in a later turn
  Lifetime life_;
};

}  // namespace vantorel
