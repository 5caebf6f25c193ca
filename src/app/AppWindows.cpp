// SPDX-License-Identifier: MIT
#include "app/AppWindows.h"

#include <QCoreApplication>
#include <optional>
#include <string>

#include "app/HelpPanel.h"
#include "app/PrivacyPolicyPanel.h"
#include "app/ShortcutPanel.h"
#include "chrome/CheckBox.h"
#include "chrome/Geometry.h"
#include "chrome/SheetWindow.h"
#include "chrome/WorkspaceWindows.h"

namespace vantorel {
namespace {

constexpr std::string_view didShowOnboardingKey = "didShowOnboardingV2";
constexpr Seconds onboardingDelay{0.3};
constexpr std::string_view unavailablePrompt = "That shortcut is unavailable. Try another.";
constexpr std::string_view givenPrompt = "These keys are changed in the desktop's own settings";
// What opens the window where the keys are the user's own affair.
constexpr std::string_view toggleCommand = "vantorel --toggle";
constexpr std::string_view canPaste = "This desktop allows automatic paste.";
constexpr std::string_view cannotPaste = "No automatic paste here. Press ⌘V to paste.";
// Shown where the application carries no version; the program always sets one.
constexpr auto versionWithoutOne = "0.3.1";

void showInTheMiddle(VantorelPanel& panel, const Desktop& desktop) {
  if (const auto screen = desktop.screens.mainScreen()) {
    const auto& area = screen->visibleFrame;
    panel.move(toQPoint({area.midX() - panel.width() / 2.0, area.midY() - panel.height() / 2.0}));
  }
  showOnAllWorkspaces(panel, &desktop.spaces);
  panel.makeKeyAndOrderFront();
}

/// The call may come from the window itself, so it is deleted in a later turn.
template <class Window>
void closeWindow(std::unique_ptr<Window>& window) {
  if (!window) return;
  dismiss(*window);
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

AppWindows::AppWindows(const Desktop& desktop, const ChromeServices& chrome,
                       HotKeyRegistration& hotKey)
    : desktop_(desktop), chrome_(chrome), hotKey_(hotKey) {}

AppWindows::~AppWindows() = default;

void AppWindows::showShortcutPanel() {
  closeShortcutPanel();
  shortcutPanel_ = std::make_unique<ShortcutPanel>(
      chrome_, desktop_.keyboardGrabs, desktop_.keyCodeForScanCode, hotKey_.display(), advice());
  shortcutPanel_->onRecorded = [this](const HotKeyShortcut& candidate) {
    applyShortcut(candidate);
  };
  shortcutPanel_->onReset = [this] { resetShortcut(); };
  shortcutPanel_->onCancel = [this] { closeShortcutPanel(); };
  shortcutPanel_->onAction = [this] { adviceTaken(); };
  shortcutPanel_->onCopy = [this](const std::string& line) { onCopy(line); };
  showInTheMiddle(*shortcutPanel_, desktop_);
}

void AppWindows::closeShortcutPanel() { closeWindow(shortcutPanel_); }

void AppWindows::resetShortcut() { applyShortcut({}); }

void AppWindows::applyShortcut(const HotKeyShortcut& candidate) {
  shortcutApplied(hotKey_.apply(candidate));
}

void AppWindows::shortcutApplied(HotKeyRegistration::ApplyResult result) {
  using Result = HotKeyRegistration::ApplyResult;
  if (result == Result::unchanged) return closeShortcutPanel();
  if (result == Result::unavailable) {
    if (shortcutPanel_ && hotKey_.canBeHad()) {
      shortcutPanel_->setPrompt(hotKey_.isGiven() ? givenPrompt : unavailablePrompt);
    }
    return;
  }
  if (result == Result::asked) return;
  if (result == Result::refused) onNotice("The desktop did not give Vantorel the shortcut.");
  if (result == Result::kept && standsInList() && !putIntoList()) {
    onNotice("Could not change the shortcuts of " + desktop_.commandShortcuts->owner() + ".");
  }
  shortcutChanged();
  if (result == Result::kept || result == Result::refused) return;
  closeShortcutPanel();
  onNotice("Shortcut set to " + hotKey_.display());
}

void AppWindows::shortcutChanged() {
  if (helpPanel_) helpPanel_->setShortcut(opener());
  if (!shortcutPanel_) return;
  if (const auto advised = advice(); advised.has_value() != shortcutPanel_->isAdvising()) {
    showShortcutPanel();
  } else if (advised) {
    shortcutPanel_->setAdvice(hotKey_.shortcut().display(), *advised);
  }
}

std::string AppWindows::opener() const {
  const bool hasKeys = hotKey_.canBeHad() || standsInList();
  return hasKeys ? hotKey_.display() : std::string(toggleCommand);
}

std::optional<ShortcutAdvice> AppWindows::advice() const {
  if (hotKey_.canBeHad()) return std::nullopt;
  auto advice = ShortcutAdvice::of(desktop_.name, hotKey_.shortcut(), desktop_.programName);
  const bool stands = standsInList();
  if (hotKey_.consent() != HotKeyRegistration::Consent::notMissing && !stands) {
    advice.prompt = "The desktop gives these keys once you agree";
    advice.action = "Ask";
    return advice;
  }
  if (desktop_.commandShortcuts == nullptr) return advice;
  const auto owner = desktop_.commandShortcuts->owner();
  advice.prompt = owner + (stands ? " runs" : " can run") + " this command by these keys";
  advice.action = stands ? "Remove" : "Add to " + owner;
  return advice;
}

bool AppWindows::mayAskForShortcut() const {
  const bool isWelcomed = desktop_.defaults.boolean(didShowOnboardingKey).value_or(false);
  return isWelcomed && !welcoming_ && !standsInList();
}

void AppWindows::adviceTaken() {
  const bool needsConsent = hotKey_.consent() != HotKeyRegistration::Consent::notMissing;
  if (!needsConsent || standsInList()) return toggleInList();
  applyShortcut(HotKeyShortcut(hotKey_.shortcut()));
}

bool AppWindows::standsInList() const {
  return desktop_.commandShortcuts != nullptr && desktop_.commandShortcuts->isSet();
}

bool AppWindows::putIntoList() {
  const auto advised = advice();
  return advised && desktop_.commandShortcuts->set(withLatinKey(hotKey_.shortcut()), advised->line);
}

void AppWindows::toggleInList() {
  const bool wanted = !standsInList();
  const bool done = wanted ? putIntoList() : desktop_.commandShortcuts->remove();
  const auto owner = desktop_.commandShortcuts->owner();
  if (!done) return onNotice("Could not change the shortcuts of " + owner + ".");
  shortcutChanged();
  onNotice(wanted ? "Shortcut set to " + hotKey_.shortcut().display()
                  : "Shortcut removed from " + owner + ".");
}

bool AppWindows::recordPressedShortcut() {
  if (!shortcutPanel_) return false;
  applyShortcut(HotKeyShortcut(hotKey_.shortcut()));
  return true;
}

void AppWindows::showFirstLaunchHelpIfNeeded() {
  if (desktop_.defaults.boolean(didShowOnboardingKey).value_or(false)) return;
  desktop_.defaults.set(didShowOnboardingKey, true);
  welcoming_ = true;
  onboarding_ = desktop_.dispatch.after(onboardingDelay, [this] { showHelpPanel(true); });
}

void AppWindows::showHelpPanel(bool isFirstLaunch) {
  closeHelpPanel();
  welcoming_ = isFirstLaunch;
  if (desktop_.sessionLock.isLocked()) return;
  const HelpPanel::Facts facts{opener(), desktop_.input.isTrusted(TrustPrompt::none),
                               launchesAtLogin(desktop_.loginItem), programVersion(), language_};
  helpPanel_ = std::make_unique<HelpPanel>(
      chrome_, isFirstLaunch ? HelpPanel::Occasion::firstLaunch : HelpPanel::Occasion::about,
      facts);
  helpPanel_->onChangeShortcut = [this] { showShortcutPanel(); };
  helpPanel_->onAccessibilitySettings = [this] { openAccessibilitySettings(); };
  helpPanel_->onLaunchAtLoginChanged = [this] { helpLaunchAtLoginChanged(); };
  helpPanel_->onOtherLanguage = [this, isFirstLaunch] {
    language_ = other(language_);
    if (privacyPanel_) showPrivacyPolicy();
    showHelpPanel(isFirstLaunch);
  };
  helpPanel_->onPrivacyPolicy = [this] { showPrivacyPolicy(); };
  helpPanel_->onClose = [this] { helpClosed(); };
  showInTheMiddle(*helpPanel_, desktop_);
}

void AppWindows::closeHelpPanel() {
  welcoming_ = false;
  closeWindow(helpPanel_);
}

/// Who has just read how the window is opened is asked for what opens it.
void AppWindows::helpClosed() {
  const bool wasWelcoming = welcoming_;
  closeHelpPanel();
  const bool isOpen = hotKey_.consent() == HotKeyRegistration::Consent::notAskedFor;
  if (wasWelcoming && isOpen && mayAskForShortcut()) {
    applyShortcut(HotKeyShortcut(hotKey_.shortcut()));
  }
}

// There is nothing to switch on here: the window system lets programs press keys, or it does not.
// So the button looks again and says which.
void AppWindows::openAccessibilitySettings() {
  const bool trusted = desktop_.input.isTrusted(TrustPrompt::ask);
  if (helpPanel_) helpPanel_->setAutomaticPaste(trusted);
  onNotice(trusted ? canPaste : cannotPaste);
}

void AppWindows::helpLaunchAtLoginChanged() {
  onToggleLaunchAtLogin();
  if (helpPanel_) helpPanel_->setLaunchAtLogin(launchesAtLogin(desktop_.loginItem));
}

void AppWindows::showPrivacyPolicy() {
  closePrivacyPolicy();
  privacyPanel_ = std::make_unique<PrivacyPolicyPanel>(chrome_, language_);
  privacyPanel_->onClose = [this] { closePrivacyPolicy(); };
  showInTheMiddle(*privacyPanel_, desktop_);
}

void AppWindows::closePrivacyPolicy() { closeWindow(privacyPanel_); }

void AppWindows::confirmClearHistory() {
  if (clearQuestion_) {
    clearQuestion_->raise();
    return clearQuestion_->activateWindow();
  }
  clearQuestion_ = std::make_unique<SheetWindow>(
      SheetWindow::Question{"Clear Clipboard History?",
                            "Removes history and image previews. Pinned clips are kept unless you "
                            "include them below.",
                            "Clear", "Cancel", SheetWindow::Style::warning},
      chrome_, nullptr);
  auto* pinnedToo = new CheckBox("Also delete pinned clips", clearQuestion_.get());
  clearQuestion_->setAccessory(pinnedToo);
  clearQuestion_->onFinished = [this, pinnedToo](SheetWindow::Answer answer) {
    const bool includingPinned = pinnedToo->isChecked();
    clearQuestion_.release()->deleteLater();  // it is what is calling
    if (answer == SheetWindow::Answer::accepted) onClear(includingPinned);
  };
  clearQuestion_->begin();
}

void AppWindows::lockChanged() {
  const bool welcoming = welcoming_;
  onboarding_.reset();
  closeHelpPanel();
  closePrivacyPolicy();
  closeShortcutPanel();
  if (clearQuestion_) clearQuestion_->end(SheetWindow::Answer::cancelled);
  if (welcoming) showHelpPanel(true);
}

void AppWindows::stop() {
  onboarding_.reset();
  closeShortcutPanel();
}

}  // namespace vantorel
