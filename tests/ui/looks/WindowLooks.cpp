// SPDX-License-Identifier: MIT
// The windows beside the panel: recorder, help, policy, the question before clearing, menu, toasts.

#include <QCoreApplication>
#include <QScrollBar>
#include <QTest>
#include <QWindow>
#include <memory>

#include "app/AppDelegate.h"
#include "app/HelpPanel.h"
#include "app/LinkButton.h"
#include "app/PolicyTextView.h"
#include "app/PrivacyPolicyPanel.h"
#include "app/ShortcutPanel.h"
#include "chrome/CheckBox.h"
#include "chrome/PushButton.h"
#include "chrome/ToastPresenter.h"
#include "fakes/FakeDesktop.h"
#include "ui/looks/Look.h"
#include "ui/looks/LookPainter.h"

namespace vantorel {
namespace {

/// The whole application on a desktop, started before.
struct Application {
  Application() {
    desktop.defaults.set("didShowOnboardingV2", true);
    desktop.accessibility.setReduceMotion(true);
    delegate = std::make_unique<AppDelegate>(desktop.ports());
    delegate->applicationDidFinishLaunching();
    desktop.dispatch.runQueued();
  }

  FakeDesktop desktop;
  std::unique_ptr<AppDelegate> delegate;
};

Look look(const char* name, void (*prepare)(Application&)) {
  return {name, [prepare]() -> std::shared_ptr<void> {
            auto application = std::make_shared<Application>();
            prepare(*application);
            return application;
          }};
}

/// A window alone, with services of its own.
template <class Window>
struct Alone {
  Alone() { accessibility.setReduceMotion(true); }

