#include "platform/linux/x11/X11ChordPresser.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <utility>

namespace vantorel {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 600ms;       // for the keyboard to follow the window to the front
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

X11ChordPresser::X11ChordPresser(std::unique_ptr<X11Connection> connection,
                                 const DesktopEntries& entries, PrimaryOffer offerPrimary)
    : entries_(entries),
      offerPrimary_(std::move(offerPrimary)),
      thread_(std::move(connection), "synthetic input"),
      applications_(thread_.connection(), entries),
      keyboard_(thread_.connection()),
      hasTest_(thread_.connection().extension(xcb_test_id) != nullptr) {
  keyboard_.watchMap();
  thread_.post([this] { refreshMap(); });
  thread_.start(
      [this](const xcb_generic_event_t& event) {
        if (!keyboard_.isMapChange(event)) return;
        map_.reset();
        thread_.cancel(refreshTimer_);
        refreshTimer_ = thread_.after(settling, [this] { refreshMap(); });
      },
      [this] { lost_ = true; });
}

X11ChordPresser::~X11ChordPresser() { thread_.stop(); }

bool X11ChordPresser::isAvailable() const { return hasTest_ && keyboard_.isAvailable() && !lost_; }

void X11ChordPresser::press(ChordRequest request, ProcessId pid) {
  if (!isAvailable()) return;
  thread_.post([this, request, pid] {
    attempt({request, pid, X11Thread::Clock::now() + patience});
  });
}

void X11ChordPresser::refreshMap() {
  if (!map_) map_ = keyboard_.readMap();
}

void X11ChordPresser::attempt(Attempt attempt) {
  const auto found = target(attempt.pid);
  // A layout that was changed before the target came to the front has told so by now.
  thread_.handleArrivedEvents();
  if (found && tryToPress(attempt, *found) == Outcome::done) return;
  if (X11Thread::Clock::now() >= attempt.deadline) return;
  thread_.after(betweenAttempts, [this, attempt] { this->attempt(attempt); });
}

X11ChordPresser::Outcome X11ChordPresser::tryToPress(Attempt& attempt, const Target& target) {
  const auto wanted = keysFor(attempt.request, target);
  auto keys = wanted;
  const auto chord = chordOf(attempt.request, keys);
  if (!chord) return Outcome::done;
  // Beside terminals, programs insert the pasteboard by Shift+Insert too.
  const bool insertsPrimary = wanted != PasteKeys::controlV && keys == PasteKeys::shiftInsert;
  if (insertsPrimary && !attempt.primaryOffered) {
    if (!offerPrimary_()) return Outcome::done;
    attempt.primaryOffered = true;
  }
  return pressUnderGrab(*chord, attempt.pid, target.focus);
}

std::optional<X11ChordPresser::Target> X11ChordPresser::target(ProcessId pid) const {
  const auto& windows = applications_.windows();
  const auto& host = applications_.host();
  const auto active = windows.active();
  if (!active || processOf(*active, host) != pid) return std::nullopt;
  const auto focus = inputFocus();
  if (focus == active->window) return Target{focus, *active};
  const auto focused = windows.focused();
  if (!focused || processOf(*focused, host) != pid) return std::nullopt;
  return Target{focus, *active};
}

xcb_window_t X11ChordPresser::inputFocus() const {
  const auto& connection = thread_.connection();
  const auto focus =
      connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection.xcb()));
  return focus ? focus->focus : xcb_window_t{XCB_WINDOW_NONE};
}

X11ChordPresser::Outcome X11ChordPresser::pressUnderGrab(const KeyChord& chord, ProcessId pid,
                                                         xcb_window_t focus) {
  const ServerGrab grab(thread_.connection());
  const auto still = target(pid);
  if (!still || still->focus != focus) return Outcome::notInFront;
  const auto state = keyboard_.readState();
  if (!state) return Outcome::done;
  const auto presses = keyboard_.presses();
  const auto plan = planChord(*map_, chord, presses);
  const auto locked =
      static_cast<X11Modifiers>(state->sticky.locked & ~unsigned{lockModifiers(*map_)});
  if (locked != 0 || state->sticky.latched != 0) keyboard_.clearSticky(locked);
  send(plan.actions);
  thread_.connection().flush();
  restore(plan.suspended, presses);
  if (locked != 0) keyboard_.lock(locked);
  return Outcome::done;
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
  const auto index = entries_.index();
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
