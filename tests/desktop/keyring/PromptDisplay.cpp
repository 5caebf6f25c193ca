// SPDX-License-Identifier: MIT
#include "desktop/keyring/PromptDisplay.h"

#include <cstdlib>
#include <stdexcept>

#include "desktop/session/PrivateSession.h"

namespace vantorel {
namespace {

/// Does something to the dialog until it is gone: the first keys may come before it listens.
template <class Action>
bool untilGone(const Action& action) {
  return waitFor([&] {
    if (!PromptDisplay::asks()) return true;
    action();
    return waitFor([] { return !PromptDisplay::asks(); }, std::chrono::milliseconds(700));
  });
}

}  // namespace

PromptDisplay::PromptDisplay()
    : server_({"Xvfb", "-displayfd", "1", "-screen", "0", "800x600x24", "-nolisten", "tcp",
               "-noreset"}) {
  const std::string number = server_.readLine();
  if (number.empty()) throw std::runtime_error("the X server did not start");
  setenv("DISPLAY", (":" + number).c_str(), 1);
  unsetenv("WAYLAND_DISPLAY");
  windowManager_ = ChildProcess({"openbox", "--sm-disable"});
  const bool managed = waitFor([] {
    return runProgram({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}).find("window id") !=
           std::string::npos;
  });
  if (!managed) throw std::runtime_error("the window manager did not start");
}

PromptDisplay::~PromptDisplay() { unsetenv("DISPLAY"); }

bool PromptDisplay::asks() {
  return !runProgram({"xdotool", "search", "--onlyvisible", "--class", "gcr-prompter"}).empty();
}

bool PromptDisplay::enterPassword(const std::string& password) {
  return untilGone([&] {
    runProgram({"xdotool", "key", "ctrl+a"});
    runProgram({"xdotool", "type", password});
    runProgram({"xdotool", "key", "Return"});
  });
}

bool PromptDisplay::dismiss() {
  return untilGone([] { runProgram({"xdotool", "key", "Escape"}); });
}

}  // namespace vantorel
