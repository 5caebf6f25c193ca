// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "base/Deadline.h"

struct wl_display;
struct wl_interface;
struct wl_registry;

namespace vantorel {

/// One connection to a Wayland compositor, closed when destroyed, and what the compositor offers on
/// it. Not for two threads at once. A compositor that has gone raises no signal; `isBroken()` says
/// so, and every call still returns at once.
class WaylandConnection {
 public:
  /// How long a compositor may take to say what it offers: one that answers needs a millisecond.
  static constexpr std::chrono::milliseconds usualPatience{2000};

  /// Connects to `display` (a name in the runtime directory, or a path) and hears what there is.
  /// Null when nobody listens there, or says nothing for so long.
  [[nodiscard]] static std::unique_ptr<WaylandConnection> open(
      const std::string& display, std::chrono::milliseconds patience = usualPatience);
  ~WaylandConnection();
  WaylandConnection(const WaylandConnection&) = delete;
  WaylandConnection& operator=(const WaylandConnection&) = delete;

  [[nodiscard]] wl_display* display() const { return display_; }
  [[nodiscard]] int fileDescriptor() const;
  [[nodiscard]] bool isBroken() const;
  /// Whether the compositor has yet to make room for some of what was asked of it.
  [[nodiscard]] bool hasUnsent() const { return hasUnsent_; }

  /// The highest version in which that interface is offered; 0 when it is not.
  [[nodiscard]] std::uint32_t version(std::string_view interface) const;
  /// Binds the first global that is offered under the name of `interface`, in `version`, which is
  /// one that both sides know. Null when there is none. The caller's to destroy.
  [[nodiscard]] void* bind(const wl_interface& interface, std::uint32_t version) const;

  /// Runs the callbacks of what has been read already, reads what is there, runs their callbacks
  /// and sends what they asked for. Waits for nothing. False when the connection is lost.
  bool handleArrived();
  /// The same until the compositor has answered all that was asked until now. False when it has
  /// not by then, or is lost.
  bool catchUp(Deadline deadline);

 private:
  struct Global {
    std::uint32_t name = 0;
    std::uint32_t version = 0;
  };
  explicit WaylandConnection(wl_display* display);
  bool waitAndHandle(int milliseconds);
  bool flush();

  static void added(void* self, wl_registry* registry, std::uint32_t name, const char* interface,
                    std::uint32_t version);
  static void removed(void* self, wl_registry* registry, std::uint32_t name);

  wl_display* display_;
  wl_registry* registry_;
  bool hasUnsent_ = false;
  std::multimap<std::string, Global, std::less<>> globals_;
};

}  // namespace vantorel
