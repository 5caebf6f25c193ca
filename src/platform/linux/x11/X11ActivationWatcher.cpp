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
  thread_.post([this] {
    entries_.refresh();
    look(Announcement::silent);
  });
  thread_.start([this](const xcb_generic_event_t& event) { handle(event); }, [] {});
}

X11ActivationWatcher::~X11ActivationWatcher() { thread_.stop(); }

void X11ActivationWatcher::handle(const xcb_generic_event_t& event) {
  if ((event.response_type & 0x7FU) != XCB_PROPERTY_NOTIFY) return;
  const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
  if (change.window != thread_.connection().root() || change.atom != activeWindow_) return;
  look(Announcement::spoken);
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

void X11ActivationWatcher::look(Announcement announcement) {
  const auto active = activeWithFreshEntries();
  if (!active) {
    front_.reset();
    return;
  }
  order_.note(active->facts.window);
  if (front_ == active->application) return;
  front_ = active->application;
  if (announcement == Announcement::spoken) onActivated_(active->application);
}

}  // namespace vantorel
