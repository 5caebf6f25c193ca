#include "platform/linux/desktop/CompositorWorkspace.h"

#include <limits>
#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/wayland/ForeignToplevels.h"

namespace vantorel {

namespace {

/// Below those that clients of the X server without a process of this machine have.
constexpr ProcessId firstNumber = std::numeric_limits<ProcessId>::min();

bool isToplevel(const RunningApplication& application) {
  return application.window >= ToplevelSource::firstToken;
}

}  // namespace

std::unique_ptr<CompositorWorkspace> CompositorWorkspace::open(
    Dispatch& dispatch, X11Workspace& x11, std::unique_ptr<WaylandConnection> connection) {
  std::unique_ptr<CompositorWorkspace> made(new CompositorWorkspace(dispatch, x11));
  auto& self = *made;
  self.toplevels_ = ForeignToplevels::open(
      std::move(connection),
      {.onActivated = onMainQueue(dispatch, self.life_.guard([&self](const Toplevel& toplevel) {
         // X11 tells of its own windows; what has come to the front is one of them then.
         if (!self.x11_.frontmostApplication()) {
           self.activations_.notify(self.applicationOf(toplevel));
         }
       })),
       .onLost = onMainQueue(dispatch, self.life_.guard([&self] {
         self.isTold_ = false;
         const auto handler = self.onAnnouncing_;
         if (handler) handler();
       }))});
  if (!self.toplevels_) return nullptr;
  self.x11Activations_ = x11.observeActivations(
      [&self](const RunningApplication& application) { self.activations_.notify(application); });
  return made;
}

CompositorWorkspace::~CompositorWorkspace() = default;

RunningApplication CompositorWorkspace::applicationOf(const Toplevel& toplevel) {
  const auto index = x11_.desktopEntries().index();
  const auto* const entry = index->find({toplevel.appId, toplevel.appId, {}, {}});
  RunningApplication application;
  const auto next = static_cast<ProcessId>(firstNumber + static_cast<int>(numbers_.size()));
  application.processIdentifier = numbers_.emplace(toplevel.appId, next).first->second;
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
  auto front = x11_.frontmostApplication();
  return front ? front : applicationOf(toplevels_->active());
}

std::optional<RunningApplication> CompositorWorkspace::runningApplication(ProcessId pid) {
  if (pid > 0) return x11_.runningApplication(pid);
  for (const auto& toplevel : toplevels_->all()) {
    auto application = applicationOf(toplevel);
    if (application.processIdentifier == pid) return application;
  }
  return x11_.runningApplication(pid);
}

std::optional<RunningApplication> CompositorWorkspace::stillThere(const RunningApplication& seen) {
  return isToplevel(seen) ? applicationOf(toplevels_->find(seen.window)) : x11_.stillThere(seen);
}

std::vector<RunningApplication> CompositorWorkspace::runningApplications(
    const std::string& bundleIdentifier) {
  auto result = x11_.runningApplications(bundleIdentifier);
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
  return x11_.startedAfter(application, ended);
}

bool CompositorWorkspace::activate(const RunningApplication& application) {
  return isToplevel(application) ? toplevels_->activate(application.window)
                                 : x11_.activate(application);
}

std::unique_ptr<Observation> CompositorWorkspace::observeActivations(
    std::function<void(const RunningApplication&)> handler) {
  return activations_.add(std::move(handler));
}

void CompositorWorkspace::setAnnouncingHandler(std::function<void()> handler) {
  onAnnouncing_ = handler;
  x11_.setAnnouncingHandler(std::move(handler));
}

}  // namespace vantorel
