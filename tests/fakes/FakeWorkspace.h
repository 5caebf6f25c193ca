// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Dispatch.h"
#include "platform/Workspace.h"

namespace vantorel {

/// A desktop session whose applications are played by the test.
class FakeWorkspace : public Workspace {
 public:
  explicit FakeWorkspace(Dispatch& dispatch) : dispatch_(dispatch) {}
  ~FakeWorkspace() override;

  [[nodiscard]] std::optional<std::string> ownBundleIdentifier() const override { return own_; }
  [[nodiscard]] std::optional<RunningApplication> frontmostApplication() override;
  [[nodiscard]] std::optional<RunningApplication> runningApplication(ProcessId pid) override;
  [[nodiscard]] std::optional<RunningApplication> stillThere(
      const RunningApplication& seen) override;
  [[nodiscard]] std::vector<RunningApplication> runningApplications(
      const std::string& bundleIdentifier) override;
  [[nodiscard]] bool startedAfter(const RunningApplication& application,
                                  const RunningApplication& ended) override;
  [[nodiscard]] std::optional<std::string> applicationName(
      const std::string& bundleIdentifier) override;
  bool activate(const RunningApplication& application) override;
  [[nodiscard]] std::unique_ptr<Observation> observeActivations(
      std::function<void(const RunningApplication&)> handler) override;
  [[nodiscard]] bool announcesEveryChange() const override { return announces_; }
  void setAnnouncingHandler(std::function<void()> handler) override {
    onAnnouncing_ = std::move(handler);
  }

  // The test's side.

  /// "com.vantorel.Vantorel" unless the test says otherwise.
  void setOwnBundleIdentifier(std::optional<std::string> identifier);
  /// Adds a running application, not yet in front, or replaces the one with its process id.
  RunningApplication launch(RunningApplication application);
  /// A regular application.
  RunningApplication launch(ProcessId pid, const std::string& bundleIdentifier,
                            const std::string& name);
  void terminate(ProcessId pid);
  /// The application goes on with another window than the one it was seen with: that is closed.
  RunningApplication exchangeWindow(ProcessId pid, WindowToken window);
  /// Announces every change from now on, or no longer.
  void setAnnounces(bool announces) {
    announces_ = announces;
    if (onAnnouncing_) onAnnouncing_();
  }
  /// An installed application, running or not; `bundleIdentifier` in lower case.
  void install(const std::string& bundleIdentifier, const std::string& name) {
    installed_[bundleIdentifier] = name;
  }
  void uninstall(const std::string& bundleIdentifier) { installed_.erase(bundleIdentifier); }
  /// In front without an announcement, as a window manager that keeps quiet leaves it; none: the
  /// desktop itself.
  void setFront(std::optional<ProcessId> pid);
  /// In front, announced to every observer on the main queue.
  void bringToFront(ProcessId pid);
  /// Called for each `activate()`, for instance to bring the application to the front.
  std::function<void(const RunningApplication&)> onActivate;

  /// Process ids that `activate()` was called for, in order.
  [[nodiscard]] const std::vector<ProcessId>& activations() const { return activations_; }
  [[nodiscard]] int frontmostQueries() const { return frontmostQueries_; }
  [[nodiscard]] std::size_t observerCount() const;

 private:
  using Handler = std::function<void(const RunningApplication&)>;
  class Registration;

  Dispatch& dispatch_;
  std::optional<std::string> own_ = "com.vantorel.Vantorel";
  std::vector<RunningApplication> running_;  // the one in front last first
  std::map<std::string, std::string> installed_;
  std::map<ProcessId, int> started_;  // moments, counted
  std::map<ProcessId, int> ended_;
  int moment_ = 0;
  bool announces_ = false;
  std::function<void()> onAnnouncing_;
  std::optional<ProcessId> front_;
  std::vector<std::weak_ptr<Handler>> observers_;
  std::vector<ProcessId> activations_;
  int frontmostQueries_ = 0;
};

}  // namespace vantorel
