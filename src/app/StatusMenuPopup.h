// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "chrome/ChromeServices.h"
#include "platform/MenuRow.h"

namespace vantorel {

class VantorelMenu;

/// The status menu as a menu of our own, where the desktop's bar does not show it. Main thread.
class StatusMenuPopup {
 public:
  /// All outlive this object.
  explicit StatusMenuPopup(const ChromeServices& services);
  ~StatusMenuPopup();
  StatusMenuPopup(const StatusMenuPopup&) = delete;
  StatusMenuPopup& operator=(const StatusMenuPopup&) = delete;

  std::function<void(const MenuRow&)> onChosen;

  /// Shows the rows with the menu's corner at that place, or near it where the screen ends. A menu
  /// that is open gives way.
  void popUp(const std::vector<MenuRow>& rows, Point at);
  /// Takes a menu that is open away, nothing chosen.
  void close();

 private:
  void fill(VantorelMenu& menu, const std::vector<MenuRow>& rows);
  void add(VantorelMenu& menu, const MenuRow& row);
  void takeInput(int attempts);

  ChromeServices services_;
  std::unique_ptr<VantorelMenu> menu_;
  std::unique_ptr<Timer> nextAttempt_;
};

}  // namespace vantorel
