// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ApplicationId.h"
#include "platform/Workspace.h"
#include "platform/linux/applications/DesktopEntries.h"

namespace vantorel {

/// Where no program is told of the windows of others: nobody is ever in front. Main thread.
class UntoldWorkspace : public Workspace {
 public:
  /// `entries` outlives this.
  explicit UntoldWorkspace(const DesktopEntries& entries) : entries_(entries) {}

  [[nodiscard]] std::optional<std::string> ownBundleIdentifier() const override {
    return applicationId::name;
  }
  [[nodiscard]] std::optional<RunningApplication> frontmostApplication() override { return {}; }
  [[nodiscard]] std::optional<RunningApplication> runningApplication(ProcessId /*pid*/) override {
    return {};
  }
  [[nodiscard]] std::optional<RunningApplication> stillThere(
      const RunningApplication& /*seen*/) override {
    return {};
  }
  [[nodiscard]] std::vector<RunningApplication> runningApplications(
      const std::string& /*bundleIdentifier*/) override {
    return {};
  }
  [[nodiscard]] bool startedAfter(const RunningApplication& /*application*/,
                                  const RunningApplication& /*ended*/) override {
    return false;
  }
  [[nodiscard]] std::optional<std::string> applicationName(
      const std::string& bundleIdentifier) override {
    return entries_.nameOf(bundleIdentifier);
  }
  bool activate(const RunningApplication& /*application*/) override { return false; }
  [[nodiscard]] std::unique_ptr<Observation> observeActivations(
      std::function<void(const RunningApplication&)> /*handler*/) override {
    return std::make_unique<Observation>();
  }
  /// There is nothing that could be found out by looking again.
  [[nodiscard]] bool announcesEveryChange() const override { return true; }
  void setAnnouncingHandler(std::function<void()> /*handler*/) override {}

 private:
  const DesktopEntries& entries_;
};

}  // namespace vantorel
