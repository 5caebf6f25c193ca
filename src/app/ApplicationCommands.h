// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/ActionAnswer.h"

namespace vantorel {

/// What a user can have the application do, from its menu or by a command. Main thread.
class ApplicationCommands {
 public:
  virtual ~ApplicationCommands() = default;

  virtual void openHistory() = 0;
  virtual void openSearch() = 0;
  /// Pops the status menu up under the pointer, for desktops that show none.
  virtual void showStatusMenu() = 0;

  // Each of these tells its result by a toast.
  virtual void pauseFifteenMinutes() = 0;
  virtual void pauseOneHour() = 0;
  virtual void pauseUntilTomorrow() = 0;
  virtual void resumeHistory() = 0;
  virtual void togglePasswordManagerPrivacy() = 0;
  /// Excludes the application that a paste would go to; nothing happens when there is none.
  virtual void excludeCurrentApp() = 0;
  virtual void removeExcludedApp(const std::string& bundleIdentifier) = 0;
  virtual void toggleLaunchAtLogin() = 0;
  /// Puts the entry of that identity on the clipboard; `answer` comes when it is there.
  virtual void copyEntry(const std::string& identity, const ActionAnswer& answer) = 0;
  /// Takes in what was exported into that directory; `answer` comes when it is saved.
  virtual void importHistory(const std::string& directory, const ActionAnswer& answer) = 0;

  virtual void showShortcutPanel() = 0;
  /// Asks first; a question that is open already comes to the front.
  virtual void confirmClearHistory() = 0;
  /// Sets a history that cannot be opened aside and records into a new one.
  virtual void startNewHistory() = 0;
  virtual void showAbout() = 0;
  virtual void quit() = 0;
};

}  // namespace vantorel
