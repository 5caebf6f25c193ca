// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/wayland/HeardToplevels.h"

struct org_kde_plasma_window;
struct org_kde_plasma_window_management;

namespace vantorel {

/// The windows as KWin tells of them: to programs alone whose desktop entry asks for it.
class PlasmaWindows : public HeardToplevels {
 public:
  /// The protocol and its version that would be spoken there; absent where there is none, or not
  /// for this program.
  [[nodiscard]] static std::optional<std::string> protocol(const WaylandConnection& connection);

  /// Null where windows are not told. Waits for the compositor alone.
  [[nodiscard]] static std::unique_ptr<PlasmaWindows> open(
      std::unique_ptr<WaylandConnection> connection, Observer observer) {
    return openAs<PlasmaWindows>(std::move(connection), std::move(observer));
  }
  ~PlasmaWindows() override;
  PlasmaWindows(const PlasmaWindows&) = delete;
  PlasmaWindows& operator=(const PlasmaWindows&) = delete;

 private:
  friend class HeardToplevels;
  using HeardToplevels::HeardToplevels;

  struct Listeners;
  struct Window {
    Toplevel described;
    bool isWhole = false;  // all that there was to say at first has been said
  };

  [[nodiscard]] bool bind();
  void bringToFront(WindowToken token) override;
  void changed(const Window& window);
  void closed(org_kde_plasma_window* handle);

  org_kde_plasma_window_management* manager_ = nullptr;
  std::map<org_kde_plasma_window*, Window> windows_;
};

}  // namespace vantorel
