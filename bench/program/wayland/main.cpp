// SPDX-License-Identifier: MIT
// Measures the running program from outside, on the compositor of $WAYLAND_DISPLAY, and prints one
// JSON object of named sample lists in milliseconds. run.py prepares the desktop, starts this and
// makes the table.

#include <poll.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <thread>

#include "program/FolderWatch.h"
#include "program/Measurement.h"
#include "program/wayland/OutputWatch.h"
#include "program/wayland/SelectionOwner.h"
#include "program/wayland/TargetWindow.h"

namespace vantorel::bench {

namespace {

constexpr auto text = "text/plain;charset=utf-8";

/// What the compositor's own shortcut does: the program is started once more, to say what is
/// wanted.
class Toggle {
 public:
  explicit Toggle(const char* program) : program_(program) {}

  /// Answers the moment before.
  Clock::time_point begin() {
    const auto moment = Clock::now();
    running_ = startProgram(program_, "--toggle");
    return moment;
  }
  void end() const { waitForEnd(running_); }

 private:
  const char* program_;
  pid_t running_ = 0;
};

double measureToggle(OutputWatch& watch, const char* program) {
  Toggle toggle(program);
  const auto taken = watch.measure([&] { return toggle.begin(); });
  toggle.end();
  return taken;
}

// open COUNT: the program's command begun to panel painted.
Samples measureOpening(Compositor& compositor, const char* program, Arguments arguments) {
  OutputWatch watch(compositor);
  Samples samples;
  for (std::size_t i = 0; i < count(arguments, 0); ++i) {
    samples["open"].push_back(measureToggle(watch, program));
    samples["close"].push_back(measureToggle(watch, program));
  }
  return samples;
}

// type COUNT: key typed in the search field to list painted; the field is shown already.
Samples measureTyping(Compositor& compositor, const char* program, Arguments arguments) {
  OutputWatch watch(compositor);
  measureToggle(watch, program);
  const auto press = [&](std::uint32_t key) {
    return watch.measure([&] {
      const auto moment = Clock::now();
      compositor.tapKey(key);
      return moment;
    });
  };
  press(kernelkey::a);
  Samples samples;
  for (std::size_t i = 0; i < count(arguments, 0); ++i) {
    samples["type"].push_back(press(kernelkey::a));
    samples["erase"].push_back(press(kernelkey::backSpace));
  }
  measureToggle(watch, program);
  return samples;
}

void serveUntilSealed(Compositor& compositor, const SelectionOwner& owner, FolderWatch& folder) {
  const auto deadline = Clock::now() + std::chrono::seconds(20);
  while (!folder.finished()) {
    // What is sealed before the copy was handed over is an earlier one.
    if (owner.served()) {
      folder.read();
    } else {
      folder.reset();
    }
    while (compositor.listen(Clock::now())) {
    }
    if (Clock::now() > deadline) failWaiting("the history to be sealed");
    pollfd waiting[] = {{compositor.descriptor(), POLLIN, 0}, {folder.descriptor(), POLLIN, 0}};
    poll(waiting, 2, 100);
  }
}

// copy COUNT HISTORY TYPE FILE...: copied to handed over, to sealing begun, to sealed on disk. A
// text gets a number in front, so that each is a new one; of pictures one file is given for each.
Samples measureCopying(Compositor& compositor, Arguments arguments) {
  if (arguments.size() < 4) throw std::runtime_error("copy COUNT HISTORY TYPE FILE...");
  SelectionOwner owner(compositor);
  FolderWatch folder(arguments[1], "history.vntl");
  Samples samples;
  for (std::size_t i = 0; i < count(arguments, 0); ++i) {
    auto contents = contentsOf(arguments[3 + i % (arguments.size() - 3)]);
    if (arguments[2] == std::string_view(text)) contents.insert(0, std::to_string(i) + " ");
    folder.reset();
    const auto beginning = owner.own(arguments[2], std::move(contents));
    serveUntilSealed(compositor, owner, folder);
    samples["served"].push_back(milliseconds(*owner.served() - beginning));
    if (folder.begun()) samples["begun"].push_back(milliseconds(*folder.begun() - beginning));
    samples["sealed"].push_back(milliseconds(*folder.finished() - beginning));
  }
  return samples;
}

// burst COUNT MILLISECONDS: copies a given time apart; how many were asked for.
Samples measureBurst(Compositor& compositor, Arguments arguments) {
  SelectionOwner owner(compositor);
  Samples samples;
  for (std::size_t i = 0; i < count(arguments, 0); ++i) {
    const auto beginning = owner.own(text, "burst " + std::to_string(i));
    const auto end = beginning + std::chrono::milliseconds(count(arguments, 1));
    while (compositor.listen(end)) {
    }
    samples["served"].push_back(owner.served() ? milliseconds(*owner.served() - beginning) : -1);
  }
  return samples;
}

// paste COUNT: Return pressed in the panel to text in the target.
Samples measurePasting(Compositor& compositor, const char* program, Arguments arguments) {
  TargetWindow target(compositor);
  Samples samples;
  for (std::size_t i = 0; i < count(arguments, 0); ++i) {
    Toggle toggle(program);
    toggle.begin();
    compositor.listenUntil("the panel", [&] { return !target.hasKeyboard(); });
    toggle.end();
    const auto beginning = Clock::now();
    compositor.tapKey(kernelkey::enter);
    samples["paste"].push_back(milliseconds(target.waitForText() - beginning));
    compositor.listenUntil("the target", [&] { return target.hasKeyboard(); });
  }
  return samples;
}

double waitUntilCapturing(Compositor& compositor, Clock::time_point beginning) {
  SelectionOwner owner(compositor);
  const auto deadline = beginning + std::chrono::seconds(20);
  while (!owner.asked()) {
    if (Clock::now() > deadline) failWaiting("the program to capture");
    owner.own(text, " \n");
    const auto next = Clock::now() + std::chrono::milliseconds(4);
    while (!owner.asked() && compositor.listen(next)) {
    }
  }
  return milliseconds(*owner.asked() - beginning);
}

// start COUNT PROGRAM [SECONDS]: process begun to capturing, and the first opening so long after
// it.
Samples measureStarting(Compositor& compositor, Arguments arguments) {
  if (arguments.size() < 2) throw std::runtime_error("start COUNT PROGRAM [SECONDS]");
  const std::chrono::seconds rest(arguments.size() > 2 ? count(arguments, 2) : 0);
  OutputWatch watch(compositor);
  Samples samples;
  for (std::size_t i = 0; i < count(arguments, 0); ++i) {
    const auto beginning = Clock::now();
    const auto program = startProgram(arguments[1], "--background");
    samples["start"].push_back(waitUntilCapturing(compositor, beginning));
    std::this_thread::sleep_for(rest);
    samples["first"].push_back(measureToggle(watch, arguments[1]));
    endProgram(program);
  }
  return samples;
}

Samples measure(const char* program, std::string_view what, Arguments arguments) {
  Compositor compositor;
  if (what == "await") return {{"await", {waitUntilCapturing(compositor, Clock::now())}}};
  if (what == "open") return measureOpening(compositor, program, arguments);
  if (what == "type") return measureTyping(compositor, program, arguments);
  if (what == "copy") return measureCopying(compositor, arguments);
  if (what == "burst") return measureBurst(compositor, arguments);
  if (what == "paste") return measurePasting(compositor, program, arguments);
  if (what == "start") return measureStarting(compositor, arguments);
  throw std::runtime_error("await, open, type, copy, burst, paste or start");
}

}  // namespace

}  // namespace vantorel::bench

int main(int argc, char** argv) {
  try {
    std::signal(SIGPIPE, SIG_IGN);  // whoever asked for a copy may have lost interest in it
    const std::span<char* const> arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() < 3) throw std::runtime_error("PROGRAM, and what is to be measured?");
    vantorel::bench::print(
        vantorel::bench::measure(arguments[1], arguments[2], arguments.subspan(3)));
    return 0;
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "%s\n", problem.what());
    return 1;
  }
}
