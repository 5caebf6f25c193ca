#include "platform/linux/x11/X11Applications.h"

#include <algorithm>
#include <set>
#include <utility>

namespace vantorel {

X11Applications::X11Applications(X11Connection& connection, const DesktopEntries& entries)
    : windows_(connection), entries_(entries), host_(LocalHost::current(windows_.resourceMask())) {}

ApplicationWindow X11Applications::describe(WindowFacts facts) const {
  const auto index = entries_.index();
  auto application = applicationOf(facts, index->find(identityOf(facts, host_)), host_);
  return {std::move(facts), std::move(application)};
}

bool X11Applications::hasEntry(const WindowFacts& facts) const {
  return entries_.index()->find(identityOf(facts, host_)) != nullptr;
}

std::optional<ApplicationWindow> X11Applications::active() const {
  auto facts = windows_.active();
  if (!facts) return std::nullopt;
  auto found = describe(std::move(*facts));
  auto& application = found.application;
  if (application.activationPolicy == ActivationPolicy::regular) return found;
  if (application.processIdentifier == host_.ownPid) return found;
  const auto others = windows_.all();
  const bool ownsNormalWindow =
      std::any_of(others.begin(), others.end(), [&](const WindowFacts& other) {
        return other.kind == WindowKind::normal &&
               processOf(other, host_) == application.processIdentifier;
      });
  if (ownsNormalWindow) application.activationPolicy = ActivationPolicy::regular;
  return found;
}

std::vector<ApplicationWindow> X11Applications::all() const {
  auto facts = windows_.all();
  std::vector<ApplicationWindow> result;
  result.reserve(facts.size());
  std::set<ProcessId> regular;
  std::reverse(facts.begin(), facts.end());  // the topmost first
  for (auto& each : facts) {
    result.push_back(describe(std::move(each)));
    const auto& application = result.back().application;
    if (application.activationPolicy == ActivationPolicy::regular) {
      regular.insert(application.processIdentifier);
    }
  }
  for (auto& window : result) {
    if (regular.contains(window.application.processIdentifier)) {
      window.application.activationPolicy = ActivationPolicy::regular;
    }
  }
  return result;
}

}  // namespace vantorel
