// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "chrome/ChromeServices.h"
#include "panel/RowMenu.h"

class QPoint;
class QWidget;

namespace vantorel {

class ClipRowView;
class VantorelMenu;

/// The context menu of a row. Main thread.
class RowMenuPresenter {
 public:
  /// `list` outlives this and has the rows in it.
  RowMenuPresenter(const ChromeServices& services, QWidget& list);
  ~RowMenuPresenter();
  RowMenuPresenter(const RowMenuPresenter&) = delete;
  RowMenuPresenter& operator=(const RowMenuPresenter&) = delete;

  /// The menu has come, or gone again, before what was chosen in it is done.
  std::function<void()> onOpened;
  std::function<void()> onClosed;
  /// The action for the entry that the row had when the menu came.
  std::function<void(RowAction action, Uuid id)> onChosen;

  /// Shows the menu at this place of the desktop.
  void show(ClipRowView& row, const QPoint& place);
  void close();

 private:
  ChromeServices services_;
  QWidget& list_;
  std::unique_ptr<VantorelMenu> menu_;
};

}  // namespace vantorel
