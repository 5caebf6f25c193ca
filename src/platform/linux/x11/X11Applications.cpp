// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Applications.h"

#include <utility>

namespace vantorel {

X11Applications::X11Applications(std::unique_ptr<X11Connection> connection,
                                 DesktopEntryPlaces places, Observer observer)
    : observer_(std::move(observer)),
      entries_(std::move(places)),
      thread_(std::move(connection), "windows"),
      windows_(thread_),
      host_(LocalHost::current(windows_.queries().resourceMask(), windows_.ownPid())),
      entriesQueue_("com.vantorel.desktop-entries") {
  thread_.start([this](const xcb_generic_event_t& event) { handle(event); },
                [this] {
                  windows_.handleLoss();
                  lost_ = true;
                  look();
                });
  // Who is in front now is no news; whoever comes from here on is.
  ask([this] {
    if (const auto now = active()) front_ = now->application;
    announces_ = windows_.announcesActive();
    readEntries();
  });
}

X11Applications::~X11Applications() { thread_.stop(); }

void X11Applications::ask(const Work& question) {
  const bool ran = thread_.runAndWait([&] {
    windows_.catchUp();
    question();
  });
  static_cast<void>(ran);  // it always does: the thread ends with this
}

void X11Applications::post(Work work) { static_cast<void>(thread_.post(std::move(work))); }

void X11Applications::handle(const xcb_generic_event_t& event) {
  if (onEvent_) onEvent_(event);
  if (!windows_.handle(event) || lookIsPosted_) return;
  // Not here: looking takes round trips, which more events may follow.
  lookIsPosted_ = true;
  post([this] { look(); });
}

void X11Applications::look() {
  lookIsPosted_ = false;
  const bool announces = windows_.announcesActive();
  if (std::exchange(announces_, announces) != announces) observer_.onAnnouncing(announces);
  const auto now = active();
  // Between two windows there may be none for a moment; that makes the same one no other.
  if (!now) return;
  const bool isNamed = entries_.index()->find(identityOf(now->window.facts, host_)) != nullptr;
  const bool isOwn = now->application.processIdentifier == host_.ownPid;
  if (!isNamed && !isOwn && std::exchange(unnamed_, now->window.token) != now->window.token) {
    readEntries();
  }
  if (front_ == now->application) return;
  front_ = now->application;
  observer_.onActivated(now->application);
}

void X11Applications::readEntries() {
  entriesQueue_.async([this] {
    if (entries_.refresh()) post([this] { entriesRead(); });
  });
}

void X11Applications::entriesRead() {
  const auto now = active();
  if (!now || !front_) return;
  // The same one, but called by its entry now.
  if (now->application.window != front_->window || now->application == *front_) return;
  front_ = now->application;
  observer_.onActivated(now->application);
}

ApplicationWindow X11Applications::describe(KnownWindow window) const {
  const auto index = entries_.index();
  const auto history =
      window.lastInFront != 0 ? WindowHistory::wasInFront : WindowHistory::neverInFront;
  auto application =
      applicationOf(window.facts, history, index->find(identityOf(window.facts, host_)), host_);
  application.window = window.token;
  return {std::move(window), std::move(application)};
}

std::optional<ApplicationWindow> X11Applications::active() {
  auto window = windows_.active();
  if (!window) return std::nullopt;
  return describe(std::move(*window));
}

std::optional<ApplicationWindow> X11Applications::find(WindowToken token) {
  auto window = windows_.find(token);
  if (!window) return std::nullopt;
  return describe(std::move(*window));
}

std::vector<ApplicationWindow> X11Applications::all() {
  std::vector<ApplicationWindow> result;
  for (auto& window : windows_.all()) result.push_back(describe(std::move(window)));
  return result;
}

}  // namespace vantorel
