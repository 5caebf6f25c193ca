// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>
#include <string>
#include <utility>

#include "paste/PasteOutcome.h"
#include "text/Unicode.h"

namespace vantorel {

namespace {

constexpr std::string_view storageUnavailable =
    "Secure storage is unavailable. Clipboard monitoring is paused.";
constexpr std::string_view settingsLost =
    "Settings could not be read. History is paused until you resume it.";
constexpr Seconds fifteenMinutes{900};
constexpr Seconds oneHour{3'600};
constexpr Seconds aDay{86'400};  // from now, whatever the time of the day is

/// Notices do not count: they come and go by themselves.
bool hasVisibleWindows() {
  const auto windows = QApplication::topLevelWidgets();
  return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
    return window->isVisible() && window->windowType() != Qt::ToolTip;
  });
}

Trouble troubleOf(const ClipStore& store) {
  switch (store.obstacle()) {
    case ClipStore::Obstacle::noKey:
      return Trouble::noKey;
    case ClipStore::Obstacle::keyMissing:
      return Trouble::keyMissing;
    case ClipStore::Obstacle::directory:
      return Trouble::folderUnusable;
    case ClipStore::Obstacle::unreadable:
      return Trouble::historyUnreadable;
    case ClipStore::Obstacle::none:
      break;
  }
  switch (store.lastSave()) {
    case SealedHistory::Outcome::failed:
      return Trouble::notSaved;
    case SealedHistory::Outcome::tooLarge:
      return Trouble::tooLarge;
    case SealedHistory::Outcome::saved:
      break;
  }
  return Trouble::none;
}

ChromeServices chromeServices(const Desktop& desktop) {
  return {desktop.dispatch, desktop.screens, desktop.accessibility, desktop.backdrops,
          &desktop.spaces};
}

}  // namespace

AppDelegate::AppDelegate(const Desktop& desktop)
    : desktop_(desktop),
      recognitionQueue_(
          desktop.dispatch.serialQueue(std::string(ClipStore::recognitionQueueLabel))),
      store_({desktop.dispatch, desktop.files, desktop.keychain, desktop.applicationSupport,
              desktop.recognition, *recognitionQueue_},
             std::nullopt, nullptr, ClipStoreLimits{}),
      intake_(store_, desktop.dispatch, desktop.distantFiles),
      privacy_(desktop.defaults, desktop.dispatch),
      toast_(chromeServices(desktop)),
      hotKey_(desktop.hotKeys, desktop.defaults, desktop.dispatch),
      focus_(desktop.workspace, desktop.dispatch),
      statusItem_(desktop_, chromeServices(desktop), privacy_, focus_, *this),
      trouble_(desktop_.notifications),
      windows_(desktop_, chromeServices(desktop), hotKey_) {
  configureWindows();
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching(StartedBy who) {
  // A log-in starts it the way that the version starts which made the item.
  startedByHand_ = who == StartedBy::hand && !desktop_.loginItem.renewItem();
  statusItem_.configureMenuBar();
  configureHotKey();
  using Asking = HotKeyRegistration::Asking;
  hotKey_.registerHotKey(windows_.mayAskForShortcut() ? Asking::allowed : Asking::tooEarly);
  configureServices();
  focus_.startFocusTracking();
  lock_ = desktop_.sessionLock.observe([this] { lockChanged(); });
  if (canRecord()) {
    watcher().start();
    if (privacy_.pausedUntil() == PrivacyPreferences::indefinitely) show(settingsLost);
  } else {
    show(storageUnavailable);
  }
  lookForTrouble();
  if (who != StartedBy::login) windows_.showFirstLaunchHelpIfNeeded();
  warmUp();
}

void AppDelegate::lookForTrouble() { trouble_.report(troubleOf(store_)); }

void AppDelegate::say(std::string_view notice) {
  if (canRecord() && !notice.empty()) show(notice);
}

void AppDelegate::applicationWillTerminate() {
  lock_.reset();
  watcher().stop();
  windows_.stop();
  hotKey_.unregisterHotKey();
  focus_.stop();
  statusItem_.stop();
}

void AppDelegate::applicationShouldHandleReopen() {
  if (!hasVisibleWindows()) openHistory();
}

bool AppDelegate::isHistoryOpen() const {
  return panelController_ && panelController_->isVisible();
}

void AppDelegate::openHistory() {
  if (!isLocked()) panelController().toggle(focus_.currentPasteTarget());
}

void AppDelegate::openSearch() {
  if (!isLocked()) panelController().openSearch(focus_.currentPasteTarget());
}

void AppDelegate::showStatusMenu() {
  if (!isLocked()) statusItem_.showStatusMenu();
}

void AppDelegate::showShortcutPanel() {
  if (!isLocked()) windows_.showShortcutPanel();
}

void AppDelegate::confirmClearHistory() {
  if (!isLocked()) windows_.confirmClearHistory();
}

void AppDelegate::showAbout() {
  if (!isLocked()) showHelpPanel(false);
}

// Keys that are still to be pressed would go into the field for the user's password.
void AppDelegate::lockChanged() {
  windows_.lockChanged();
  statusItem_.refreshStatusItem();  // its menu says so
  if (!isLocked()) return;
  if (pasteController_) pasteController_->withdraw();
  if (isHistoryOpen()) panelController_->hide();
  statusItem_.closeStatusMenu();
  toast_.hide();
}

void AppDelegate::configureHotKey() {
  hotKey_.onNotice = [this](std::string_view notice) { show(notice); };
  hotKey_.onApplied = [this](auto result) { windows_.shortcutApplied(result); };
  hotKey_.onChange = [this] { windows_.shortcutChanged(); };
  hotKey_.onPressed = [this] {
    if (!windows_.recordPressedShortcut()) openHistory();
  };
}

void AppDelegate::configureServices() {
  trouble_.onChange = [this] { statusItem_.setTrouble(trouble_.trouble()); };
  trouble_.onAction = [this] { remedy(trouble_.trouble()); };
  intake_.onNotice = [this](const std::string& notice) { show(notice); };
  store_.onChange = [this] { panelController().refreshIfVisible(); };
  store_.onSavingChange = [this] { lookForTrouble(); };
  store_.onSearchIndexChange = [this] { panelController().refreshSearchIfVisible(); };
  pasteController().onInternalPasteboardWrite = [this] { watcher().noteOwnWrite(); };
  pasteController().onOutcome = [this](PasteOutcome outcome) {
    if (const auto text = notice(outcome)) show(*text);
  };
}

void AppDelegate::configureWindows() {
  statusItem_.onUnseen = [this] {
    const bool byHand = std::exchange(startedByHand_, false);
    if (byHand && !windows_.isWelcoming()) applicationShouldHandleReopen();
  };
  windows_.onNotice = [this](std::string_view notice) { show(notice); };
  windows_.onToggleLaunchAtLogin = [this] { toggleLaunchAtLogin(); };
  windows_.onCopy = [this](const std::string& text) { copy(text); };
  windows_.onClear = [this](bool includingPinned) { clearHistory(includingPinned); };
}

void AppDelegate::pauseFifteenMinutes() {
  pause(fifteenMinutes, "Clipboard history paused for 15 minutes.");
}

void AppDelegate::pauseOneHour() { pause(oneHour, "Clipboard history paused for 1 hour."); }

void AppDelegate::pauseUntilTomorrow() { pause(aDay, "Clipboard history paused until tomorrow."); }

void AppDelegate::pause(Seconds interval, std::string_view notice) {
  privacy_.setPausedUntil(advanced(desktop_.dispatch.now(), interval));
  statusItem_.refreshStatusItem();
  show(notice);
}

// What was copied meanwhile stays unrecorded.
void AppDelegate::resumeHistory() {
  privacy_.setPausedUntil(std::nullopt);
  watcher().advanceLastChangeCount();
  statusItem_.refreshStatusItem();
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

void AppDelegate::copyEntry(const std::string& identity, const ActionAnswer& answer) {
  const auto tell = [this, answer](bool written) {
    const auto text =
        *notice(written ? PasteOutcome::clipboardOnlyNoTarget : PasteOutcome::unavailable);
    if (written) watcher().noteOwnWrite();
    show(text);
    answer(written ? std::string() : std::string(text));
  };
  const auto id = Uuid::parse(identity);
  const ClipItem* const item = id ? findById(store_.items(), *id) : nullptr;
  if (item == nullptr) return tell(false);
  pasteController().restoreToPasteboard(*item, tell);
}

void AppDelegate::importHistory(const std::string& directory, const ActionAnswer& answer) {
  if (canRecord()) return intake_.takeIn(directory, answer);
  show(storageUnavailable);
  answer(std::string(storageUnavailable));
}

void AppDelegate::clearHistory(bool includingPinned) {
  const bool recorded = canRecord();
  const bool cleared = store_.clear(includingPinned);
  if (!recorded && canRecord()) beginRecording();
  if (!canRecord()) return show(storageUnavailable);
  if (!cleared) return show("Could not clear the history on the disk.");
  show(includingPinned ? "All clipboard history cleared." : "History cleared. Pinned clips kept.");
}

void AppDelegate::copy(const std::string& text) {
  const bool copied = desktop_.pasteboard.writeString(text);
  if (copied) watcher().noteOwnWrite();
  show(copied ? "Copied to clipboard." : "Could not copy.");
}

void AppDelegate::remedy(Trouble trouble) {
  if (trouble == Trouble::noKey) return wantKey({});
  startNewHistory();
}

void AppDelegate::wantKey(const std::string& notice) {
  if (onKeyWanted) onKeyWanted(notice);
}

void AppDelegate::startNewHistory() {
  const bool recorded = canRecord();
  const auto aside = store_.setAside();
  if (!recorded && canRecord()) beginRecording();
  const auto begun =
      "A new history has begun. The old one is kept as " + aside.history.string() + ".";
  switch (aside.outcome) {
    case ClipStore::SetAside::done:
      if (!store_.secureStorage()) return wantKey(begun);
      return show(begun);
    case ClipStore::SetAside::notNeeded:
      return show("The history is open. Nothing was changed.");
    case ClipStore::SetAside::failed:
      if (aside.history.empty()) return show(storageUnavailable);
      return show("No new history could begin. The old one is kept as " + aside.history.string() +
                  ".");
  }
}

/// As at the start, but later: what lies on the pasteboard by then stays unrecorded.
void AppDelegate::beginRecording() {
  watcher().advanceLastChangeCount();
  watcher().start();
  lookForTrouble();
}

void AppDelegate::quit() {
  if (onQuit) onQuit();
}

void AppDelegate::show(std::string_view notice) {
  if (!isLocked()) toast_.show(std::string(notice));
}

// The program that owned what was copied last has ended, or is about to. The history has it, so
// paste goes on working as if that program were there.
void AppDelegate::keepContents(const ClipItem& item, std::function<void()> done) {
  pasteController().restoreToPasteboard(item, [this, done = std::move(done)](bool written) {
    if (written) watcher().noteOwnWrite();
    done();
  });
}

// What the first opening of the panel needs is built while nobody waits for it.
void AppDelegate::warmUp() {
  desktop_.dispatch.async(life_.guard([this] { panelController(); }));
}

ClipboardWatcher& AppDelegate::watcher() {
  if (!watcher_) {
    watcher_ = std::make_unique<ClipboardWatcher>(
        store_, privacy_,
        ClipboardServices{desktop_.pasteboard, desktop_.workspace, desktop_.dispatch,
                          desktop_.sessionLock});
    watcher_->onContentsLost = [this](const ClipItem& item, const std::function<void()>& done) {
      keepContents(item, done);
    };
  }
  return *watcher_;
}

PasteController& AppDelegate::pasteController() {
  if (!pasteController_) {
    pasteController_ = std::make_unique<PasteController>(
        store_, PasteServices{desktop_.pasteboard, desktop_.workspace, desktop_.input,
                              desktop_.dispatch, desktop_.distantFiles, desktop_.images});
  }
  return *pasteController_;
}

HistoryPanelController& AppDelegate::panelController() {
  if (!panelController_) {
    panelController_ = std::make_unique<HistoryPanelController>(
        store_, pasteController(),
        PanelServices{desktop_.dispatch, desktop_.screens, desktop_.monitors,
                      desktop_.accessibility, desktop_.files, desktop_.distantFiles,
                      desktop_.images, desktop_.fileThumbnails, desktop_.icons, desktop_.backdrops,
                      &desktop_.spaces, desktop_.keyCodeForScanCode});
  }
  return *panelController_;
}

}  // namespace vantorel
