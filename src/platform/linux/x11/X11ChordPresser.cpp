// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11ChordPresser.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <utility>

namespace vantorel {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 600ms;       // for the keyboard to follow the window to the front
constexpr auto untilAsked = 200ms;     // for a target that asks what there is before it pastes
constexpr auto betweenAttempts = 3ms;  // in which the window manager does its part
constexpr auto settling = 100ms;       // of a keyboard that is being changed
constexpr auto untilReleaseIsSeen = 20ms;

/// While it lives the server listens to this connection alone. Nothing within may wait for another
/// program, or for another connection of this one.
class ServerGrab {
 public:
  explicit ServerGrab(const X11Connection& connection) : connection_(connection) {
    xcb_grab_server(connection_.xcb());
  }
  ~ServerGrab() {
    xcb_ungrab_server(connection_.xcb());
    connection_.flush();
  }
  ServerGrab(const ServerGrab&) = delete;
  ServerGrab& operator=(const ServerGrab&) = delete;

 private:
  const X11Connection& connection_;
};

bool isCommandV(const ChordRequest& request) {
  constexpr auto modifiers = flags::command | flags::option | flags::shift | flags::control;
  return request.keyCode == keys::v && (request.flags & modifiers) == flags::command;
}

}  // namespace

X11ChordPresser::X11ChordPresser(X11Applications& applications, PrimaryOffer offerPrimary,
                                 ListedTo isListedTo)
    : applications_(applications),
      offerPrimary_(std::move(offerPrimary)),
      isListedTo_(std::move(isListedTo)),
      thread_(applications.thread()),
      keyboard_(thread_.connection()),
      hasTest_(thread_.connection().extension(xcb_test_id) != nullptr) {
  keyboard_.watchMap();
  applications_.post([this] {
    applications_.setEventHandler([this](const xcb_generic_event_t& event) {
      if (!keyboard_.isMapChange(event)) return;
      map_.reset();
      thread_.cancel(refreshTimer_);
      refreshTimer_ = thread_.after(settling, [this] { refreshMap(); });
    });
    refreshMap();
  });
}

X11ChordPresser::~X11ChordPresser() {
  // What was posted before has run by then, and nothing comes after it.
  applications_.ask([this] {
    applications_.setEventHandler({});
    for (const auto timer : {attemptTimer_, refreshTimer_, releaseTimer_}) thread_.cancel(timer);
  });
}

bool X11ChordPresser::isAvailable() const {
  return hasTest_ && keyboard_.isAvailable() && !applications_.isLost();
}

void X11ChordPresser::press(ChordRequest request, const RunningApplication& target,
                            Completion done) {
  applications_.post([this, request, target, done = std::move(done)] {
    begin({.request = request,
           .target = target,
           .done = done,
           .deadline = X11Thread::Clock::now() + patience});
  });
}

void X11ChordPresser::withdraw() {
  applications_.post([this] {
    if (attempt_) finish(Outcome::notInFront);
  });
}

void X11ChordPresser::refreshMap() {
  if (!map_) map_ = keyboard_.readMap();
}

void X11ChordPresser::begin(Attempt attempt) {
  if (attempt_) finish(Outcome::notInFront);
  attempt_ = std::move(attempt);
  tryAgain();
}

void X11ChordPresser::tryAgain() {
  // A layout that was changed before the target came to the front is known by now, too.
  applications_.windows().catchUp();
  const auto found = targetInFront(attempt_->target);
  const auto outcome = found ? tryToPress(*attempt_, *found) : Outcome::notInFront;
  if (outcome != Outcome::notInFront || X11Thread::Clock::now() >= attempt_->deadline) {
    finish(outcome);
  } else {
    attemptTimer_ = thread_.after(betweenAttempts, [this] { tryAgain(); });
  }
}

void X11ChordPresser::finish(Outcome outcome) {
  thread_.cancel(attemptTimer_);
  const auto done = std::move(attempt_->done);
  attempt_.reset();
  done(outcome == Outcome::pressed);
}

bool X11ChordPresser::mayPaste(Attempt& attempt, const Target& target) const {
  if (!isCommandV(attempt.request) || !isListedTo_) return true;
  if (!asksBeforePasting(target.facts.wmClass)) return true;
  const auto now = X11Thread::Clock::now();
  if (!attempt.askingEnds) attempt.askingEnds = now + untilAsked;
  return isListedTo_(target.facts.window) || now >= *attempt.askingEnds;
}

X11ChordPresser::Outcome X11ChordPresser::tryToPress(Attempt& attempt, const Target& target) {
  if (!mayPaste(attempt, target)) return Outcome::notInFront;
  const auto wanted = keysFor(attempt.request, target);
  auto keys = wanted;
  const auto chord = chordOf(attempt.request, keys);
  if (!chord) return Outcome::impossible;
  // Beside terminals, programs insert the pasteboard by Shift+Insert too.
  const bool insertsPrimary = wanted != PasteKeys::controlV && keys == PasteKeys::shiftInsert;
  if (insertsPrimary && !attempt.primaryOffered) {
    if (!offerPrimary_()) return Outcome::impossible;
    attempt.primaryOffered = true;
  }
  return pressUnderGrab(*chord, attempt.target, target.focus);
}

