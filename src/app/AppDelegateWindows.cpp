#include <QCoreApplication>
#include <cmath>
#include <memory>
#include <optional>

#include "app/AppDelegate.h"
#include "app/HelpPanel.h"
#include "app/PrivacyPolicyPanel.h"
#include "app/ShortcutPanel.h"
#include "chrome/AccompanyingWindow.h"

namespace vantorel {
namespace {

constexpr std::string_view didShowOnboardingKey = "didShowOnboardingV2";
constexpr Seconds onboardingDelay{0.3};
constexpr std::string_view unavailablePrompt = "That shortcut is unavailable. Try another.";
constexpr std::string_view canPaste = "This desktop allows automatic paste.";
constexpr std::string_view cannotPaste = "No automatic paste here. Press ⌘V to paste.";
constexpr auto versionWithoutOne = "0.3.1";

void showInTheMiddle(VantorelPanel& panel, const Desktop& desktop) {
  if (const auto screen = desktop.screens.mainScreen()) {
    const auto& area = screen->visibleFrame;
    panel.move(static_cast<int>(std::lround(area.midX() - panel.width() / 2.0)),
               static_cast<int>(std::lround(area.midY() - panel.height() / 2.0)));
  }
  accompanyUser(panel, &desktop.spaces);
  panel.makeKeyAndOrderFront();
}

/// The window may be what is calling: it goes once it has come to rest.
template <class Window>
void closeWindow(std::unique_ptr<Window>& window) {
  if (!window) return;
  takeLeave(*window);
  window.release()->deleteLater();
}

std::optional<bool> launchesAtLogin(LoginItem& item) {
  const auto status = item.status();
  if (status == LoginItem::Status::unavailable) return std::nullopt;
  return status == LoginItem::Status::enabled;
}

std::string programVersion() {
  const auto version = QCoreApplication::applicationVersion();
  return version.isEmpty() ? versionWithoutOne : version.toStdString();
}

}  // namespace

ChromeServices AppDelegate::chromeServices() const {
  return {desktop_.dispatch, desktop_.screens, desktop_.accessibility, desktop_.backdrops,
          &desktop_.spaces};
}

void AppDelegate::showShortcutPanel() {
  closeShortcutPanel();
  shortcutPanel_ =
      std::make_unique<ShortcutPanel>(chromeServices(), desktop_.keyboardGrabs,
                                      desktop_.keyCodeForScanCode, hotKey_.shortcut().display());
  shortcutPanel_->onRecorded = [this](const HotKeyShortcut& candidate) {
    applyShortcut(candidate);
  };
  shortcutPanel_->onReset = [this] { resetShortcut(); };
  shortcutPanel_->onCancel = [this] { closeShortcutPanel(); };
  showInTheMiddle(*shortcutPanel_, desktop_);
}

void AppDelegate::closeShortcutPanel() { closeWindow(shortcutPanel_); }

void AppDelegate::resetShortcut() { applyShortcut({}); }

void AppDelegate::applyShortcut(const HotKeyShortcut& candidate) {
  switch (hotKey_.apply(candidate)) {
    case HotKeyRegistration::ApplyResult::unchanged:
      return closeShortcutPanel();
    case HotKeyRegistration::ApplyResult::unavailable:
      if (shortcutPanel_) shortcutPanel_->setPrompt(unavailablePrompt);
      return;
    case HotKeyRegistration::ApplyResult::applied:
      break;
  }
  const auto display = hotKey_.shortcut().display();
  if (helpPanel_) helpPanel_->setShortcut(display);
  closeShortcutPanel();
  show("Shortcut set to " + display);
}

bool AppDelegate::recordPressedShortcut() {
  if (!shortcutPanel_) return false;
  applyShortcut(HotKeyShortcut(hotKey_.shortcut()));
  return true;
}

void AppDelegate::showFirstLaunchHelpIfNeeded() {
  if (desktop_.defaults.boolean(didShowOnboardingKey).value_or(false)) return;
  desktop_.defaults.set(didShowOnboardingKey, true);
  welcoming_ = true;
  onboarding_ = desktop_.dispatch.after(onboardingDelay, [this] { showHelpPanel(true); });
}

void AppDelegate::showHelpPanel(bool isFirstLaunch) {
  closeHelpPanel();
  welcoming_ = isFirstLaunch;
  const HelpPanel::Facts facts{hotKey_.shortcut().display(),
                               desktop_.input.isTrusted(TrustPrompt::none),
                               launchesAtLogin(desktop_.loginItem), programVersion()};
  helpPanel_ = std::make_unique<HelpPanel>(
      chromeServices(),
      isFirstLaunch ? HelpPanel::Occasion::firstLaunch : HelpPanel::Occasion::about, facts);
  helpPanel_->onChangeShortcut = [this] { showShortcutPanel(); };
  helpPanel_->onAccessibilitySettings = [this] { openAccessibilitySettings(); };
  helpPanel_->onLaunchAtLoginChanged = [this] { helpLaunchAtLoginChanged(); };
  helpPanel_->onPrivacyPolicy = [this] { showPrivacyPolicy(); };
  helpPanel_->onClose = [this] { closeHelpPanel(); };
  showInTheMiddle(*helpPanel_, desktop_);
}

void AppDelegate::closeHelpPanel() {
  welcoming_ = false;
  closeWindow(helpPanel_);
}

// There is nothing to switch on here: the window system lets programs press keys, or it does not.
// So the button looks again and says which.
void AppDelegate::openAccessibilitySettings() {
  const bool trusted = desktop_.input.isTrusted(TrustPrompt::ask);
  if (helpPanel_) helpPanel_->setAutomaticPaste(trusted);
  show(trusted ? canPaste : cannotPaste);
}

void AppDelegate::helpLaunchAtLoginChanged() {
  toggleLaunchAtLogin();
  if (helpPanel_) helpPanel_->setLaunchAtLogin(launchesAtLogin(desktop_.loginItem));
}

void AppDelegate::showPrivacyPolicy() {
  closePrivacyPolicy();
  privacyPanel_ = std::make_unique<PrivacyPolicyPanel>(chromeServices(), bundledPrivacyPolicy());
  privacyPanel_->onClose = [this] { closePrivacyPolicy(); };
  showInTheMiddle(*privacyPanel_, desktop_);
}

void AppDelegate::closePrivacyPolicy() { closeWindow(privacyPanel_); }

}  // namespace vantorel
