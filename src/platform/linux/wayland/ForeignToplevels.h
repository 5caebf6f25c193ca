#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/wayland/ToplevelSource.h"

struct wl_seat;
struct zwlr_foreign_toplevel_handle_v1;
struct zwlr_foreign_toplevel_manager_v1;

namespace vantorel {

/// The windows as "wlr foreign toplevel" tells of them.
class ForeignToplevels : public ToplevelSource {
 public:
  /// The protocol and its version that would be spoken there; absent where there is none.
  [[nodiscard]] static std::optional<std::string> protocol(const WaylandConnection& connection);

  /// Null where windows are not told. Waits for the compositor alone.
  [[nodiscard]] static std::unique_ptr<ForeignToplevels> open(
      std::unique_ptr<WaylandConnection> connection, Observer observer);
  ~ForeignToplevels() override;
  ForeignToplevels(const ForeignToplevels&) = delete;
  ForeignToplevels& operator=(const ForeignToplevels&) = delete;

  [[nodiscard]] std::optional<Toplevel> active() const override;
  [[nodiscard]] std::optional<Toplevel> find(WindowToken token) const override;
  [[nodiscard]] std::vector<Toplevel> all() const override;
  bool activate(WindowToken token) override;
  [[nodiscard]] WaylandThread& thread() override { return thread_; }

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
