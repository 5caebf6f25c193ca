// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/HotKeyRegistration.h"
#include "app/Language.h"
#include "app/ShortcutAdvice.h"
#include "chrome/ChromeServices.h"
#include "platform/Desktop.h"

namespace vantorel {

class HelpPanel;
class PrivacyPolicyPanel;
class SheetWindow;
class ShortcutPanel;

/// The windows beside the history panel, at most one of each: the recorder of the shortcut, the
/// help and the privacy policy that it leads to, the question before the history is cleared.
/// Main thread.
class AppWindows {
 public:
  /// All outlive this object.
  AppWindows(const Desktop& desktop, const ChromeServices& chrome, HotKeyRegistration& hotKey);
  ~AppWindows();
  AppWindows(const AppWindows&) = delete;
  AppWindows& operator=(const AppWindows&) = delete;

  // Wired before a window is shown.
  std::function<void(std::string_view)> onNotice;  // what the user should be told
  std::function<void()> onToggleLaunchAtLogin;
  std::function<void(bool includingPinned)> onClear;
  std::function<void(const std::string&)> onCopy;  // what is wanted on the clipboard

  void showShortcutPanel();
  void applyShortcut(const HotKeyShortcut& candidate);
  /// What became of a shortcut that was chosen; also when the desktop answered later.
  void shortcutApplied(HotKeyRegistration::ApplyResult result);
  /// The shortcut is another than before, or can be had no more.
  void shortcutChanged();
  /// The registered shortcut was pressed: whether it is recorded, since the recorder could not have
  /// the keyboard.
  [[nodiscard]] bool recordPressedShortcut();

  /// At the first start of all, a moment later.
  void showFirstLaunchHelpIfNeeded();
  /// Replaces the help that is open.
  void showHelpPanel(bool isFirstLaunch);
  /// Whether the welcome of the first start is open or about to be: whoever starts the application
  /// over has to show it again, for it comes only once by itself.
  [[nodiscard]] bool isWelcoming() const { return welcoming_; }
  void showPrivacyPolicy();

  /// A question that is open already comes to the front.
  void confirmClearHistory();

  /// Whether a question of the desktop's about the shortcut would come to a user who knows what it
  /// is about, and has no keys yet.
  [[nodiscard]] bool mayAskForShortcut() const;

  /// All go when the screen is locked; a welcome comes again after that.
  void lockChanged();
  /// Gives the keyboard back, and shows no welcome any more.
  void stop();

 private:
  /// The keys that open the history, or the command where there are none.
  [[nodiscard]] std::string opener() const;
  [[nodiscard]] std::optional<ShortcutAdvice> advice() const;
  /// Whether the user wanted our command in the desktop's own list.
  [[nodiscard]] bool standsInList() const;
  [[nodiscard]] bool putIntoList();
  void toggleInList();
  void adviceTaken();
  void helpClosed();
  void closeShortcutPanel();
  void resetShortcut();
  void closeHelpPanel();
  void openAccessibilitySettings();
  void helpLaunchAtLoginChanged();
  void closePrivacyPolicy();

  const Desktop& desktop_;
  const ChromeServices chrome_;
  HotKeyRegistration& hotKey_;
  std::unique_ptr<Timer> onboarding_;
  bool welcoming_ = false;
  Language language_ = userLanguage();  // until the user asks for the other one
  std::unique_ptr<SheetWindow> clearQuestion_;
  std::unique_ptr<ShortcutPanel> shortcutPanel_;
  std::unique_ptr<HelpPanel> helpPanel_;
  std::unique_ptr<PrivacyPolicyPanel> privacyPanel_;
};

}  // namespace vantorel