/// The target, if its window is in front and has the keyboard: itself, a part of it, or a window
/// that its process keeps for taking the keyboard and that no window manager knows.
std::optional<X11ChordPresser::Target> X11ChordPresser::targetInFront(
    const RunningApplication& target) {
  auto& windows = applications_.windows();
  const auto& host = applications_.host();
  const auto active = windows.active();
  if (!active || processOf(active->facts, host) != target.processIdentifier) return std::nullopt;
  if (target.window != 0 && active->token != target.window) return std::nullopt;
  const auto focus = windows.inputFocus();
  if (focus == active->facts.window) return Target{focus, active->facts};
  const auto focused = windows.focused();
  if (!focused) return std::nullopt;
  const bool isItsOwn = processOf(focused->facts, host) == target.processIdentifier &&
                        focused->facts.management == WindowManagement::unmanaged;
  if (focused->token != active->token && !isItsOwn) return std::nullopt;
  return Target{focus, active->facts};
}

X11ChordPresser::Outcome X11ChordPresser::pressUnderGrab(const KeyChord& chord,
                                                         const RunningApplication& target,
                                                         xcb_window_t focus) {
  const ServerGrab grab(thread_.connection());
  applications_.windows().catchUp();
  const auto still = targetInFront(target);
  if (!still || still->focus != focus) return Outcome::notInFront;
  if (!map_) return Outcome::notInFront;  // the keyboard is another one since: the chord is, too
  const auto state = keyboard_.readState();
  if (!state) return Outcome::impossible;
  const auto presses = keyboard_.presses();
  const auto plan = planChord(*map_, chord, presses);
  const auto locked =
      static_cast<X11Modifiers>(state->sticky.locked & ~unsigned{lockModifiers(*map_)});
  if (locked != 0 || state->sticky.latched != 0) keyboard_.clearSticky(locked);
  send(plan.actions);
  thread_.connection().flush();
  restore(plan.suspended, presses);
  if (locked != 0) keyboard_.lock(locked);
  return thread_.connection().broken() ? Outcome::impossible : Outcome::pressed;
}

/// Presses again what was let go. A key that its finger leaves in this very moment must not stay
/// down, so the keyboards are asked once more afterwards.
void X11ChordPresser::restore(const std::vector<X11KeyCode>& suspended, const KeyPresses& before) {
  if (suspended.empty()) return;
  const auto again = keysToRestore(suspended, before, keyboard_.presses());
  for (const auto key : again) send({{key, KeyDirection::down}});
  const auto after = keyboard_.presses();
  for (const auto key : again) {
    if (!before.physical[key]) continue;
    if (after.physical[key]) {
      restored_.push_back(key);
    } else {
      send({{key, KeyDirection::up}});
    }
  }
  if (!restored_.empty()) watchRestored();
}

/// Synthetic input goes on holding a restored key after its finger has left it. No program sees
/// that, but the server would not press the key for another program's synthetic input then.
void X11ChordPresser::watchRestored() {
  thread_.cancel(releaseTimer_);
  releaseTimer_ = thread_.after(untilReleaseIsSeen, [this] {
    const auto presses = keyboard_.presses();
    std::erase_if(restored_, [&](X11KeyCode key) {
      if (presses.physical[key]) return false;
      send({{key, KeyDirection::up}});
      return true;
    });
    if (!restored_.empty()) watchRestored();
  });
}

PasteKeys X11ChordPresser::keysFor(const ChordRequest& request, const Target& target) const {
  if (!isCommandV(request)) return PasteKeys::controlV;
  const auto index = applications_.entries().index();
  const auto* entry = index->find(identityOf(target.facts, applications_.host()));
  return pasteKeysFor(target.facts.wmClass, entry);
}

std::optional<KeyChord> X11ChordPresser::chordOf(const ChordRequest& request, PasteKeys& keys) {
  refreshMap();
  const auto state = keyboard_.readState();
  if (!map_ || !state) return std::nullopt;
  if (!isCommandV(request)) return chordAt(*map_, request.keyCode, request.flags);
  return chordFor(*map_, state->group, keys);
}

void X11ChordPresser::send(const std::vector<KeyAction>& actions) {
  for (const auto& action : actions) {
    const bool down = action.direction == KeyDirection::down;
    const std::uint8_t type = down ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
    xcb_test_fake_input(thread_.connection().xcb(), type, action.key, XCB_CURRENT_TIME,
                        XCB_WINDOW_NONE, 0, 0, 0);
  }
}

}  // namespace vantorel
