// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/Observers.h"
#include "platform/Workspace.h"
#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/x11/X11Applications.h"
#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

/// The applications of an X session. Each question is answered by what `X11Applications` knows at
/// that moment, after one round trip to the server. An application runs as long as it owns a
/// window, and each window stands for itself: `activate()` raises the one that is meant (with its
/// dialogs, as the window manager keeps them), not the others.
class X11Workspace : public Workspace {
 public:
  /// `dispatch` outlives the result. Null when there is no X server.
  [[nodiscard]] static std::unique_ptr<X11Workspace> open(Dispatch& dispatch,
                                                          DesktopEntryPlaces places,
                                                          const std::string& display = {});
  ~X11Workspace() override;

  [[nodiscard]] std::optional<std::string> ownBundleIdentifier() const override;
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

  /// The installed applications, for names and icons by identifier. Lives as long as this.
  [[nodiscard]] const DesktopEntries& desktopEntries() const { return applications_->entries(); }
  /// For whoever presses keys for them. Lives as long as this.
  [[nodiscard]] X11Applications& applications() { return *applications_; }

 private:
  explicit X11Workspace(Dispatch& dispatch) : dispatch_(dispatch) {}
  [[nodiscard]] X11Applications::Observer observer();
  [[nodiscard]] bool activateOnThread(const RunningApplication& application);

  Dispatch& dispatch_;
  Observers<const RunningApplication&> activations_;
  bool announces_ = false;
  std::function<void()> onAnnouncing_;
  std::unique_ptr<X11Applications> applications_;
  Lifetime life_;
};

}  // namespace vantorel
