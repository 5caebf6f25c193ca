// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Windows.h"

#include <algorithm>
#include <ctime>
#include <utility>

namespace vantorel {

namespace {

constexpr std::uint8_t sentEventBit = 0x80;
constexpr std::uint32_t sourceIsPager = 2;
constexpr std::size_t rememberedEnds = 256;  // far more than anybody comes back to
constexpr int readingsInARow = 4;            // of what changes while it is read

double secondsSinceBoot() {
  timespec time{};
  clock_gettime(CLOCK_BOOTTIME, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

template <class Event>
const Event& as(const xcb_generic_event_t& event) {
  return reinterpret_cast<const Event&>(event);
}

}  // namespace

X11Windows::X11Windows(X11Thread& thread)
    : thread_(thread),
      connection_(thread.connection()),
      queries_(connection_),
      clock_(connection_.createHiddenWindow()),
      activeWindow_(connection_.atom("_NET_ACTIVE_WINDOW")),
      managerCheck_(connection_.atom("_NET_SUPPORTING_WM_CHECK")),
      supported_(connection_.atom("_NET_SUPPORTED")) {
  watch(connection_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
}

X11Windows::~X11Windows() { xcb_destroy_window(connection_.xcb(), clock_); }

void X11Windows::watch(xcb_window_t window, std::uint32_t events) const {
  xcb_change_window_attributes(connection_.xcb(), window, XCB_CW_EVENT_MASK, &events);
}

bool X11Windows::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & ~sentEventBit) {
    case XCB_PROPERTY_NOTIFY:
      return handle(as<xcb_property_notify_event_t>(event));
    case XCB_DESTROY_NOTIFY:
      // Anybody may send an event that looks like the server's; only the server's tells an end.
      return (event.response_type & sentEventBit) == 0 &&
             handle(as<xcb_destroy_notify_event_t>(event));
    default:
      return false;
  }
}

bool X11Windows::handle(const xcb_property_notify_event_t& change) {
  if (change.window == clock_) {
    time_ = change.time;
    return false;
  }
  if (change.window == connection_.root()) {
    if (change.atom == activeWindow_) {
      // Whoever says it is there, and means a window of now.
      statedIsFresh_ = false;
      statedHasEnded_ = false;
      managerHasEnded_ = false;
      return true;
    }
    if (change.atom != managerCheck_ && change.atom != supported_) return false;
    managerIsKnown_ = false;
    managerHasEnded_ = false;
    return true;
  }
  const auto known = entries_.find(change.window);
  if (known == entries_.end() || !queries_.isFact(change.atom)) return false;
  known->second.factsAreFresh = false;
  return stated_ == change.window;
}

bool X11Windows::handle(const xcb_destroy_notify_event_t& end) {
  if (manager_ && manager_->check == end.window) {
    manager_.reset();
    managerHasEnded_ = true;
    return true;
  }
  const auto known = entries_.find(end.window);
  if (known == entries_.end()) return false;
  forget(known);
  if (stated_ != end.window) return false;
  // The number may be another window's soon: it is that one's turn when it is said anew.
  statedHasEnded_ = true;
  return true;
}

void X11Windows::forget(Entries::iterator entry) {
  const auto& window = entry->second.window;
  if (window.lastInFront != 0) {
    lastSights_.emplace_back(window.token, entry->second.seenInFront);
    if (lastSights_.size() > rememberedEnds) lastSights_.pop_front();
  }
  entries_.erase(entry);
}

void X11Windows::handleLoss() {
  while (!entries_.empty()) forget(entries_.begin());
  manager_.reset();
  managerIsKnown_ = true;
  managerHasEnded_ = true;
  stated_.reset();
  statedIsFresh_ = true;
}

void X11Windows::catchUp() {
  if (!thread_.catchUp() && connection_.broken()) handleLoss();
}

X11Windows::Entry* X11Windows::take(xcb_window_t window, std::optional<WindowFacts> facts) {
  const auto known = entries_.find(window);
  if (!facts) {
    if (known != entries_.end()) forget(known);
    return nullptr;
  }
  auto& entry = known != entries_.end() ? known->second : entries_[window];
  if (entry.window.token == 0) entry.window.token = ++lastToken_;
  entry.window.facts = std::move(*facts);
  entry.factsAreFresh = true;
  return &entry;
}

X11Windows::Entry* X11Windows::learn(xcb_window_t window) {
  if (window == XCB_WINDOW_NONE) return nullptr;
  const auto known = entries_.find(window);
  if (known != entries_.end() && known->second.factsAreFresh) return &known->second;
  // Before the questions, so that no later change is missed.
  if (known == entries_.end()) {
    watch(window, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  }
  return take(window, queries_.facts(window));
}

void X11Windows::lookForManager() {
  if (managerIsKnown_) return;
  managerIsKnown_ = true;
  manager_ = queries_.manager();
  if (manager_ && !manager_->hasEnded) {
    watch(manager_->check, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    // Again, for it may have ended before it was watched.
    manager_ = queries_.manager();
  }
  managerHasEnded_ = manager_ && manager_->hasEnded;
  if (managerHasEnded_) manager_.reset();
  statedIsFresh_ = false;  // by the one that is there
}

bool X11Windows::announcesActive() {
  lookForManager();
  return manager_ && manager_->activates && !connection_.broken();
}

void X11Windows::readActive() {
  for (int reading = 0; reading < readingsInARow && !statedIsFresh_; ++reading) {
    statedIsFresh_ = true;
    stated_ = queries_.activeWindow();
    // Whatever ended, or was said, before the answer.
    thread_.handleArrivedEvents();
  }
}

X11Windows::Entry* X11Windows::learnStated() {
  if (statedHasEnded_) return nullptr;
  auto* entry = learn(*stated_);
  if (entry == nullptr) statedHasEnded_ = true;
  return entry != nullptr && isApplicationWindow(entry->window.facts) ? entry : nullptr;
}

X11Windows::Entry* X11Windows::learnFocused() {
  const auto top = queries_.topLevelOf(queries_.inputFocus());
  return top ? learn(top->window) : nullptr;
}

std::optional<KnownWindow> X11Windows::active() {
  lookForManager();
  readActive();
  const bool isStated = stated_ && !managerHasEnded_;
  if (isStated && *stated_ == XCB_WINDOW_NONE) return std::nullopt;
  auto* entry = isStated ? learnStated() : nullptr;
  if (entry == nullptr) entry = learnFocused();
  if (entry == nullptr) return std::nullopt;
  entry->seenInFront = secondsSinceBoot();
  auto& window = entry->window;
  const bool isTheSameAgain = window.lastInFront != 0 && window.lastInFront == timesInFront_;
  if (!isTheSameAgain) window.lastInFront = ++timesInFront_;
  return window;
}

std::optional<KnownWindow> X11Windows::focused() {
  const auto* entry = learnFocused();
  return entry == nullptr ? std::nullopt : std::optional(entry->window);
}

std::optional<KnownWindow> X11Windows::find(WindowToken token) {
  for (auto& [number, entry] : entries_) {
    if (entry.window.token != token) continue;
    const auto* fresh = learn(number);
    return fresh == nullptr ? std::nullopt : std::optional(fresh->window);
  }
  return std::nullopt;
}

std::optional<double> X11Windows::lastSightOf(WindowToken token) const {
  const auto found = std::find_if(lastSights_.begin(), lastSights_.end(),
                                  [token](const auto& sight) { return sight.first == token; });
  return found == lastSights_.end() ? std::nullopt : std::optional(found->second);
}

std::vector<KnownWindow> X11Windows::all() {
  auto candidates = queries_.candidates();
  std::vector<xcb_window_t> unknown;
  for (const auto window : candidates) {
    const auto known = entries_.find(window);
    if (known != entries_.end() && known->second.factsAreFresh) continue;
    if (known == entries_.end()) {
      watch(window, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    }
    unknown.push_back(window);
  }
  // In one round trip for all of them.
  auto facts = queries_.facts(unknown);
  for (std::size_t i = 0; i < unknown.size(); ++i) {
    // Without a window manager's list most are parts of others.
    if (!facts[i] || isApplicationWindow(*facts[i])) take(unknown[i], std::move(facts[i]));
  }
  std::vector<KnownWindow> result;
  std::reverse(candidates.begin(), candidates.end());  // the highest first
  for (const auto window : candidates) {
    const auto known = entries_.find(window);
    if (known == entries_.end() || !isApplicationWindow(known->second.window.facts)) continue;
    result.push_back(known->second.window);
  }
  std::stable_sort(result.begin(), result.end(),
                   [](const auto& a, const auto& b) { return a.lastInFront > b.lastInFront; });
  return result;
}

xcb_timestamp_t X11Windows::serverTime() {
  xcb_change_property(connection_.xcb(), XCB_PROP_MODE_APPEND, clock_, XCB_ATOM_WM_NAME,
                      XCB_ATOM_STRING, 8, 0, nullptr);
  time_ = XCB_CURRENT_TIME;
  catchUp();
  return time_;
}

void X11Windows::activate(xcb_window_t window, xcb_window_t current) {
  auto* xcb = connection_.xcb();
  const auto time = serverTime();
  if (!announcesActive()) {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_map_window(xcb, window);
    xcb_configure_window(xcb, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_set_input_focus(xcb, XCB_INPUT_FOCUS_PARENT, window, time);
    connection_.flush();
    return;
  }
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = activeWindow_;
  message.data.data32[0] = sourceIsPager;
  message.data.data32[1] = time;
  message.data.data32[2] = current;
  xcb_send_event(xcb, 0, connection_.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
  connection_.flush();
}

}  // namespace vantorel
