// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/toolkit/WaylandKeyboardGrabs.h"

#include <shortcuts-inhibit-client.h>

#include <QGuiApplication>
#include <QWindow>

namespace vantorel {
namespace {

class Inhibition : public Observation {
 public:
  Inhibition(ToolkitCompositor& compositor, wl_surface* surface)
      : compositor_(compositor),
        inhibitor_(zwp_keyboard_shortcuts_inhibit_manager_v1_inhibit_shortcuts(
            compositor.offers().inhibition, surface, compositor.offers().seat)) {
    compositor_.flush();
  }
  ~Inhibition() override {
    zwp_keyboard_shortcuts_inhibitor_v1_destroy(inhibitor_);
    compositor_.flush();
  }
  Inhibition(const Inhibition&) = delete;
  Inhibition& operator=(const Inhibition&) = delete;

 private:
  ToolkitCompositor& compositor_;
  zwp_keyboard_shortcuts_inhibitor_v1* inhibitor_;
};

}  // namespace

std::unique_ptr<Observation> WaylandKeyboardGrabs::grabKeyboard(WindowNumber window) {
  const auto& offers = compositor_.offers();
  auto* const focused = QGuiApplication::focusWindow();
  if (offers.inhibition == nullptr || offers.seat == nullptr || focused == nullptr) return nullptr;
  if (focused->winId() != window) return nullptr;
  auto* const surface = ToolkitCompositor::surfaceOf(*focused);
  return surface != nullptr ? std::make_unique<Inhibition>(compositor_, surface) : nullptr;
}

}  // namespace vantorel
