// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Lifetime.h"
#include "platform/ApplicationId.h"
#include "platform/Observers.h"
#include "platform/linux/wayland/ToplevelSource.h"
#include "platform/linux/x11/X11Workspace.h"

namespace vantorel {

/// The applications of a compositor, perhaps with an X server inside. X11 knows its own windows
/// better, by their processes; what is in front of none of them is what the compositor says. Of its
/// windows no process is told, so each application has a negative number, which stays its own.
class CompositorWorkspace : public Workspace {
 public:
  struct Surroundings {
    Dispatch& dispatch;
    const DesktopEntries& entries;
    X11Workspace* x11 = nullptr;           // null: the compositor is asked alone
    std::function<void()> onUnnamed{};     // none of the entries names an application
    std::function<void()> onActivating{};  // a window of another program is to have the keyboard
  };

  /// What is named outlives the result. Null where the compositor does not tell of windows.
  [[nodiscard]] static std::unique_ptr<CompositorWorkspace> open(
      Surroundings surroundings, std::unique_ptr<WaylandConnection> connection);
  ~CompositorWorkspace() override;

  [[nodiscard]] std::optional<std::string> ownBundleIdentifier() const override {
    return applicationId::name;
  }
  [[nodiscard]] std::optional<RunningApplication> frontmostApplication() override;
  [[nodiscard]] std::optional<RunningApplication> runningApplication(ProcessId pid) override;
  [[nodiscard]] std::optional<RunningApplication> stillThere(
      const RunningApplication& seen) override;
  [[nodiscard]] std::vector<RunningApplication> runningApplications(
      const std::string& bundleIdentifier) override;
  [[nodiscard]] bool startedAfter(const RunningApplication& application,
                                  const RunningApplication& ended) override;
  [[nodiscard]] std::optional<std::string> applicationName(
      const std::string& bundleIdentifier) override {
    return around_.entries.nameOf(bundleIdentifier);
  }
  bool activate(const RunningApplication& application) override;
  [[nodiscard]] std::unique_ptr<Observation> observeActivations(
      std::function<void(const RunningApplication&)> handler) override;
  [[nodiscard]] bool announcesEveryChange() const override {
    return isTold_ && (around_.x11 == nullptr || around_.x11->announcesEveryChange());
  }
  void setAnnouncingHandler(std::function<void()> handler) override;

  /// For whoever presses keys for them. Lives as long as this.
  [[nodiscard]] ToplevelSource& windows() { return *toplevels_; }

 private:
  explicit CompositorWorkspace(Surroundings surroundings) : around_(std::move(surroundings)) {}
  [[nodiscard]] RunningApplication applicationOf(const Toplevel& toplevel);
  [[nodiscard]] std::optional<RunningApplication> applicationOf(
      const std::optional<Toplevel>& toplevel);

  Surroundings around_;
  Observers<const RunningApplication&> activations_;
  std::unique_ptr<Observation> x11Activations_;
  std::map<std::string, ProcessId> numbers_;  // by application id
  bool isTold_ = true;
  std::function<void()> onAnnouncing_;
  std::unique_ptr<ToplevelSource> toplevels_;
  Lifetime life_;
};

}  // namespace vantorel
