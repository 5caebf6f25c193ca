#include "platform/linux/x11/X11Workspace.h"

#include <algorithm>
#include <set>
#include <tuple>
#include <utility>

namespace vantorel {

using Handler = std::function<void(const RunningApplication&)>;

struct X11Workspace::Observers {
  std::vector<std::weak_ptr<Handler>> handlers;
};

/// The observation keeps its handler alive; what is queued holds it weakly.
class X11Workspace::Registration : public Observation {
 public:
  explicit Registration(std::shared_ptr<Handler> handler) : handler_(std::move(handler)) {}

 private:
  std::shared_ptr<Handler> handler_;
};

std::unique_ptr<X11Workspace> X11Workspace::open(Dispatch& dispatch, DesktopEntryPlaces places,
                                                 const std::string& display) {
  auto queries = X11Connection::open(display);
  auto events = X11Connection::open(display);
  if (!queries || !events) return nullptr;
  return std::unique_ptr<X11Workspace>(
      new X11Workspace(dispatch, std::move(places), std::move(queries), std::move(events)));
}

X11Workspace::X11Workspace(Dispatch& dispatch, DesktopEntryPlaces places,
                           std::unique_ptr<X11Connection> queries,
                           std::unique_ptr<X11Connection> events)
    : dispatch_(dispatch),
      entries_(std::move(places)),
      queries_(std::move(queries)),
      applications_(*queries_, entries_),
      observers_(std::make_shared<Observers>()),
      watcher_(std::move(events), entries_, order_,
               [this](const RunningApplication& application) { announce(application); }) {}

X11Workspace::~X11Workspace() = default;

std::optional<std::string> X11Workspace::ownBundleIdentifier() const { return ownApplicationId; }

std::optional<RunningApplication> X11Workspace::frontmostApplication() {
  auto active = applications_.active();
  if (!active) return std::nullopt;
  order_.note(active->facts.window);
  return std::move(active->application);
}

std::vector<ApplicationWindow> X11Workspace::windowsByUse() const {
  auto windows = applications_.all();
  std::stable_sort(windows.begin(), windows.end(), [this](const auto& a, const auto& b) {
    return order_.rank(a.facts.window) < order_.rank(b.facts.window);
  });
  return windows;
}

std::optional<RunningApplication> X11Workspace::runningApplication(ProcessId pid) {
  for (auto& window : windowsByUse()) {
    if (window.application.processIdentifier == pid) return std::move(window.application);
  }
  return std::nullopt;
}

std::vector<RunningApplication> X11Workspace::runningApplications(
    const std::string& bundleIdentifier) {
  std::vector<RunningApplication> result;
  std::set<ProcessId> seen;
  for (auto& window : windowsByUse()) {
    auto& application = window.application;
    if (application.bundleIdentifier != bundleIdentifier) continue;
    if (seen.insert(application.processIdentifier).second) result.push_back(std::move(application));
  }
  return result;
}

std::optional<std::string> X11Workspace::applicationName(const std::string& bundleIdentifier) {
  const auto index = entries_.index();
  const DesktopEntry* entry = index->byId(bundleIdentifier);
  if (entry == nullptr || entry->name.empty()) return std::nullopt;
  return entry->name;
}

bool X11Workspace::activate(const RunningApplication& application) {
  const auto windows = windowsByUse();
  const ApplicationWindow* best = nullptr;
  // One process may run several applications: a window of the one that is meant comes first.
  const auto rank = [&](const ApplicationWindow& window) {
    return std::pair(window.application.bundleIdentifier != application.bundleIdentifier,
                     window.facts.kind != WindowKind::normal);
  };
  for (const auto& window : windows) {
    if (window.application.processIdentifier != application.processIdentifier) continue;
    if (best == nullptr || rank(window) < rank(*best)) best = &window;
  }
  if (best == nullptr) return false;
  const auto active = applications_.active();
  const bool ownIsActive =
      active && active->application.processIdentifier == applications_.host().ownPid;
  applications_.windows().activate(
      best->facts.window, ownIsActive ? active->facts.window : xcb_window_t{XCB_WINDOW_NONE});
  return !queries_->broken();
}

void X11Workspace::announce(RunningApplication application) const {
  dispatch_.async([observers = std::weak_ptr(observers_), application = std::move(application)] {
    const auto alive = observers.lock();
    if (!alive) return;
    std::erase_if(alive->handlers, [](const auto& handler) { return handler.expired(); });
    // A handler may end its own observation, or begin another.
    const auto handlers = alive->handlers;
    for (const auto& weak : handlers) {
      if (const auto handler = weak.lock()) (*handler)(application);
    }
  });
}

std::unique_ptr<Observation> X11Workspace::observeActivations(Handler handler) {
  auto shared = std::make_shared<Handler>(std::move(handler));
  observers_->handlers.push_back(shared);
  return std::make_unique<Registration>(std::move(shared));
}

}  // namespace vantorel
