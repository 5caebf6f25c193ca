#include "app/AppDelegate.h"

#include <QApplication>
#include <algorithm>
#include <string>
#include <utility>

#include "app/HelpPanel.h"
#include "app/PrivacyPolicyPanel.h"
#include "app/ShortcutPanel.h"
#include "app/StatusMenuPopup.h"
#include "chrome/SheetWindow.h"
#include "paste/PasteOutcome.h"

namespace vantorel {

namespace {

constexpr std::string_view storageUnavailable =
    "Secure storage is unavailable. Clipboard monitoring is paused.";

/// Notices do not count: they come and go by themselves.
bool hasVisibleWindows() {
  const auto windows = QApplication::topLevelWidgets();
  return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
    return window->isVisible() && window->windowType() != Qt::ToolTip;
  });
}

}  // namespace

AppDelegate::AppDelegate(const Desktop& desktop)
    : desktop_(desktop),
      recognitionQueue_(
          desktop.dispatch.serialQueue(std::string(ClipStore::recognitionQueueLabel))),
      store_({desktop.dispatch, desktop.files, desktop.keychain, desktop.applicationSupport,
              desktop.recognition, *recognitionQueue_},
             std::nullopt, nullptr, ClipStoreLimits{}),
      privacy_(desktop.defaults, desktop.dispatch),
      toast_(chromeServices()),
      hotKey_(desktop.hotKeys, desktop.defaults, desktop.dispatch),
      focus_(desktop.workspace, desktop.dispatch),
      pauseExpiry_(privacy_, desktop.dispatch) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
  configureMenuBar();
  configureHotKey();
  hotKey_.registerHotKey();
  configureServices();
  focus_.startFocusTracking();
  if (store_.secureStorage() && store_.persistenceIsReady()) {
    watcher().start();
  } else {
    show(storageUnavailable);
  }
  showFirstLaunchHelpIfNeeded();
  warmUp();
}

void AppDelegate::applicationWillTerminate() {
  watcher().stop();
  onboarding_.reset();
  closeShortcutPanel();
  hotKey_.unregisterHotKey();
  focus_.stop();
  pauseExpiry_.stop();
  desktop_.statusItem.hide();
}

void AppDelegate::applicationShouldHandleReopen() {
  if (!hasVisibleWindows()) openHistory();
}

void AppDelegate::openHistory() { panelController().toggle(focus_.currentPasteTarget()); }

void AppDelegate::openSearch() { panelController().openSearch(focus_.currentPasteTarget()); }

void AppDelegate::configureHotKey() {
  const std::weak_ptr<bool> alive = alive_;
  hotKey_.onNotice = [this, alive](std::string_view notice) {
    if (!alive.expired()) show(notice);
  };
  hotKey_.onPressed = [this, alive] {
    if (!alive.expired() && !recordPressedShortcut()) openHistory();
  };
}

void AppDelegate::configureServices() {
  const std::weak_ptr<bool> alive = alive_;
  store_.onChange = [this, alive] {
    if (!alive.expired()) panelController().refreshIfVisible();
  };
  store_.onSearchIndexChange = [this, alive] {
    if (!alive.expired()) panelController().refreshSearchIfVisible();
  };
  pasteController().onInternalPasteboardWrite = [this, alive] {
    if (!alive.expired()) watcher().noteOwnWrite();
  };
  pasteController().onOutcome = [this, alive](PasteOutcome outcome) {
    if (alive.expired()) return;
    if (const auto text = notice(outcome)) show(*text);
  };
}

void AppDelegate::show(std::string_view notice) { toast_.show(std::string(notice)); }

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
  desktop_.dispatch.async([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) panelController();
  });
}

ClipboardWatcher& AppDelegate::watcher() {
  if (!watcher_) {
    watcher_ = std::make_unique<ClipboardWatcher>(
        store_, privacy_,
        ClipboardServices{desktop_.pasteboard, desktop_.workspace, desktop_.dispatch});
    watcher_->onContentsLost = [this, alive = std::weak_ptr(alive_)](
                                   const ClipItem& item, const std::function<void()>& done) {
      if (!alive.expired()) keepContents(item, done);
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
                      desktop_.accessibility, desktop_.files, desktop_.images,
                      desktop_.fileThumbnails, desktop_.icons, desktop_.backdrops, &desktop_.spaces,
                      desktop_.keyCodeForScanCode});
  }
  return *panelController_;
}

}  // namespace vantorel
