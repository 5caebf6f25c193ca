#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/Workspace.h"
#include "platform/linux/wayland/WaylandThread.h"

struct wl_seat;
struct zwlr_foreign_toplevel_handle_v1;
struct zwlr_foreign_toplevel_manager_v1;

namespace vantorel {

/// A window of another program, as the compositor describes it. Processes are not told.
struct Toplevel {
  WindowToken token = 0;
  std::string appId;
  bool isActive = false;
  std::uint64_t lastInFront = 0;  // grows with each window that comes to the front; 0: never
};

/// The windows of a compositor that tells programs of them (wlr foreign toplevel), on a connection
/// and a thread of its own. What is asked is answered from what was heard.
class ForeignToplevels {
 public:
  /// Tokens from here on are of these windows; those of other windows are smaller.
  static constexpr WindowToken firstToken = WindowToken{1} << 48U;

  struct Observer {
    std::function<void(Toplevel)> onActivated;  // another window has come to the front
    std::function<void()> onLost;               // nothing more will be told
  };

  /// The protocol and its version that would be spoken there; absent where there is none.
  [[nodiscard]] static std::optional<std::string> protocol(const WaylandConnection& connection);

  /// Null where windows are not told. The observer is called on the thread. Waits for the
  /// compositor alone.
  [[nodiscard]] static std::unique_ptr<ForeignToplevels> open(
      std::unique_ptr<WaylandConnection> connection, Observer observer);
  ~ForeignToplevels();
  ForeignToplevels(const ForeignToplevels&) = delete;
  ForeignToplevels& operator=(const ForeignToplevels&) = delete;

  // Any thread, at once.

  /// The window that has the user's attention.
  [[nodiscard]] std::optional<Toplevel> active() const;
  [[nodiscard]] std::optional<Toplevel> find(WindowToken token) const;
  /// The one that was in front last first.
  [[nodiscard]] std::vector<Toplevel> all() const;
  /// Asks for the window to come to the front. False when it is gone.
  bool activate(WindowToken token);

 private:
  struct Listeners;
  struct Window {
    Toplevel known;
    Toplevel described;  // what has been said since, valid with the next "done"
  };

  ForeignToplevels(std::unique_ptr<WaylandConnection> connection, Observer observer);
  [[nodiscard]] bool bind();
  void settle(Window& window);
  void closed(zwlr_foreign_toplevel_handle_v1* handle);

  WaylandThread thread_;
  Observer observer_;
  zwlr_foreign_toplevel_manager_v1* manager_ = nullptr;
  wl_seat* seat_ = nullptr;
  WindowToken lastToken_ = firstToken;
  std::uint64_t timesInFront_ = 0;
  mutable std::mutex mutex_;  // the next, whose nodes stay where they are
  std::map<zwlr_foreign_toplevel_handle_v1*, Window> windows_;
};

}  // namespace vantorel
