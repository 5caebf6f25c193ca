// SPDX-License-Identifier: MIT
#include "fakes/FakeWorkspace.h"

#include <algorithm>
#include <utility>

#include "text/Unicode.h"

namespace vantorel {

class FakeWorkspace::Registration : public Observation {
 public:
  explicit Registration(std::shared_ptr<Handler> handler) : handler_(std::move(handler)) {}

 private:
  std::shared_ptr<Handler> handler_;
};

FakeWorkspace::~FakeWorkspace() = default;

std::optional<RunningApplication> FakeWorkspace::frontmostApplication() {
  ++frontmostQueries_;
  return front_ ? runningApplication(*front_) : std::nullopt;
}

std::optional<RunningApplication> FakeWorkspace::runningApplication(ProcessId pid) {
  const auto found = std::find_if(running_.begin(), running_.end(), [&](const auto& application) {
    return application.processIdentifier == pid;
  });
  return found != running_.end() ? std::optional(*found) : std::nullopt;
}

std::vector<RunningApplication> FakeWorkspace::runningApplications(
    const std::string& bundleIdentifier) {
  std::vector<RunningApplication> found;
  std::copy_if(
      running_.begin(), running_.end(), std::back_inserter(found),
      [&](const auto& application) { return application.bundleIdentifier == bundleIdentifier; });
  return found;
}

std::optional<RunningApplication> FakeWorkspace::stillThere(const RunningApplication& seen) {
  auto running = runningApplication(seen.processIdentifier);
  return running && running->window == seen.window ? running : std::nullopt;
}

bool FakeWorkspace::startedAfter(const RunningApplication& application,
                                 const RunningApplication& ended) {
  const auto end = ended_.find(ended.processIdentifier);
  return end != ended_.end() && started_[application.processIdentifier] > end->second;
}

std::optional<std::string> FakeWorkspace::applicationName(const std::string& bundleIdentifier) {
  const auto found = installed_.find(lowerCased(bundleIdentifier));
  return found != installed_.end() ? std::optional(found->second) : std::nullopt;
}

bool FakeWorkspace::activate(const RunningApplication& application) {
  activations_.push_back(application.processIdentifier);
  if (!runningApplication(application.processIdentifier)) return false;
  if (onActivate) onActivate(application);
  return true;
}

std::unique_ptr<Observation> FakeWorkspace::observeActivations(
    std::function<void(const RunningApplication&)> handler) {
  auto shared = std::make_shared<Handler>(std::move(handler));
  observers_.push_back(shared);
  return std::make_unique<Registration>(std::move(shared));
}

void FakeWorkspace::setOwnBundleIdentifier(std::optional<std::string> identifier) {
  own_ = std::move(identifier);
}

RunningApplication FakeWorkspace::launch(RunningApplication application) {
  std::erase_if(running_, [&](const auto& other) {
    return other.processIdentifier == application.processIdentifier;
  });
  running_.push_back(application);
  started_[application.processIdentifier] = ++moment_;
  ended_.erase(application.processIdentifier);
  return application;
}

RunningApplication FakeWorkspace::launch(ProcessId pid, const std::string& bundleIdentifier,
                                         const std::string& name) {
  return launch(RunningApplication{pid, bundleIdentifier, name, ActivationPolicy::regular});
}

void FakeWorkspace::terminate(ProcessId pid) {
  std::erase_if(running_, [&](const auto& other) { return other.processIdentifier == pid; });
  if (front_ == pid) front_.reset();
  ended_[pid] = ++moment_;
}

RunningApplication FakeWorkspace::exchangeWindow(ProcessId pid, WindowToken window) {
  auto application = *runningApplication(pid);
  application.window = window;
  for (auto& each : running_) {
    if (each.processIdentifier == pid) each = application;
  }
  ended_[pid] = ++moment_;
  return application;
}

void FakeWorkspace::setFront(std::optional<ProcessId> pid) {
  front_ = pid;
  if (!pid) return;
  const auto isFront = [&](const auto& other) { return other.processIdentifier == *pid; };
  std::stable_partition(running_.begin(), running_.end(), isFront);
}

void FakeWorkspace::bringToFront(ProcessId pid) {
  setFront(pid);
  const auto application = runningApplication(pid);
  if (!application) return;
  for (const auto& observer : observers_) {
    dispatch_.async([observer, application = *application] {
      if (const auto handler = observer.lock()) (*handler)(application);
    });
  }
}

std::size_t FakeWorkspace::observerCount() const {
  return static_cast<std::size_t>(
      std::count_if(observers_.begin(), observers_.end(),
                    [](const auto& observer) { return !observer.expired(); }));
}

}  // namespace vantorel
