// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Workspace.h"

#include <algorithm>
#include <set>
#include <utility>

#include "platform/ApplicationId.h"
#include "platform/MainQueue.h"

namespace vantorel {

namespace {

constexpr double startPrecision = 0.01;  // seconds

}  // namespace

std::unique_ptr<X11Workspace> X11Workspace::open(Dispatch& dispatch, DesktopEntryPlaces places,
                                                 const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) return nullptr;
  std::unique_ptr<X11Workspace> workspace(new X11Workspace(dispatch));
  workspace->applications_ = std::make_unique<X11Applications>(
      std::move(connection), std::move(places), workspace->observer());
  workspace->applications_->ask(
      [&] { workspace->announces_ = workspace->applications_->windows().announcesActive(); });
  return workspace;
}

X11Workspace::~X11Workspace() = default;

X11Applications::Observer X11Workspace::observer() {
  return {
      .onActivated =
          onMainQueue(dispatch_, life_.guard([this](const RunningApplication& application) {
            activations_.notify(application);
          })),
      .onAnnouncing = onMainQueue(dispatch_, life_.guard([this](bool announces) {
        announces_ = announces;
        const auto handler = onAnnouncing_;
        if (handler) handler();
      })),
  };
}

std::optional<std::string> X11Workspace::ownBundleIdentifier() const { return applicationId::name; }

std::optional<RunningApplication> X11Workspace::frontmostApplication() {
  std::optional<RunningApplication> front;
  applications_->ask([&] {
    if (auto active = applications_->active()) front = std::move(active->application);
  });
  return front;
}

std::optional<RunningApplication> X11Workspace::runningApplication(ProcessId pid) {
  std::optional<RunningApplication> running;
  applications_->ask([&] {
    for (auto& each : applications_->all()) {
      if (each.application.processIdentifier != pid) continue;
      running = std::move(each.application);
      return;
    }
  });
  return running;
}

std::optional<RunningApplication> X11Workspace::stillThere(const RunningApplication& seen) {
  if (seen.window == 0) return runningApplication(seen.processIdentifier);
  std::optional<RunningApplication> found;
  applications_->ask([&] {
    auto window = applications_->find(seen.window);
    if (window) found = std::move(window->application);
  });
  return found;
}

std::vector<RunningApplication> X11Workspace::runningApplications(
    const std::string& bundleIdentifier) {
  std::vector<RunningApplication> result;
  applications_->ask([&] {
    std::set<ProcessId> seen;
    for (auto& each : applications_->all()) {
      auto& application = each.application;
      if (application.bundleIdentifier != bundleIdentifier) continue;
      if (!seen.insert(application.processIdentifier).second) continue;
      result.push_back(std::move(application));
    }
  });
  return result;
}

bool X11Workspace::startedAfter(const RunningApplication& application,
                                const RunningApplication& ended) {
  std::optional<double> lastSight;
  applications_->ask([&] { lastSight = applications_->windows().lastSightOf(ended.window); });
  const auto start = startOf(application.processIdentifier);
  // A start is told in whole hundredths, rounded down.
  return start && lastSight && *start + startPrecision > *lastSight;
}

std::optional<std::string> X11Workspace::applicationName(const std::string& bundleIdentifier) {
  return desktopEntries().nameOf(bundleIdentifier);
}

bool X11Workspace::activateOnThread(const RunningApplication& application) {
  std::optional<ApplicationWindow> target;
  if (application.window != 0) {
    target = applications_->find(application.window);
  } else {
    // One process may run several applications: a window of the one that is meant comes first.
    for (auto& each : applications_->all()) {
      if (each.application.processIdentifier != application.processIdentifier) continue;
      const bool isMeant = each.application.bundleIdentifier == application.bundleIdentifier;
      if (!target || isMeant) target = std::move(each);
      if (isMeant) break;
    }
  }
  if (!target) return false;
  const auto active = applications_->active();
  const bool ownIsActive =
      active && active->application.processIdentifier == applications_->host().ownPid;
  const auto current = ownIsActive ? active->window.facts.window : xcb_window_t{XCB_WINDOW_NONE};
  applications_->windows().activate(target->window.facts.window, current);
  return true;
}

bool X11Workspace::activate(const RunningApplication& application) {
  bool asked = false;
  applications_->ask([&] { asked = activateOnThread(application); });
  return asked && !applications_->isLost();
}

std::unique_ptr<Observation> X11Workspace::observeActivations(
    std::function<void(const RunningApplication&)> handler) {
  return activations_.add(std::move(handler));
}

}  // namespace vantorel