  ManualDispatch dispatch;
  FakeScreens screens;
  FakeAccessibilityPreferences accessibility;
  FakeWindowBackdrops backdrops;
  FakeKeyboardGrabs grabs;
  ChromeServices services{dispatch, screens, accessibility, &backdrops};
  std::unique_ptr<Window> window;
};

std::shared_ptr<void> help(HelpPanel::Occasion occasion, bool automaticPaste, bool launchAtLogin,
                           Language language = Language::hebrew, const char* shortcut = "⌘⇧V") {
  auto alone = std::make_shared<Alone<HelpPanel>>();
  alone->window = std::make_unique<HelpPanel>(
      alone->services, occasion,
      HelpPanel::Facts{shortcut, automaticPaste, launchAtLogin, "0.1.0", language});
  alone->window->makeKeyAndOrderFront();
  return alone;
}

/// The help after Tab has come to a control.
template <class Control>
std::shared_ptr<void> helpWithTheKeyboardOn(HelpPanel::Occasion occasion) {
  auto shown = help(occasion, true, true, Language::english);
  auto* control = shownWindow("About Vantorel")->findChild<Control*>();
  control->setFocus(Qt::TabFocusReason);
  return shown;
}

std::shared_ptr<void> recorder(const char* shortcut, const char* prompt) {
  auto alone = std::make_shared<Alone<ShortcutPanel>>();
  alone->window = std::make_unique<ShortcutPanel>(alone->services, alone->grabs, nullptr, shortcut);
  alone->window->makeKeyAndOrderFront();
  if (prompt != nullptr) alone->window->setPrompt(prompt);
  return alone;
}

std::shared_ptr<void> advisingRecorder(const char* desktop, const char* action = "") {
  const HotKeyShortcut shortcut;
  auto advice = ShortcutAdvice::of(desktop, shortcut, "vantorel");
  advice.action = action;
  if (*action != '\0') advice.prompt = "GNOME can run this command by these keys";
  auto alone = std::make_shared<Alone<ShortcutPanel>>();
  alone->window = std::make_unique<ShortcutPanel>(alone->services, alone->grabs, nullptr,
                                                  shortcut.display(), advice);
  alone->window->makeKeyAndOrderFront();
  return alone;
}

/// A key alone is no shortcut.
void refuseAKey(Application& application) {
  application.delegate->showShortcutPanel();
  QTest::keyClick(shownWindow("Keyboard Shortcut")->windowHandle(), Qt::Key_A);
}

/// Somewhere in the policy, from nought to one.
std::shared_ptr<void> policy(double place, Language language = Language::hebrew) {
  auto alone = std::make_shared<Alone<PrivacyPolicyPanel>>();
  alone->window = std::make_unique<PrivacyPolicyPanel>(alone->services, language);
  alone->window->makeKeyAndOrderFront();
  QCoreApplication::processEvents();
  auto* scroller = alone->window->findChild<PolicyTextView*>()->verticalScrollBar();
  scroller->setValue(static_cast<int>(scroller->maximum() * place));
  return alone;
}

void excludedApplications(Application& application) {
  application.desktop.workspace.launch(7, "org.example.notes", "Notes");
  application.desktop.workspace.bringToFront(7);
  application.desktop.dispatch.runQueued();
  application.delegate->excludeCurrentApp();
  application.desktop.dispatch.advance(Seconds(5));
  application.delegate->showStatusMenu();
}

std::shared_ptr<void> toast(const char* text) {
  auto alone = std::make_shared<Alone<ToastPresenter>>();
  alone->window = std::make_unique<ToastPresenter>(alone->services);
  alone->window->show(text);
  return alone;
}

}  // namespace

std::vector<Look> windowLooks() {
  return {
      {"recorder", [] { return recorder("⌘⇧V", nullptr); }},
      {"recorder-unavailable",
       [] { return recorder("⌘⇧⌥⌃Space", "That shortcut is unavailable. Try another."); }},
      look("recorder-refusing", refuseAKey),
      {"recorder-advising", [] { return advisingRecorder("sway"); }},
      {"recorder-offering", [] { return advisingRecorder("GNOME", "Add to GNOME"); }},
      {"recorder-advising-two-lines", [] { return advisingRecorder("labwc"); }},
      {"welcome-without-shortcut",
       [] {
         return help(HelpPanel::Occasion::firstLaunch, false, false, Language::hebrew,
                     "vantorel --toggle");
       }},
      {"about-english-without-shortcut",
       [] {
         return help(HelpPanel::Occasion::about, false, true, Language::english,
                     "vantorel --toggle");
       }},
      {"welcome", [] { return help(HelpPanel::Occasion::firstLaunch, true, false); }},
      {"about", [] { return help(HelpPanel::Occasion::about, true, true); }},
      {"about-without-paste", [] { return help(HelpPanel::Occasion::about, false, false); }},
      {"welcome-english",
       [] { return help(HelpPanel::Occasion::firstLaunch, true, false, Language::english); }},
      {"about-english",
       [] { return help(HelpPanel::Occasion::about, true, true, Language::english); }},
      {"about-with-the-keyboard",
       [] { return helpWithTheKeyboardOn<CheckBox>(HelpPanel::Occasion::about); }},
      {"about-with-the-keyboard-on-a-link",
       [] { return helpWithTheKeyboardOn<LinkButton>(HelpPanel::Occasion::about); }},
      {"welcome-with-the-keyboard",
       [] { return helpWithTheKeyboardOn<PushButton>(HelpPanel::Occasion::firstLaunch); }},
      {"policy-english", [] { return policy(0, Language::english); }},
      {"policy", [] { return policy(0); }},
      {"policy-middle", [] { return policy(0.5); }},
      look("clear-question",
           [](Application& application) { application.delegate->confirmClearHistory(); }),
      look("status-menu", excludedApplications),
      {"toast", [] { return toast("Copied to clipboard. Press ⌘V to paste."); }},
      {"toast-condensed", [] { return toast("No automatic paste here. Press Ctrl+V to paste."); }},
      {"toast-long",
       [] { return toast("Secure storage is unavailable. Clipboard monitoring is paused."); }},
  };
}

}  // namespace vantorel
