#include "app/AppDelegate.h"
#include "chrome/CheckBox.h"
#include "chrome/SheetWindow.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr Seconds fifteenMinutes{900};
constexpr Seconds oneHour{3'600};
constexpr Seconds aDay{86'400};  // from now, whatever the time of the day is

}  // namespace

void AppDelegate::pauseFifteenMinutes() {
  pause(fifteenMinutes, "Clipboard history paused for 15 minutes.");
}

void AppDelegate::pauseOneHour() { pause(oneHour, "Clipboard history paused for 1 hour."); }

void AppDelegate::pauseUntilTomorrow() { pause(aDay, "Clipboard history paused until tomorrow."); }

void AppDelegate::pause(Seconds interval, std::string_view notice) {
  privacy_.setPausedUntil(advanced(desktop_.dispatch.now(), interval));
  refreshStatusItem();
  show(notice);
}

// What was copied meanwhile stays unrecorded.
void AppDelegate::resumeHistory() {
  privacy_.setPausedUntil(std::nullopt);
  watcher().advanceLastChangeCount();
  refreshStatusItem();
  show("Clipboard history resumed.");
}

void AppDelegate::togglePasswordManagerPrivacy() {
  static constexpr auto key = PrivacyPreferences::ignorePasswordManagersKey;
  const auto ignores = [this] { return desktop_.defaults.boolean(key).value_or(false); };
  desktop_.defaults.set(key, !ignores());
  show(ignores() ? "Password managers will be ignored." : "Password manager history enabled.");
}

void AppDelegate::excludeCurrentApp() {
  const auto& target = focus_.lastPasteTarget();
  if (!target || !target->bundleIdentifier) return;
  auto excluded = privacy_.excludedBundleIds();
  excluded.insert(lowerCased(*target->bundleIdentifier));
  privacy_.setExcludedBundleIds(excluded);
  show(target->localizedName.value_or("App") + " excluded from history.");
}

void AppDelegate::removeExcludedApp(const std::string& bundleIdentifier) {
  auto excluded = privacy_.excludedBundleIds();
  excluded.erase(bundleIdentifier);
  privacy_.setExcludedBundleIds(excluded);
  show("App included in clipboard history.");
}

void AppDelegate::toggleLaunchAtLogin() {
  const auto status = desktop_.loginItem.status();
  if (status == LoginItem::Status::unavailable) return;
  const bool wasEnabled = status == LoginItem::Status::enabled;
  const bool done =
      wasEnabled ? desktop_.loginItem.unregisterItem() : desktop_.loginItem.registerItem();
  if (!done) return show("Could not change Launch at Login.");
  show(wasEnabled ? "Launch at Login disabled." : "Vantorel will launch at login.");
}

void AppDelegate::confirmClearHistory() {
  if (clearQuestion_) {
    clearQuestion_->raise();
    return clearQuestion_->activateWindow();
  }
  clearQuestion_ = std::make_unique<SheetWindow>(
      SheetWindow::Question{"Clear Clipboard History?",
                            "Removes history and image previews. Pinned clips are kept unless you "
                            "include them below.",
                            "Clear", "Cancel", SheetWindow::Style::warning},
      chromeServices(), nullptr);
  auto* pinnedToo = new CheckBox("Also delete pinned clips", clearQuestion_.get());
  clearQuestion_->setAccessory(pinnedToo);
  clearQuestion_->onFinished = [this, pinnedToo](SheetWindow::Answer answer) {
    const bool includingPinned = pinnedToo->isChecked();
    clearQuestion_.release()->deleteLater();  // it is what is calling
    if (answer == SheetWindow::Answer::accepted) clearHistory(includingPinned);
  };
  clearQuestion_->begin(pinnedToo);
}

void AppDelegate::clearHistory(bool includingPinned) {
  store_.clear(includingPinned);
  show(includingPinned ? "All clipboard history cleared." : "History cleared. Pinned clips kept.");
}

void AppDelegate::quit() {
  if (onQuit) onQuit();
}

}  // namespace vantorel
