// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Bitmap.h"
#include "platform/MenuRow.h"
#include "platform/Screens.h"

namespace vantorel {

/// A picture of which the shape alone counts: the bar that shows it chooses the colour.
struct StatusImage {
  std::string name = {};  // in the desktop's icon themes, where it is installed
  /// Answers the same as a square of so many pixels, black. Main thread.
  std::function<SharedBitmap(int side)> drawn = {};
};

/// This program's item in the desktop's bar: a picture with a tool tip and a menu. A bar may come,
/// go and come again while the program runs; there may be none. Main thread.
class StatusItem {
 public:
  /// Called on the main queue. All may be empty.
  struct Handlers {
    std::function<void()> onClick;        // the main button
    std::function<void()> onMiddleClick;  // the middle button
    /// There is no bar to show the item in. Told once, some time after the first `show`; a bar may
    /// still come.
    std::function<void()> onUnseen;
    /// The bar leaves it to this program to show the menu, there.
    std::function<void(Point)> onMenuWanted;
    /// Answers the menu's rows as they are now. Called whenever the menu is about to be shown.
    std::function<std::vector<MenuRow>()> menuRows;
    /// A row was chosen: one of those that `menuRows` has answered, perhaps some time ago.
    std::function<void(const MenuRow&)> onChosen;
  };

  virtual ~StatusItem() = default;

  /// Puts the item into the bar, and into every bar that comes later.
  virtual void show(Handlers handlers) = 0;
  /// Takes the item away. No handler is called any more, also for what has been chosen already.
  virtual void hide() = 0;

  virtual void setImage(StatusImage image) = 0;
  virtual void setToolTip(std::string toolTip) = 0;
  /// The menu's rows may have changed: a bar that shows them should ask again.
  virtual void menuChanged() = 0;
};

}  // namespace vantorel
