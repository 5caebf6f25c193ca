// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/session/ChildProcess.h"
#include "desktop/x11/Fingers.h"
#include "desktop/x11pasteboard/PrivateXServer.h"
#include "fakes/ManualDispatch.h"
#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

/// A program with one or more windows, played by a process of its own.
struct PlayedProgram {
  std::unique_ptr<ChildProcess> process;
  std::vector<xcb_window_t> windows;
};

/// A private X server, with a window manager unless the test wants none, and somebody who presses
/// keys there. Waiting is for a named condition; the limit only bounds a failure.
class DesktopFixture : public testing::Test {
 protected:
  DesktopFixture();
  ~DesktopFixture() override;

  void startWindowManager();
  void stopWindowManager();
  /// "us", "us,il"...; true when the server has it.
  void setLayout(const std::string& layouts);
  void setActiveLayout(std::uint8_t group);

  /// Each description is a window: "class=editor,Editor", "type=DIALOG"... Returns when all are
  /// there.
  PlayedProgram play(const std::vector<std::vector<std::string>>& windows);
  std::unique_ptr<ChildProcess> run(const std::vector<std::string>& arguments);
  /// Waits until that window is the active one and has the keyboard.
  void expectInFront(xcb_window_t window);
  void bringToFront(xcb_window_t window);
  /// A client message, as pagers send it.
  void sendToRoot(xcb_window_t window, xcb_atom_t type,
                  const std::vector<std::uint32_t>& data) const;
  [[nodiscard]] xcb_window_t activeWindow() const;
  [[nodiscard]] xcb_window_t focus() const;

  /// Runs the main queue until `condition` holds. False, and a failure that names the condition,
  /// when it never does.
  bool waitUntil(const std::string& name, const std::function<bool()>& condition);
  /// Returns when the server has dealt with everything that was sent before.
  void sync() const;

  /// Installs a desktop entry for `places()`.
  void install(const std::string& id, const std::string& lines);
  [[nodiscard]] DesktopEntryPlaces places() const;
  [[nodiscard]] const std::string& display() const { return server_.display(); }
  void killServer() { server_.kill(); }

  [[nodiscard]] X11Connection& tester() { return *tester_; }
  Fingers& fingers() { return *fingers_; }

  ManualDispatch dispatch;

 private:
  PrivateXServer server_;
  std::unique_ptr<X11Connection> tester_;
  std::unique_ptr<Fingers> fingers_;
  std::unique_ptr<ChildProcess> windowManager_;
  std::filesystem::path directory_;
};

}  // namespace vantorel
