// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "app/ApplicationCommands.h"
#include "app/FocusTracker.h"
#include "app/PauseExpiry.h"
#include "app/StatusMenu.h"
#include "app/StatusMenuPopup.h"
#include "base/Lifetime.h"
#include "capture/PrivacyPreferences.h"
#include "chrome/ChromeServices.h"
#include "platform/Desktop.h"

namespace vantorel {

/// The item in the desktop's bar, and the status menu wherever it is shown. Main thread.
class StatusItemController {
 public:
  /// The menu's commands go to `application`. All outlive this object.
  StatusItemController(const Desktop& desktop, const ChromeServices& chrome,
                       PrivacyPreferences& privacy, const FocusTracker& focus,
                       ApplicationCommands& application);

  /// There is no bar; told once.
  std::function<void()> onUnseen;

  /// Puts the item into the bar.
  void configureMenuBar();
  /// To be called whenever a pause was begun or ended.
  void refreshStatusItem();
  /// The item looks paused as long as there is a trouble, and says which.
  void setTrouble(Trouble trouble);
  /// Pops the menu up under the pointer.
  void showStatusMenu();
  void closeStatusMenu() { popup_.close(); }
  /// Takes the item away.
  void stop();

 private:
  [[nodiscard]] std::vector<MenuRow> menuRows();
  void showStatusMenu(Point at);
  void perform(const MenuRow& row);

  const Desktop& desktop_;
  PrivacyPreferences& privacy_;
  const FocusTracker& focus_;
  ApplicationCommands& application_;
  Trouble trouble_ = Trouble::none;
  PauseExpiry pauseExpiry_;
  StatusMenuPopup popup_;
  Lifetime life_;
};

}  // namespace vantorel
