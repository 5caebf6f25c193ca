// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/wayland/HeardToplevels.h"

struct wl_seat;
struct zwlr_foreign_toplevel_handle_v1;
struct zwlr_foreign_toplevel_manager_v1;

namespace vantorel {

/// The windows as "wlr foreign toplevel" tells of them.
class ForeignToplevels : public HeardToplevels {
 public:
  /// The protocol and its version that would be spoken there; absent where there is none.
  [[nodiscard]] static std::optional<std::string> protocol(const WaylandConnection& connection);

  /// Null where windows are not told. Waits for the compositor alone.
  [[nodiscard]] static std::unique_ptr<ForeignToplevels> open(
      std::unique_ptr<WaylandConnection> connection, Observer observer) {
    return openAs<ForeignToplevels>(std::move(connection), std::move(observer));
  }
  ~ForeignToplevels() override;
  ForeignToplevels(const ForeignToplevels&) = delete;
  ForeignToplevels& operator=(const ForeignToplevels&) = delete;

 private:
  friend class HeardToplevels;
  using HeardToplevels::HeardToplevels;

  struct Listeners;
  [[nodiscard]] bool bind();
  void bringToFront(WindowToken token) override;
  void closed(zwlr_foreign_toplevel_handle_v1* handle);

  zwlr_foreign_toplevel_manager_v1* manager_ = nullptr;
  wl_seat* seat_ = nullptr;
  /// What has been said of each window, valid with its next "done".
  std::map<zwlr_foreign_toplevel_handle_v1*, Toplevel> described_;
};

}  // namespace vantorel
