// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "app/AppWindows.h"
#include "app/ApplicationCommands.h"
#include "app/FocusTracker.h"
#include "app/HistoryIntake.h"
#include "app/HotKeyRegistration.h"
#include "app/StatusItemController.h"
#include "app/TroubleReporter.h"
#include "base/Lifetime.h"
#include "capture/ClipboardWatcher.h"
#include "capture/PrivacyPreferences.h"
#include "chrome/ToastPresenter.h"
#include "panel/HistoryPanelController.h"
#include "paste/PasteController.h"
#include "platform/Desktop.h"
#include "store/ClipStore.h"

namespace vantorel {

/// The application's one object: owns every long-lived service and wires them to one another.
/// While the screen is locked nothing is shown, recorded or pasted. Main thread.
class AppDelegate : public ApplicationCommands {
 public:
  /// Builds the store, which asks the keychain for its key; nothing else begins yet. The ports
  /// outlive this object.
  explicit AppDelegate(const Desktop& desktop);
  ~AppDelegate() override;
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;

  /// Who started the program.
  enum class StartedBy {
    hand,     // with nothing else in mind: where no bar shows that it runs, the panel does
    command,  // that it was given, and does later
    login,    // nobody: nothing is shown, not even the welcome
  };
  void applicationDidFinishLaunching(StartedBy who = StartedBy::command);
  /// Stops timers and observers and gives the shortcut back. The history has been saved after
  /// every change that could be saved.
  void applicationWillTerminate();
  /// The process is about to be ended on the spot: what is owed to the disk goes there. Touches no
  /// window.
  void finishSaving() { store_.finishSaving(); }
  /// Another start of the program, or a click on its icon: brings up the panel, unless one of the
  /// windows is there.
  void applicationShouldHandleReopen();

  /// Says how the start before this one ended, unless this one has worse to say.
  void say(std::string_view notice);

  /// The user asked the program to end.
  std::function<void()> onQuit;
  /// The keyring is to be asked anew, and may ask the user, and this is to be started over, which
  /// then has that to say: the history that had a key elsewhere is set aside, or the user wants it.
  std::function<void(const std::string& notice)> onKeyWanted;

  void openHistory() override;
  void openSearch() override;
  void showStatusMenu() override;
  void pauseFifteenMinutes() override;
  void pauseOneHour() override;
  void pauseUntilTomorrow() override;
  void resumeHistory() override;
  void togglePasswordManagerPrivacy() override;
  void excludeCurrentApp() override;
  void removeExcludedApp(const std::string& bundleIdentifier) override;
  void toggleLaunchAtLogin() override;
  void copyEntry(const std::string& identity, const ActionAnswer& answer) override;
  void importHistory(const std::string& directory, const ActionAnswer& answer) override;
  void showShortcutPanel() override;
  void confirmClearHistory() override;
  void startNewHistory() override;
  void showAbout() override;
  void quit() override;

  void applyShortcut(const HotKeyShortcut& candidate) { windows_.applyShortcut(candidate); }
  void showHelpPanel(bool isFirstLaunch) { windows_.showHelpPanel(isFirstLaunch); }
  [[nodiscard]] bool isWelcoming() const { return windows_.isWelcoming(); }
  [[nodiscard]] bool isHistoryOpen() const;
  /// Started by hand, and nobody has said yet that no bar shows it.
  [[nodiscard]] bool mayShowItself() const { return startedByHand_; }
  void showPrivacyPolicy() { windows_.showPrivacyPolicy(); }

 private:
  void configureHotKey();
  void configureServices();
  void configureWindows();
  void lockChanged();
  [[nodiscard]] bool isLocked() const { return desktop_.sessionLock.isLocked(); }
  void clearHistory(bool includingPinned);
  void copy(const std::string& text);
  void remedy(Trouble trouble);
  void wantKey(const std::string& notice);
  void lookForTrouble();
  void beginRecording();
  [[nodiscard]] bool canRecord() const {
    return store_.secureStorage() && store_.persistenceIsReady();
  }
  void pause(Seconds interval, std::string_view notice);
  void show(std::string_view notice);
  void keepContents(const ClipItem& item, std::function<void()> done);
  void warmUp();

  // Built once, at the first use.
  ClipboardWatcher& watcher();
  PasteController& pasteController();
  HistoryPanelController& panelController();

  const Desktop desktop_;
  const std::unique_ptr<SerialQueue> recognitionQueue_;
  ClipStore store_;
  HistoryIntake intake_;
  PrivacyPreferences privacy_;
  ToastPresenter toast_;
  HotKeyRegistration hotKey_;
  FocusTracker focus_;
  std::unique_ptr<PasteController> pasteController_;
  std::unique_ptr<ClipboardWatcher> watcher_;
  std::unique_ptr<HistoryPanelController> panelController_;
  StatusItemController statusItem_;
  TroubleReporter trouble_;
  AppWindows windows_;
  bool startedByHand_ = false;
  std::unique_ptr<Observation> lock_;
  Lifetime life_;
};

}  // namespace vantorel
