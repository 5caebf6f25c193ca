// SPDX-License-Identifier: MIT
#include "chrome/ToastPresenter.h"

#include "chrome/Geometry.h"
#include "chrome/KeySymbols.h"
#include "chrome/ToastPanel.h"

namespace vantorel {
namespace {

constexpr Seconds timeOnScreen{2.1};
constexpr double distanceFromTop = 30;

}  // namespace

ToastPresenter::ToastPresenter(ChromeServices services) : services_(services) {}

ToastPresenter::~ToastPresenter() = default;

void ToastPresenter::show(const std::string& message) {
  dismissWorkItem_.reset();
  panel_ = std::make_unique<ToastPanel>(QString::fromStdString(spelledKeys(message)), services_);
  if (const auto screen = screenUnderMouse(services_.screens)) {
    const auto& area = screen->visibleFrame;
    panel_->move(toQPoint({area.midX() - ToastPanel::width / 2.0, area.y + distanceFromTop}));
  }
  panel_->orderFrontRegardless();
  // The timer dies with this presenter, and so cannot outlive what it refers to.
  dismissWorkItem_ = services_.dispatch.after(timeOnScreen, [this] { panel_.reset(); });
}

void ToastPresenter::hide() {
  dismissWorkItem_.reset();
  panel_.reset();
}

}  // namespace vantorel
