// SPDX-License-Identifier: MIT
#include "ui/shell/AppDelegateTest.h"

#include <QApplication>
#include <QTest>
#include <QWindow>

#include "chrome/ToastPanel.h"
#include "store/ClipStore.h"

namespace vantorel {

AppDelegateTest::AppDelegateTest() { desktop.defaults.set("didShowOnboardingV2", true); }

AppDelegateTest::~AppDelegateTest() = default;

AppDelegate& AppDelegateTest::launch() {
  delegate = std::make_unique<AppDelegate>(desktop.ports());
  delegate->applicationDidFinishLaunching();
  desktop.dispatch.runQueued();
  return *delegate;
}

void AppDelegateTest::terminate() {
  delegate->applicationWillTerminate();
  delegate.reset();
}

void AppDelegateTest::copy(const std::string& text) {
  desktop.dispatch.advance(Seconds(1));
  desktop.pasteboard.offerText(text);
  desktop.dispatch.runQueued();
}

std::vector<ClipItem> AppDelegateTest::entries() {
  AbsentTextRecognition recognition;
  const auto queue = desktop.dispatch.serialQueue("test.recognition");
  const ClipStore onDisk({desktop.dispatch, desktop.files, desktop.keychain,
                          desktop.ports().applicationSupport, recognition, *queue},
                         std::nullopt, nullptr, {});
  return onDisk.items();
}

std::vector<std::string> AppDelegateTest::history() {
  std::vector<std::string> texts;
  for (const ClipItem& item : entries())
    texts.push_back(item.text ? item.text->get() : item.preview);
  return texts;
}

void AppDelegateTest::bringToFront(const std::string& bundleIdentifier, const std::string& name) {
  const auto application = desktop.workspace.launch(nextPid_++, bundleIdentifier, name);
  desktop.workspace.bringToFront(application.processIdentifier);
  desktop.dispatch.runQueued();
}

std::vector<std::string> AppDelegateTest::toasts() {
  std::vector<std::string> shown;
  const auto widgets = QApplication::topLevelWidgets();
  for (const auto* widget : widgets) {
    if (!widget->isVisible() || qobject_cast<const ToastPanel*>(widget) == nullptr) continue;
    shown.push_back(widget->windowTitle().toStdString());
  }
  return shown;
}

std::vector<std::string> AppDelegateTest::visibleTitles() {
  std::vector<std::string> shown;
  const auto widgets = QApplication::topLevelWidgets();
  for (const auto* widget : widgets) {
    if (!widget->isVisible() || qobject_cast<const ToastPanel*>(widget) != nullptr) continue;
    shown.push_back(widget->windowTitle().toStdString());
  }
  return shown;
}

bool AppDelegateTest::panelIsShown() { return window("Vantorel") != nullptr; }

QWidget* AppDelegateTest::window(const QString& title) {
  const auto widgets = QApplication::topLevelWidgets();
  for (auto* widget : widgets) {
    if (widget->isVisible() && widget->windowTitle() == title) return widget;
  }
  return nullptr;
}

void AppDelegateTest::press(const QString& title, Qt::Key key, Qt::KeyboardModifiers modifiers) {
  auto* target = window(title);
  ASSERT_NE(target, nullptr) << title.toStdString() << " is not shown";
  QTest::keyClick(target->windowHandle(), key, modifiers);
}

}  // namespace vantorel
