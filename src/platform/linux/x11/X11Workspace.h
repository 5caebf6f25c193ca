#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Dispatch.h"
#include "platform/Workspace.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/x11/ActivationOrder.h"
#include "platform/linux/x11/X11ActivationWatcher.h"
#include "platform/linux/x11/X11Applications.h"
#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

/// The applications of an X session. What is in front is asked of the server at each call, on a
/// connection that nothing else uses; a thread of its own reads the desktop entries and notices
/// when another application comes to the front. An application runs as long as it owns a window.
/// `activate()` raises the last used window (with its dialogs, as the window manager keeps them),
/// not the others: here each window stands for itself.
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
  [[nodiscard]] std::vector<RunningApplication> runningApplications(
      const std::string& bundleIdentifier) override;
  [[nodiscard]] std::optional<std::string> applicationName(
      const std::string& bundleIdentifier) override;
  bool activate(const RunningApplication& application) override;
  [[nodiscard]] std::unique_ptr<Observation> observeActivations(
      std::function<void(const RunningApplication&)> handler) override;

  /// The installed applications, for names and icons by identifier. Lives as long as this.
  [[nodiscard]] const DesktopEntries& desktopEntries() const { return entries_; }

 private:
  struct Observers;
  class Registration;

  X11Workspace(Dispatch& dispatch, DesktopEntryPlaces places,
               std::unique_ptr<X11Connection> queries, std::unique_ptr<X11Connection> events);
  void announce(RunningApplication application) const;
  /// Every window, the one that was in front last first.
  [[nodiscard]] std::vector<ApplicationWindow> windowsByUse() const;

  Dispatch& dispatch_;
  DesktopEntries entries_;
  ActivationOrder order_;
  std::unique_ptr<X11Connection> queries_;
  X11Applications applications_;
  std::shared_ptr<Observers> observers_;  // its contents belong to the main thread
  X11ActivationWatcher watcher_;          // last: its thread uses what is above
};

}  // namespace vantorel
