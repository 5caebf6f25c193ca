// SPDX-License-Identifier: MIT
// Measures the running program from outside, on the X server of $DISPLAY, and prints one JSON
// object of named sample lists in milliseconds. run.py prepares the desktop, starts this and makes
// the table.

#include <poll.h>

#include <chrono>
#include <cstdio>
#include <exception>
#include <optional>
#include <stdexcept>
#include <thread>

#include "program/ClipboardOwner.h"
#include "program/FolderWatch.h"
#include "program/Measurement.h"
#include "program/PaintWatch.h"
#include "program/PasteTarget.h"
#include "program/PauseWatch.h"
#include "program/Screen.h"

namespace vantorel::bench {

namespace {

constexpr auto panelTitle = "Vantorel";

void waitUntilHidden(const Screen& screen) {
  waitFor("the panel to be hidden", [&] { return !screen.visibleWindow(panelTitle); });
}

xcb_window_t showPanel(const Screen& screen) {
  screen.pressShortcut();
  std::optional<xcb_window_t> panel;
  waitFor("the panel", [&] {
    panel = screen.visibleWindow(panelTitle);
    return panel.has_value() && screen.focus() != XCB_WINDOW_NONE;
  });
  return *panel;
}

void hidePanel(const Screen& screen) {
  screen.pressShortcut();
  waitUntilHidden(screen);
}

// open COUNT: shortcut pressed to panel painted.
Samples measureOpening(const Screen& screen, Arguments arguments) {
  PaintWatch watch(screen, panelTitle);
  watch.begin();
  Samples samples;
  for (std::size_t i = 0; i < count(arguments, 0); ++i) {
    samples["open"].push_back(watch.measure([&] { return screen.pressShortcut(); }));
    hidePanel(screen);
  }
  return samples;
}

// type COUNT: key typed in the search field to list painted; the field is shown already.
Samples measureTyping(const Screen& screen, Arguments arguments) {
  showPanel(screen);
  PaintWatch watch(screen, panelTitle);
  watch.begin();
  const auto press = [&](std::uint8_t keycode) {
    return watch.measure([&] {
      const auto moment = Clock::now();
      screen.tapKey(keycode);
      return moment;
    });
  };
  press(key::a);
  Samples samples;
  for (std::size_t i = 0; i < count(arguments, 0); ++i) {
    samples["type"].push_back(press(key::a));
    samples["erase"].push_back(press(key::backSpace));
  }
  screen.tapKey(key::escape);
  screen.tapKey(key::escape);
  waitUntilHidden(screen);
  return samples;
}

void serveUntilSealed(const Screen& screen, ClipboardOwner& owner, FolderWatch& folder) {
  const auto deadline = Clock::now() + std::chrono::seconds(20);
  while (!folder.finished()) {
    // What is sealed before the copy was handed over is an earlier one, or a picture's words.
    if (owner.served()) {
      folder.read();
    } else {
      folder.reset();
    }
    while (const auto event = screen.nextEvent(Clock::now())) owner.handle(*event);
    if (Clock::now() > deadline) failWaiting("the history to be sealed");
    pollfd waiting[] = {{screen.descriptor(), POLLIN, 0}, {folder.descriptor(), POLLIN, 0}};
    poll(waiting, 2, 100);
  }
}

// copy COUNT HISTORY TARGET FILE...: copied to handed over, to sealing begun, to sealed on disk.
// A text gets a number in front, so that each is a new one; of pictures one file is given for each.
Samples measureCopying(const Screen& screen, Arguments arguments) {
  if (arguments.size() < 4) throw std::runtime_error("copy COUNT HISTORY TARGET FILE...");
  ClipboardOwner owner(screen);
  FolderWatch folder(arguments[1], "history.vntl");
  const std::string target = arguments[2];
  const auto panel = showPanel(screen);
  hidePanel(screen);
  Samples samples;
  for (std::size_t i = 0; i < count(arguments, 0); ++i) {
    auto contents = contentsOf(arguments[3 + i % (arguments.size() - 3)]);
    if (target == "UTF8_STRING") contents.insert(0, std::to_string(i) + " ");
    folder.reset();
    PauseWatch pauses(panel);
    const auto beginning = owner.own(target, std::move(contents));
    serveUntilSealed(screen, owner, folder);
    samples["pause"].push_back(pauses.finish());
    samples["served"].push_back(milliseconds(*owner.served() - beginning));
    if (folder.begun()) samples["begun"].push_back(milliseconds(*folder.begun() - beginning));
    samples["sealed"].push_back(milliseconds(*folder.finished() - beginning));
  }
  return samples;
}

// burst COUNT MILLISECONDS: copies a given time apart; how many were asked for.
Samples measureBurst(const Screen& screen, Arguments arguments) {
  ClipboardOwner owner(screen);
  Samples samples;
  for (std::size_t i = 0; i < count(arguments, 0); ++i) {
    const auto beginning = owner.own("UTF8_STRING", "burst " + std::to_string(i));
    const auto end = beginning + std::chrono::milliseconds(count(arguments, 1));
    while (const auto event = screen.nextEvent(end)) owner.handle(*event);
    samples["served"].push_back(owner.served() ? milliseconds(*owner.served() - beginning) : -1);
  }
  return samples;
}

// paste COUNT: Return pressed in the panel to text in the target.
Samples measurePasting(const Screen& screen, Arguments arguments) {
  PasteTarget target(screen);
  target.show();
  Samples samples;
  for (std::size_t i = 0; i < count(arguments, 0); ++i) {
    const auto panel = showPanel(screen);
    waitFor("the panel to have the keyboard", [&] { return screen.focus() == panel; });
    screen.discardEvents();
    const auto beginning = Clock::now();
    screen.tapKey(key::enter);
    const auto arrived = target.waitForText(beginning + std::chrono::seconds(5));
    samples["paste"].push_back(milliseconds(arrived - beginning));
    waitUntilHidden(screen);
    waitFor("the target to be in front", [&] {
      return screen.focus() == target.window() && screen.active() == target.window();
    });
  }
  return samples;
}

double waitUntilCapturing(const Screen& screen, Clock::time_point beginning) {
  ClipboardOwner owner(screen);
  const auto deadline = beginning + std::chrono::seconds(20);
  while (!owner.asked()) {
    if (Clock::now() > deadline) failWaiting("the program to capture");
    owner.own("UTF8_STRING", " \n");
    const auto next = Clock::now() + std::chrono::milliseconds(4);
    while (!owner.asked()) {
      const auto event = screen.nextEvent(next);
      if (!event) break;
      owner.handle(*event);
    }
  }
  return milliseconds(*owner.asked() - beginning);
}

// start COUNT PROGRAM [SECONDS]: process begun to capturing, and the first opening so long after
// it.
Samples measureStarting(const Screen& screen, Arguments arguments) {
  if (arguments.size() < 2) throw std::runtime_error("start COUNT PROGRAM [SECONDS]");
  const std::chrono::seconds rest(arguments.size() > 2 ? count(arguments, 2) : 0);
  Samples samples;
  for (std::size_t i = 0; i < count(arguments, 0); ++i) {
    PaintWatch watch(screen, panelTitle);
    watch.begin();
    const auto beginning = Clock::now();
    const auto program = startProgram(arguments[1]);
    samples["start"].push_back(waitUntilCapturing(screen, beginning));
    std::this_thread::sleep_for(rest);
    samples["first"].push_back(watch.measure([&] { return screen.pressShortcut(); }));
    endProgram(program);
  }
  return samples;
}

Samples measure(std::string_view what, Arguments arguments) {
  const Screen screen;
  if (what == "open") return measureOpening(screen, arguments);
  if (what == "type") return measureTyping(screen, arguments);
  if (what == "copy") return measureCopying(screen, arguments);
  if (what == "burst") return measureBurst(screen, arguments);
  if (what == "paste") return measurePasting(screen, arguments);
  if (what == "start") return measureStarting(screen, arguments);
  throw std::runtime_error("open, type, copy, burst, paste or start");
}

}  // namespace

}  // namespace vantorel::bench

int main(int argc, char** argv) {
  try {
    const std::span<char* const> arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() < 2) throw std::runtime_error("what is to be measured?");
    vantorel::bench::print(vantorel::bench::measure(arguments[1], arguments.subspan(2)));
    return 0;
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "%s\n", problem.what());
    return 1;
  }
}
