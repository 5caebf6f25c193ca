// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Dispatch.h"
#include "platform/UserDefaults.h"
#include "store/SourceApp.h"

namespace vantorel {

/// The user's privacy choices, kept in the defaults alone, and the one question they answer: may
/// what is on the pasteboard be captured? Main thread.
class PrivacyPreferences {
 public:
  static constexpr std::string_view pausedUntilKey = "privacy.pausedUntil";
  static constexpr std::string_view ignorePasswordManagersKey = "privacy.ignorePasswordManagers";
  static constexpr std::string_view excludedBundleIdsKey = "privacy.excludedBundleIDs";

  /// Until the user resumes: a date that nobody lives to see.
  static constexpr Date indefinitely =
      std::chrono::sys_days{std::chrono::year{9999} / std::chrono::December / 31};

  /// Turns ignoring password managers on where nothing was chosen, and pauses indefinitely where
  /// nobody knows what was. Both outlive this object.
  PrivacyPreferences(UserDefaults& defaults, const Dispatch& dispatch);

  [[nodiscard]] std::optional<Date> pausedUntil() const;
  void setPausedUntil(std::optional<Date> date);
  /// Forgets a pause that has run out.
  [[nodiscard]] bool isPaused();

  [[nodiscard]] std::set<std::string> excludedBundleIds() const;
  void setExcludedBundleIds(const std::set<std::string>& ids);

  /// Whether contents of these types, copied in that application, must not be captured.
  [[nodiscard]] bool shouldIgnore(std::span<const std::string> pasteboardTypes,
                                  const SourceApp& source);

 private:
  UserDefaults& defaults_;
  const Dispatch& dispatch_;
};

}  // namespace vantorel
