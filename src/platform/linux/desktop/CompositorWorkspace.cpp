// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/CompositorWorkspace.h"

#include <limits>
#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/wayland/OfferedProtocols.h"

namespace vantorel {

namespace {

/// Below those that clients of the X server without a process of this machine have.
constexpr ProcessId firstNumber = std::numeric_limits<ProcessId>::min();

bool isToplevel(const RunningApplication& application) {
  return application.window >= ToplevelSource::firstToken;
}

}  // namespace

std::unique_ptr<CompositorWorkspace> CompositorWorkspace::open(
    Surroundings surroundings, std::unique_ptr<WaylandConnection> connection) {
  auto& dispatch = surroundings.dispatch;
  auto* const x11 = surroundings.x11;
  std::unique_ptr<CompositorWorkspace> made(new CompositorWorkspace(std::move(surroundings)));
  auto& self = *made;
  self.toplevels_ = openToplevels(
      std::move(connection),
      {.onActivated = onMainQueue(dispatch, self.life_.guard([&self](const Toplevel& toplevel) {
         // X11 tells of its own windows; what has come to the front is one of them then.
         auto* const known = self.around_.x11;
         if (known != nullptr && known->frontmostApplication()) return;
         self.activations_.notify(self.applicationOf(toplevel));
       })),
       .onLost = onMainQueue(dispatch, self.life_.guard([&self] {
         self.isTold_ = false;
         const auto handler = self.onAnnouncing_;
         if (handler) handler();
       }))});
  if (!self.toplevels_) return nullptr;
  if (x11 != nullptr) {
    self.x11Activations_ = x11->observeActivations(
        [&self](const RunningApplication& application) { self.activations_.notify(application); });
  }
  return made;
}

CompositorWorkspace::~CompositorWorkspace() = default;

RunningApplication CompositorWorkspace::applicationOf(const Toplevel& toplevel) {
  const auto index = around_.entries.index();
  const auto* const entry = index->find({toplevel.appId, toplevel.appId, {}, {}});
  RunningApplication application;
  const auto next = static_cast<ProcessId>(firstNumber + static_cast<int>(numbers_.size()));
  const auto [known, isNew] = numbers_.emplace(toplevel.appId, next);
  if (isNew && entry == nullptr && around_.onUnnamed) around_.onUnnamed();
  application.processIdentifier = known->second;
  application.window = toplevel.token;
  if (entry != nullptr) {
    application.bundleIdentifier = entry->id;
    application.localizedName = entry->name.empty() ? toplevel.appId : entry->name;
  } else if (!toplevel.appId.empty()) {
    application.bundleIdentifier = toplevel.appId;
    application.localizedName = toplevel.appId;
  }
  return application;
}

std::optional<RunningApplication> CompositorWorkspace::applicationOf(
    const std::optional<Toplevel>& toplevel) {
  return toplevel ? std::optional(applicationOf(*toplevel)) : std::nullopt;
}

std::optional<RunningApplication> CompositorWorkspace::frontmostApplication() {
  auto front = around_.x11 != nullptr ? around_.x11->frontmostApplication() : std::nullopt;
  return front ? front : applicationOf(toplevels_->active());
}

std::optional<RunningApplication> CompositorWorkspace::runningApplication(ProcessId pid) {
  const bool isOfX11 = pid > 0 && around_.x11 != nullptr;
  if (isOfX11) return around_.x11->runningApplication(pid);
  for (const auto& toplevel : toplevels_->all()) {
    auto application = applicationOf(toplevel);
    if (application.processIdentifier == pid) return application;
  }
  return around_.x11 != nullptr ? around_.x11->runningApplication(pid) : std::nullopt;
}

std::optional<RunningApplication> CompositorWorkspace::stillThere(const RunningApplication& seen) {
  if (isToplevel(seen)) return applicationOf(toplevels_->find(seen.window));
  if (around_.x11 != nullptr) return around_.x11->stillThere(seen);
  return runningApplication(seen.processIdentifier);
}

std::vector<RunningApplication> CompositorWorkspace::runningApplications(
    const std::string& bundleIdentifier) {
  std::vector<RunningApplication> result;
  if (around_.x11 != nullptr) result = around_.x11->runningApplications(bundleIdentifier);
  // The compositor tells of X11 windows, too.
  if (!result.empty()) return result;
  for (const auto& toplevel : toplevels_->all()) {
    auto application = applicationOf(toplevel);
    if (application.bundleIdentifier != bundleIdentifier) continue;
    result.push_back(std::move(application));
    break;  // one number for them all
  }
  return result;
}

bool CompositorWorkspace::startedAfter(const RunningApplication& application,
                                       const RunningApplication& ended) {
  if (isToplevel(application) || isToplevel(ended)) return false;
  return around_.x11 != nullptr && around_.x11->startedAfter(application, ended);
}

bool CompositorWorkspace::activate(const RunningApplication& application) {
  if (around_.onActivating) around_.onActivating();
  if (isToplevel(application)) return toplevels_->activate(application.window);
  if (around_.x11 != nullptr) return around_.x11->activate(application);
  for (const auto& toplevel : toplevels_->all()) {
    const auto each = applicationOf(toplevel);
    if (each.processIdentifier != application.processIdentifier) continue;
    return toplevels_->activate(toplevel.token);
  }
  return false;
}

std::unique_ptr<Observation> CompositorWorkspace::observeActivations(
    std::function<void(const RunningApplication&)> handler) {
  return activations_.add(std::move(handler));
}

void CompositorWorkspace::setAnnouncingHandler(std::function<void()> handler) {
  onAnnouncing_ = handler;
  if (around_.x11 != nullptr) around_.x11->setAnnouncingHandler(std::move(handler));
}

}  // namespace vantorel
