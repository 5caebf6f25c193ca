// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/WaylandConnection.h"

#include <poll.h>
#include <wayland-client.h>

#include <algorithm>
#include <cerrno>

#include "base/FileDescriptor.h"

namespace vantorel {

std::unique_ptr<WaylandConnection> WaylandConnection::open(const std::string& display,
                                                           std::chrono::milliseconds patience) {
  wl_display* const connected = wl_display_connect(display.c_str());
  if (connected == nullptr) return nullptr;
  std::unique_ptr<WaylandConnection> connection(new WaylandConnection(connected));
  const bool answered = connection->catchUp(std::chrono::steady_clock::now() + patience);
  return answered ? std::move(connection) : nullptr;
}

WaylandConnection::WaylandConnection(wl_display* display)
    : display_(display), registry_(wl_display_get_registry(display)) {
  static const wl_registry_listener listener{added, removed};
  wl_registry_add_listener(registry_, &listener, this);
}

WaylandConnection::~WaylandConnection() {
  wl_registry_destroy(registry_);
  wl_display_disconnect(display_);
}

int WaylandConnection::fileDescriptor() const { return wl_display_get_fd(display_); }

bool WaylandConnection::isBroken() const { return wl_display_get_error(display_) != 0; }

std::uint32_t WaylandConnection::version(std::string_view interface) const {
  const auto [first, last] = globals_.equal_range(interface);
  std::uint32_t highest = 0;
  for (auto it = first; it != last; ++it) highest = std::max(highest, it->second.version);
  return highest;
}

void* WaylandConnection::bind(const wl_interface& interface, std::uint32_t version) const {
  const auto found = globals_.find(std::string_view(interface.name));
  if (found == globals_.end()) return nullptr;
  return wl_registry_bind(registry_, found->second.name, &interface, version);
}

bool WaylandConnection::handleArrived() { return waitAndHandle(0); }

bool WaylandConnection::waitAndHandle(int milliseconds) {
  while (wl_display_prepare_read(display_) != 0) {
    if (wl_display_dispatch_pending(display_) < 0) return false;
  }
  const bool sent = flush();
  pollfd readable{fileDescriptor(), POLLIN, 0};
  if (sent && poll(&readable, 1, milliseconds) > 0) {
    if (wl_display_read_events(display_) < 0) return false;
  } else {
    wl_display_cancel_read(display_);
  }
  if (wl_display_dispatch_pending(display_) < 0) return false;
  return sent && flush() && !isBroken();
}

/// What does not fit into the socket now goes out in a later turn.
bool WaylandConnection::flush() {
  const bool sent = wl_display_flush(display_) >= 0;
  hasUnsent_ = !sent && errno == EAGAIN;
  return sent || hasUnsent_;
}

bool WaylandConnection::catchUp(Deadline deadline) {
  bool answered = false;
  wl_callback* const callback = wl_display_sync(display_);
  static const wl_callback_listener listener{
      [](void* done, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
        *static_cast<bool*>(done) = true;
      }};
  wl_callback_add_listener(callback, &listener, &answered);
  while (!answered) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now())
            .count();
    if (left <= 0 || !waitAndHandle(static_cast<int>(left))) break;
  }
  wl_callback_destroy(callback);
  return answered;
}

void WaylandConnection::added(void* self, wl_registry* /*registry*/, std::uint32_t name,
                              const char* interface, std::uint32_t version) {
  static_cast<WaylandConnection*>(self)->globals_.emplace(interface, Global{name, version});
}

void WaylandConnection::removed(void* self, wl_registry* /*registry*/, std::uint32_t name) {
  auto& globals = static_cast<WaylandConnection*>(self)->globals_;
  std::erase_if(globals, [name](const auto& entry) { return entry.second.name == name; });
}

}  // namespace vantorel
