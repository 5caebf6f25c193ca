// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <memory>
#include <string>
#include <vector>

#include "app/AppDelegate.h"
#include "fakes/FakeDesktop.h"

class QWidget;

namespace vantorel {

class SheetWindow;

/// The whole application on a desktop that the test plays, looked at from outside. It has been
/// started before, so that no help comes up.
class AppDelegateTest : public testing::Test {
 protected:
  AppDelegateTest();
  ~AppDelegateTest() override;

  AppDelegate& launch();
  /// Ends it as quitting does.
  void terminate();

  /// Another program copies a text, a second after whatever was before.
  void copy(const std::string& text);
  /// The history on the disk, newest first, pins on top.
  [[nodiscard]] std::vector<ClipItem> entries();
  /// What it holds, newest first, pins on top.
  [[nodiscard]] std::vector<std::string> history();
  /// Brings an application to the front, announced.
  void bringToFront(const std::string& bundleIdentifier, const std::string& name);

  [[nodiscard]] static std::vector<std::string> toasts();
  [[nodiscard]] static std::vector<std::string> visibleTitles();
  [[nodiscard]] static bool panelIsShown();
  static void press(const QString& title, Qt::Key key, Qt::KeyboardModifiers modifiers = {});
  [[nodiscard]] static QWidget* window(const QString& title);

  FakeDesktop desktop;
  std::unique_ptr<AppDelegate> delegate;

 private:
  ProcessId nextPid_ = 100;
};

}  // namespace vantorel
