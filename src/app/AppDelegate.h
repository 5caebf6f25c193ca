#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "app/ApplicationCommands.h"
#include "app/FocusTracker.h"
#include "app/HotKeyRegistration.h"
#include "app/PauseExpiry.h"
#include "app/StatusMenu.h"
#include "capture/ClipboardWatcher.h"
#include "capture/PrivacyPreferences.h"
#include "chrome/ToastPresenter.h"
#include "panel/HistoryPanelController.h"
#include "paste/PasteController.h"
#include "platform/Desktop.h"
#include "store/ClipStore.h"

namespace vantorel {

class HelpPanel;
class PrivacyPolicyPanel;
class SheetWindow;
class ShortcutPanel;
class StatusMenuPopup;

/// The application's one object: owns every long-lived service and wires them to one another.
/// Main thread.
class AppDelegate : public ApplicationCommands {
 public:
  /// Builds the store, which asks the keychain for its key; nothing else begins yet. The ports
  /// outlive this object.
  explicit AppDelegate(const Desktop& desktop);
  ~AppDelegate() override;
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;

  void applicationDidFinishLaunching();
  /// Stops timers and observers and gives the shortcut back. The history has been saved after
  /// every change that could be saved.
  void applicationWillTerminate();
  /// Another start of the program, or a click on its icon: brings up the panel, unless one of the
  /// windows is there.
  void applicationShouldHandleReopen();

  /// The user asked the program to end.
  std::function<void()> onQuit;

  void openHistory() override;
  void openSearch() override;

  // What the status menu does beside that. Each tells its result by a toast.
  void pauseFifteenMinutes() override;
  void pauseOneHour() override;
  void pauseUntilTomorrow() override;
  void resumeHistory() override;
  void togglePasswordManagerPrivacy() override;
  /// Excludes the application that a paste would go to; nothing happens when there is none.
  void excludeCurrentApp() override;
  void removeExcludedApp(const std::string& bundleIdentifier) override;
  void toggleLaunchAtLogin() override;
  /// Asks first; a question that is open already comes to the front.
  void confirmClearHistory() override;
  void quit() override;

  /// Pops the status menu up under the pointer, for desktops that show none.
  void showStatusMenu() override;

  // The recorder of the shortcut. Each of these is the end of a window where it applies.
  void showShortcutPanel() override;
  void closeShortcutPanel();
  void resetShortcut();
  void applyShortcut(const HotKeyShortcut& candidate);

  // Help, and what it leads to. Showing one anew replaces the one that is open.
  void showAbout() override { showHelpPanel(false); }
  void showHelpPanel(bool isFirstLaunch);
  void closeHelpPanel();
  /// Whether the welcome of the first start is open or about to be: whoever starts the application
  /// over has to show it again, for it comes only once by itself.
  [[nodiscard]] bool isWelcoming() const { return welcoming_; }
  void showPrivacyPolicy();
  void closePrivacyPolicy();
  void openAccessibilitySettings();
  void helpLaunchAtLoginChanged();

 private:
  void configureMenuBar();
  [[nodiscard]] StatusMenuState statusMenuState();
  void showStatusMenu(Point at);
  void refreshStatusItem();
  void clearHistory(bool includingPinned);
  void configureHotKey();
  void configureServices();
  void pause(Seconds interval, std::string_view notice);
  void show(std::string_view notice);
  void keepContents(const ClipItem& item, std::function<void()> done);
  void warmUp();
  void showFirstLaunchHelpIfNeeded();
  /// The registered shortcut was pressed while the recorder could not have the keyboard.
  [[nodiscard]] bool recordPressedShortcut();
  [[nodiscard]] ChromeServices chromeServices() const;

  // Built once, at the first use.
  ClipboardWatcher& watcher();
  PasteController& pasteController();
  HistoryPanelController& panelController();

  const Desktop desktop_;
  const std::unique_ptr<SerialQueue> recognitionQueue_;
  ClipStore store_;
  PrivacyPreferences privacy_;
  ToastPresenter toast_;
  HotKeyRegistration hotKey_;
  FocusTracker focus_;
  PauseExpiry pauseExpiry_;
  std::unique_ptr<PasteController> pasteController_;
  std::unique_ptr<ClipboardWatcher> watcher_;
  std::unique_ptr<HistoryPanelController> panelController_;
  std::unique_ptr<Timer> onboarding_;
  bool welcoming_ = false;
  std::unique_ptr<StatusMenuPopup> statusMenu_;
  std::unique_ptr<SheetWindow> clearQuestion_;
  std::unique_ptr<ShortcutPanel> shortcutPanel_;
  std::unique_ptr<HelpPanel> helpPanel_;
  std::unique_ptr<PrivacyPolicyPanel> privacyPanel_;
  /// Callbacks hold it weakly and do nothing once it is gone.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace vantorel
