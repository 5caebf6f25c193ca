// SPDX-License-Identifier: MIT
#include "app/FocusTracker.h"

#include "platform/OwnApplication.h"
#include "platform/RestingTimer.h"

namespace vantorel {

FocusTracker::FocusTracker(Workspace& workspace, Dispatch& dispatch)
    : workspace_(workspace), dispatch_(dispatch) {}

FocusTracker::~FocusTracker() = default;

void FocusTracker::startFocusTracking() {
  stop();
  activationObserver_ = workspace_.observeActivations(
      [this](const RunningApplication& application) { remember(application); });
  focusTimer_ = std::make_unique<RestingTimer>(
      dispatch_, workspace_, interval, [this] { remember(workspace_.frontmostApplication()); });
}

void FocusTracker::stop() {
  focusTimer_.reset();
  activationObserver_.reset();
}

std::optional<RunningApplication> FocusTracker::currentPasteTarget() {
  remember(workspace_.frontmostApplication());
  return lastPasteTarget_;
}

bool FocusTracker::isPasteTarget(const RunningApplication& application) const {
  return !isOwnApplication(workspace_, application) &&
         application.activationPolicy == ActivationPolicy::regular;
}

void FocusTracker::remember(const std::optional<RunningApplication>& application) {
  if (application && isPasteTarget(*application)) lastPasteTarget_ = application;
}

}  // namespace vantorel
