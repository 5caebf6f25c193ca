// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/ToplevelPresser.h"

#include <chrono>
#include <utility>

namespace vantorel {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 1s;  // for the window to come to the front, and for fingers to leave keys
constexpr auto betweenAttempts = 3ms;

bool isCommandV(const SyntheticKeyEvent& key) {
  constexpr auto modifiers = flags::command | flags::option | flags::shift | flags::control;
  return key.keyCode == keys::v && (key.flags & modifiers) == flags::command;
}

}  // namespace

ToplevelPresser::ToplevelPresser(Services services)
    : services_(std::move(services)), thread_(services_.windows.thread()) {}

ToplevelPresser::~ToplevelPresser() {
  // What was posted before has run by then, and nothing comes after it.
  const bool ended = thread_.runAndWait([this] {
    thread_.cancel(timer_);
    attempt_.reset();
  });
  static_cast<void>(ended);  // on a thread that has stopped there is nothing left
}

void ToplevelPresser::press(const SyntheticKeyEvent& key, const RunningApplication& target,
                            Completion done) {
  const auto deadline = WorkLine::Clock::now() + patience;
  thread_.post([this, key, window = target.window, done = std::move(done), deadline] {
    if (attempt_) finish(false);
    attempt_ = Attempt{.key = key, .target = window, .done = done, .deadline = deadline};
    tryAgain();
  });
}

void ToplevelPresser::withdraw() {
  thread_.post([this] {
    if (attempt_) finish(false);
  });
}

void ToplevelPresser::tryAgain() {
  const auto outcome = tryToPress(*attempt_);
  if (outcome == Outcome::notYet && WorkLine::Clock::now() < attempt_->deadline) {
    timer_ = thread_.after(betweenAttempts, [this] { tryAgain(); });
  } else {
    finish(outcome == Outcome::pressed);
  }
}

void ToplevelPresser::finish(bool pressed) {
  thread_.cancel(timer_);
  const auto done = std::move(attempt_->done);
  attempt_.reset();
  done(pressed);
}

std::optional<Toplevel> ToplevelPresser::inFront(WindowToken target) {
  const auto limit = WorkLine::Clock::now() + ChordKeyboard::answerLimit;
  if (!thread_.connection().catchUp(limit)) return std::nullopt;
  auto front = services_.windows.active();
  return front && front->token == target ? std::move(front) : std::nullopt;
}

ToplevelPresser::Outcome ToplevelPresser::tryToPress(Attempt& attempt) {
  const auto before = inFront(attempt.target);
  if (!before) return thread_.connection().isBroken() ? Outcome::failed : Outcome::notYet;
  if (!hasSettled(attempt, *before)) return Outcome::notYet;
  const auto chord = chordFor(attempt, *before);
  if (!chord) return Outcome::failed;
  switch (services_.keyboard.press(*chord)) {
    case ChordKeyboard::Outcome::held:
      return Outcome::notYet;
    case ChordKeyboard::Outcome::failed:
      return Outcome::failed;
    case ChordKeyboard::Outcome::pressed:
      break;
  }
  // Where another window came in between, nobody can tell which of them got the keys.
  const auto behind = inFront(attempt.target);
  const bool stayed = behind && behind->lastInFront == before->lastInFront;
  return stayed ? Outcome::pressed : Outcome::failed;
}

bool ToplevelPresser::hasSettled(Attempt& attempt, const Toplevel& target) {
  const auto now = WorkLine::Clock::now();
  if (std::exchange(attempt.timeInFront, target.lastInFront) != target.lastInFront) {
    attempt.settles = now + settling;
  }
  return now >= attempt.settles;
}

std::optional<KernelChord> ToplevelPresser::chordFor(Attempt& attempt, const Toplevel& target) {
  if (!isCommandV(attempt.key)) return kernelChordAt(attempt.key.keyCode, attempt.key.flags);
  const auto wanted = keysOf(target);
  auto keys = wanted;
  auto chord = kernelChordFor(keys, services_.keyboard.keyOfV());
  // Beside terminals, programs insert the pasteboard by Shift+Insert too.
  const bool insertsPrimary = wanted != PasteKeys::controlV && keys == PasteKeys::shiftInsert;
  if (insertsPrimary && !attempt.primaryOffered) {
    if (!services_.offerPrimary()) return std::nullopt;
    attempt.primaryOffered = true;
  }
  return chord;
}

PasteKeys ToplevelPresser::keysOf(const Toplevel& target) const {
  const auto index = services_.entries.index();
  return pasteKeysFor(target.appId, index->find({target.appId, target.appId, {}, {}}));
}

}  // namespace vantorel
