// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/wayland/ToplevelList.h"

struct org_kde_plasma_window;
struct org_kde_plasma_window_management;

namespace vantorel {

/// The windows as KWin tells of them: to programs alone whose desktop entry asks for it.
class PlasmaWindows : public ToplevelSource {
 public:
  /// The protocol and its version that would be spoken there; absent where there is none, or not
  /// for this program.
  [[nodiscard]] static std::optional<std::string> protocol(const WaylandConnection& connection);

  /// Null where windows are not told. Waits for the compositor alone.
  [[nodiscard]] static std::unique_ptr<PlasmaWindows> open(
      std::unique_ptr<WaylandConnection> connection, Observer observer);
  ~PlasmaWindows() override;
  PlasmaWindows(const PlasmaWindows&) = delete;
  PlasmaWindows& operator=(const PlasmaWindows&) = delete;

  [[nodiscard]] std::optional<Toplevel> active() const override { return list_.active(); }
  [[nodiscard]] std::optional<Toplevel> find(WindowToken token) const override {
    return list_.find(token);
  }
  [[nodiscard]] std::vector<Toplevel> all() const override { return list_.all(); }
  bool activate(WindowToken token) override;
  [[nodiscard]] WaylandThread& thread() override { return thread_; }

 private:
  struct Listeners;
  struct Window {
    Toplevel described;
    bool isWhole = false;  // all that there was to say at first has been said
  };

  PlasmaWindows(std::unique_ptr<WaylandConnection> connection, Observer observer);
  [[nodiscard]] bool bind();
  void changed(const Window& window);
  void closed(org_kde_plasma_window* handle);

  WaylandThread thread_;
  Observer observer_;
  org_kde_plasma_window_management* manager_ = nullptr;
  ToplevelList list_;
  std::map<org_kde_plasma_window*, Window> windows_;
};

}  // namespace vantorel
