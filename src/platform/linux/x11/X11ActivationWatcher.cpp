#include "platform/linux/x11/X11ActivationWatcher.h"

#include <utility>

namespace vantorel {

X11ActivationWatcher::X11ActivationWatcher(std::unique_ptr<X11Connection> connection,
                                           DesktopEntries& entries, ActivationOrder& order,
                                           Handler onActivated)
    : entries_(entries),
      order_(order),
      onActivated_(std::move(onActivated)),
      thread_(std::move(connection), "workspace"),
      applications_(thread_.connection(), entries),
      activeWindow_(thread_.connection().atom("_NET_ACTIVE_WINDOW")) {
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(thread_.connection().xcb(), thread_.connection().root(),
                               XCB_CW_EVENT_MASK, &mask);
  // Who is in front now is no news; whoever comes from here on is.
  if (const auto active = applications_.active()) front_ = active->application;
  thread_.post([this] { readEntries(); });
  thread_.start([this](const xcb_generic_event_t& event) { handle(event); }, [] {});
}

X11ActivationWatcher::~X11ActivationWatcher() { thread_.stop(); }

void X11ActivationWatcher::handle(const xcb_generic_event_t& event) {
  if ((event.response_type & 0x7FU) != XCB_PROPERTY_NOTIFY) return;
  const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
  if (change.window != thread_.connection().root() || change.atom != activeWindow_) return;
  look();
}

void X11ActivationWatcher::readEntries() {
  entries_.refresh();
  const auto active = applications_.active();
  if (!active || !front_) return;
  order_.note(active->facts.window);
  // The same one, but called by its entry now.
  if (active->application.processIdentifier == front_->processIdentifier) {
    front_ = active->application;
  }
}

std::optional<ApplicationWindow> X11ActivationWatcher::activeWithFreshEntries() {
  auto active = applications_.active();
  if (!active || active->facts.window == unknown_) return active;
  if (active->application.processIdentifier == applications_.host().ownPid) return active;
  if (applications_.hasEntry(active->facts)) return active;
  unknown_ = active->facts.window;
  if (entries_.refresh()) active = applications_.active();
  return active;
}

void X11ActivationWatcher::look() {
  const auto active = activeWithFreshEntries();
  // Between two windows there may be none for a moment; that makes the same application no other.
  if (!active) return;
  order_.note(active->facts.window);
  if (front_ == active->application) return;
  front_ = active->application;
  onActivated_(active->application);
}

}  // namespace vantorel
