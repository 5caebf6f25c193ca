// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/wayland/ToplevelList.h"

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

  [[nodiscard]] std::optional<Toplevel> active() const override { return list_.active(); }
  [[nodiscard]] std::optional<Toplevel> find(WindowToken token) const override {
    return list_.find(token);
  }
  [[nodiscard]] std::vector<Toplevel> all() const override { return list_.all(); }
  bool activate(WindowToken token) override;
  [[nodiscard]] WaylandThread& thread() override { return thread_; }

 private:
  struct Listeners;
  ForeignToplevels(std::unique_ptr<WaylandConnection> connection, Observer observer);
  [[nodiscard]] bool bind();
  void tellLoss();
  void closed(zwlr_foreign_toplevel_handle_v1* handle);

  WaylandThread thread_;
  Observer observer_;
  zwlr_foreign_toplevel_manager_v1* manager_ = nullptr;
  wl_seat* seat_ = nullptr;
  ToplevelList list_;
  /// What has been said of each window, valid with its next "done".
  std::map<zwlr_foreign_toplevel_handle_v1*, Toplevel> described_;
};

}  // namespace vantorel
