// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11KeyGrabber.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace vantorel {

namespace {

// A keyboard that is plugged in, and a layout that is set, are told of many times over.
constexpr std::chrono::milliseconds settling{100};
// No hand lets go of a key and presses it again within this time.
constexpr std::chrono::milliseconds lookAgain{30};
constexpr unsigned modifierBits = 0xFF;  // beside the buttons and the layout

std::set<KeyGrab> difference(const std::set<KeyGrab>& all, const std::set<KeyGrab>& without) {
  std::set<KeyGrab> result;
  std::set_difference(all.begin(), all.end(), without.begin(), without.end(),
                      std::inserter(result, result.end()));
  return result;
}

}  // namespace

X11KeyGrabber::X11KeyGrabber(std::unique_ptr<X11Connection> connection,
                             std::function<void(HotKeyRef)> onPress)
    : onPress_(std::move(onPress)),
      thread_(std::move(connection), "hot keys"),
      keyboard_(thread_.connection()) {
  keyboard_.makeRepeatDetectable();
  keyboard_.watchMap();
  if (auto map = keyboard_.readMap()) map_ = std::move(*map);
  thread_.start([this](const xcb_generic_event_t& event) { handle(event); }, [] {});
}

X11KeyGrabber::~X11KeyGrabber() { thread_.stop(); }

bool X11KeyGrabber::add(HotKeyRef reference, HotKeyCombination combination) {
  bool taken = false;
  const bool ran = thread_.runAndWait([&] { taken = addOnThread(reference, combination); });
  return ran && taken;
}

bool X11KeyGrabber::addOnThread(HotKeyRef reference, HotKeyCombination combination) {
  const auto wanted = grabsFor(map_, combination.keyCode, combination.modifiers);
  if (wanted.empty()) return false;
  // The server would let one client take a key twice.
  const bool ours =
      std::any_of(registrations_.begin(), registrations_.end(),
                  [&](const auto& each) { return each.second.combination == combination; });
  if (ours) return false;
  const auto held = grab(wanted);
  if (held != wanted) {
    ungrab(held);
    return false;
  }
  registrations_.emplace(reference, Registration{combination, held});
  expectRelease(held.begin()->first);
  return true;
}

void X11KeyGrabber::expectRelease(X11KeyCode code) {
  if (!keyboard_.presses().seen[code]) {
    down_.erase(code);
    return;
  }
  // Its release goes to whoever heard the press, so it has to be looked for.
  down_.insert(code);
  thread_.after(lookAgain, [this, code] { expectRelease(code); });
}

void X11KeyGrabber::remove(HotKeyRef reference) {
  const bool ran = thread_.runAndWait([&] {
    const auto found = registrations_.find(reference);
    if (found == registrations_.end()) return;
    ungrab(found->second.grabs);
    registrations_.erase(found);
  });
  (void)ran;  // a thread that has ended holds no grabs
}

std::set<KeyGrab> X11KeyGrabber::grab(const std::set<KeyGrab>& grabs) {
  const auto& connection = thread_.connection();
  std::vector<std::pair<KeyGrab, xcb_void_cookie_t>> asked;
  asked.reserve(grabs.size());
  for (const auto& [code, modifiers] : grabs) {
    asked.emplace_back(KeyGrab(code, modifiers),
                       xcb_grab_key_checked(connection.xcb(), 0, connection.root(), modifiers, code,
                                            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
  }
  std::set<KeyGrab> held;
  for (const auto& [each, cookie] : asked) {
    if (!connection.error(cookie) && !connection.broken()) held.insert(each);
  }
  return held;
}

void X11KeyGrabber::ungrab(const std::set<KeyGrab>& grabs) {
  const auto& connection = thread_.connection();
  for (const auto& [code, modifiers] : grabs) {
    xcb_ungrab_key(connection.xcb(), code, connection.root(), modifiers);
  }
  connection.flush();
}

void X11KeyGrabber::handle(const xcb_generic_event_t& event) {
  const auto type = event.response_type & 0x7FU;
  if (type == XCB_KEY_PRESS) {
    pressed(reinterpret_cast<const xcb_key_press_event_t&>(event));
  } else if (type == XCB_KEY_RELEASE) {
    released(reinterpret_cast<const xcb_key_release_event_t&>(event));
  } else if (keyboard_.isMapChange(event)) {
    thread_.cancel(regrabTimer_);
    regrabTimer_ = thread_.after(settling, [this] { regrab(); });
  }
}

void X11KeyGrabber::pressed(const xcb_key_press_event_t& event) {
  // Repeats of a held key come without releases between them.
  const bool repeated = down_.contains(event.detail);
  const KeyGrab grab(event.detail, static_cast<X11Modifiers>(event.state & modifierBits));
  for (const auto& [reference, registration] : registrations_) {
    if (!registration.grabs.contains(grab)) continue;
    down_.insert(event.detail);
    if (!repeated) onPress_(reference);
    return;
  }
}

void X11KeyGrabber::released(const xcb_key_release_event_t& event) { down_.erase(event.detail); }

void X11KeyGrabber::regrab() {
  auto map = keyboard_.readMap();
  if (!map) return;
  map_ = std::move(*map);
  std::map<HotKeyRef, std::set<KeyGrab>> wanted;
  // All that is no longer wanted goes first: two shortcuts may change places.
  for (auto& [reference, registration] : registrations_) {
    const auto& combination = registration.combination;
    wanted[reference] = grabsFor(map_, combination.keyCode, combination.modifiers);
    const auto old = difference(registration.grabs, wanted[reference]);
    ungrab(old);
    registration.grabs = difference(registration.grabs, old);
  }
  for (auto& [reference, registration] : registrations_) {
    registration.grabs.merge(grab(difference(wanted[reference], registration.grabs)));
  }
}

}  // namespace vantorel
