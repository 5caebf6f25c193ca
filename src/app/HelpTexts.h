// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "app/Language.h"

namespace vantorel {

/// All that the help and the window of the privacy policy say, in one language. Hebrew stands as it
/// was written, with another keyboard's words: `spelledWords` makes them this computer's.
struct HelpTexts {
  std::string_view welcomeTitle;
  std::string_view aboutTitle;
  std::string_view summary;
  std::string_view openingHeading;
  std::string_view keys;
  std::string_view pasteHeading;
  std::string_view pasteAllowed;
  std::string_view pasteNotAllowed;
  std::string_view pasteAllowedWhy;
  std::string_view pasteNotAllowedWhy;
  std::string_view launchAtLogin;
  std::string_view privacyHeading;
  std::string_view privacy;
  std::string_view wholePolicy;
  std::string_view begin;
  std::string_view close;
  std::string_view otherLanguage;  // its name, in itself
  std::string_view policyTitle;
  std::string_view policySubtitle;
  std::string_view policyResource;  // without its extension
  std::string_view policyFallback;  // where the resource is missing

  [[nodiscard]] static const HelpTexts& in(Language language);
};

}  // namespace vantorel
