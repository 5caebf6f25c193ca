// SPDX-License-Identifier: MIT
#include "desktop/x11/DesktopFixture.h"

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "platform/linux/x11/X11Keyboard.h"
#include "platform/linux/x11/X11Property.h"

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace vantorel {

namespace {

constexpr std::chrono::seconds patience{30};
constexpr int lookAgain = 5;  // ms, for conditions that nothing announces

std::filesystem::path temporaryDirectory() {
  auto pattern = (std::filesystem::temp_directory_path() / "x11-tests-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary directory");
  return pattern;
}

}  // namespace

DesktopFixture::DesktopFixture()
    : tester_(X11Connection::open(server_.display())), directory_(temporaryDirectory()) {
  if (!tester_) throw std::runtime_error("the X server does not answer");
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(tester_->xcb(), tester_->root(), XCB_CW_EVENT_MASK, &mask);
  fingers_ = std::make_unique<Fingers>(*tester_);
}

DesktopFixture::~DesktopFixture() {
  std::error_code error;
  std::filesystem::remove_all(directory_, error);
}

bool DesktopFixture::waitUntil(const std::string& name, const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + patience;
  for (;;) {
    dispatch.runQueued();
    if (condition()) return true;
    if (std::chrono::steady_clock::now() >= end) break;
    pollfd descriptor{tester_->fileDescriptor(), POLLIN, 0};
    poll(&descriptor, 1, lookAgain);
    while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_event(tester_->xcb())}) {
    }
  }
  ADD_FAILURE() << "never happened: " << name;
  return false;
}

void DesktopFixture::sync() const {
  const auto answer =
      tester_->reply(xcb_get_input_focus_reply, xcb_get_input_focus(tester_->xcb()));
}

std::unique_ptr<ChildProcess> DesktopFixture::run(const std::vector<std::string>& arguments) {
  const auto home = directory_.string();
  return std::make_unique<ChildProcess>(
      arguments, ChildProcess::Input::pipe,
      std::vector<std::string>{"DISPLAY=" + display(), "HOME=" + home, "XDG_RUNTIME_DIR=" + home,
                               "NO_AT_BRIDGE=1", "GTK_A11Y=none", "GDK_BACKEND=x11",
                               "DBUS_SESSION_BUS_ADDRESS=unix:path=" + home + "/none"});
}

void DesktopFixture::startWindowManager() {
  windowManager_ = run({"openbox", "--sm-disable", "--config-file", OPENBOX_CONFIGURATION});
  // An event that comes while it starts stays unheard until the next one does; what it announces
  // of itself before is no sign that it listens. So it is asked for something, until it does it.
  const auto showing = tester_->atom("_NET_SHOWING_DESKTOP");
  for (const std::uint32_t wanted : {1U, 0U}) {
    waitUntil("the window manager listens", [&] {
      sendToRoot(tester_->root(), showing, {wanted});
      return values32Property(*tester_, tester_->root(), showing) == std::vector{wanted};
    });
  }
}

void DesktopFixture::sendToRoot(xcb_window_t window, xcb_atom_t type,
                                const std::vector<std::uint32_t>& data) const {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = type;
  std::copy(data.begin(), data.end(), message.data.data32);
  xcb_send_event(tester_->xcb(), 0, tester_->root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
  tester_->flush();
}

void DesktopFixture::stopWindowManager() {
  const auto check =
      values32Property(*tester_, tester_->root(), tester_->atom("_NET_SUPPORTING_WM_CHECK"));
  windowManager_.reset();
  // The server hears of a process's end later than whoever waited for it.
  waitUntil("the server has let go of the window manager", [&] {
    return check.empty() ||
           !tester_->reply(xcb_get_window_attributes_reply,
                           xcb_get_window_attributes(tester_->xcb(), check.front()));
  });
}

void DesktopFixture::setLayout(const std::string& layouts) {
  const auto setting = run({"setxkbmap", "-layout", layouts});
  waitUntil("the layout is set to " + layouts, [&] { return setting->ended(); });
}

void DesktopFixture::setActiveLayout(std::uint8_t group) {
  const X11Keyboard keyboard(*tester_);
  xcb_xkb_latch_lock_state(tester_->xcb(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
  waitUntil("the layout is active", [&] {
    const auto state = keyboard.readState();
    return state && state->group == group;
  });
}

PlayedProgram DesktopFixture::play(const std::vector<std::vector<std::string>>& windows) {
  std::vector<std::string> arguments{WINDOW_CLIENT};
  for (const auto& window : windows) {
    arguments.emplace_back("--window");
    arguments.insert(arguments.end(), window.begin(), window.end());
  }
  PlayedProgram program{run(arguments), {}};
  waitUntil("the windows are mapped", [&] {
    program.windows.clear();
    std::istringstream lines(program.process->output());
    std::string word;
    xcb_window_t window = 0;
    std::size_t mapped = 0;
    while (lines >> word >> window) {
      if (word == "window") program.windows.push_back(window);
      if (word == "mapped") ++mapped;
    }
    return mapped == windows.size();
  });
  return program;
}

xcb_window_t DesktopFixture::activeWindow() const {
  const auto windows =
      values32Property(*tester_, tester_->root(), tester_->atom("_NET_ACTIVE_WINDOW"));
  return windows.empty() ? xcb_window_t{XCB_WINDOW_NONE} : windows.front();
}

xcb_window_t DesktopFixture::focus() const {
  const auto answer =
      tester_->reply(xcb_get_input_focus_reply, xcb_get_input_focus(tester_->xcb()));
  return answer ? answer->focus : xcb_window_t{XCB_WINDOW_NONE};
}

void DesktopFixture::expectInFront(xcb_window_t window) {
  waitUntil("the window is in front",
            [&] { return activeWindow() == window && focus() == window; });
}

void DesktopFixture::bringToFront(xcb_window_t window) {
  sendToRoot(window, tester_->atom("_NET_ACTIVE_WINDOW"), {2});
  expectInFront(window);
}

void DesktopFixture::install(const std::string& id, const std::string& lines) {
  const auto directory = directory_ / "applications";
  std::filesystem::create_directories(directory);
  std::ofstream(directory / (id + ".desktop")) << "[Desktop Entry]\nType=Application\n" << lines;
}

DesktopEntryPlaces DesktopFixture::places() const { return {{directory_ / "applications"}, {}}; }

}  // namespace vantorel
