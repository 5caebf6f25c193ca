// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Announcer.h"
#include "platform/Observation.h"

namespace vantorel {

using ProcessId = std::int32_t;

/// One window among all that this session ever showed: a number that no other window gets, not even
/// one that the window system calls by the same name later. 0: none in particular.
using WindowToken = std::uint64_t;

/// regular: has windows that a user works in; accessory: shows only panels or notices; prohibited:
/// no window.
enum class ActivationPolicy { regular, accessory, prohibited };

/// One running application, as it was when asked.
struct RunningApplication {
  ProcessId processIdentifier = 0;
  /// What the desktop knows the application by: here the id of its desktop entry, or for want of
  /// one the class of its windows.
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> localizedName;
  ActivationPolicy activationPolicy = ActivationPolicy::regular;
  /// The window that it was seen with, where the desktop tells windows apart.
  WindowToken window = 0;
  friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

/// The applications of this desktop session. Main thread; every answer comes from what is already
/// known or from the window system alone, never from another program or a scan of the disk.
class Workspace : public Announcer {
 public:
  /// This program's own identifier; absent when it has none.
  [[nodiscard]] virtual std::optional<std::string> ownBundleIdentifier() const = 0;

  /// The application whose window has the user's attention; absent when none has.
  [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() = 0;

  /// The application with that process, if it still runs.
  [[nodiscard]] virtual std::optional<RunningApplication> runningApplication(ProcessId pid) = 0;

  /// The application as it is now, as long as the window that it was seen with exists; one that
  /// was seen with none in particular, as long as it runs.
  [[nodiscard]] virtual std::optional<RunningApplication> stillThere(
      const RunningApplication& seen) = 0;

  /// Every running application with that identifier, the one in front last first.
  [[nodiscard]] virtual std::vector<RunningApplication> runningApplications(
      const std::string& bundleIdentifier) = 0;

  /// Whether the process of `application` was started after `ended` was last seen: it was launched
  /// anew. False when that cannot be told, and while `ended` is still there.
  [[nodiscard]] virtual bool startedAfter(const RunningApplication& application,
                                          const RunningApplication& ended) = 0;

  /// What the installed application with that identifier is called in the user's language, letters'
  /// case ignored; absent when there is none, or it has no name.
  [[nodiscard]] virtual std::optional<std::string> applicationName(
      const std::string& bundleIdentifier) = 0;

  /// Asks for the window that the application was seen with to come to the front, whatever its
  /// kind; without one in particular, for its last used window. Whoever is in front now. True when
  /// the request was sent; whether it was heeded shows in `frontmostApplication()`.
  virtual bool activate(const RunningApplication& application) = 0;

  /// Calls `handler` on the main queue whenever another application, or another window of one, has
  /// come to the front.
  [[nodiscard]] virtual std::unique_ptr<Observation> observeActivations(
      std::function<void(const RunningApplication&)> handler) = 0;
};

}  // namespace vantorel
