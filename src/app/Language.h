// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace vantorel {

/// What the help and the privacy policy are written in. All else is English.
enum class Language { hebrew, english };

/// What the environment says of the user's language; empty where a variable is not set.
struct LocaleVariables {
  std::string_view language = {};  // LANGUAGE: several, the dearest first
  std::string_view all = {};       // LC_ALL
  std::string_view messages = {};  // LC_MESSAGES
  std::string_view lang = {};      // LANG
};

/// Hebrew for those who read it, and where nobody said what they read: no locale, C or POSIX.
/// English for everybody else.
[[nodiscard]] Language languageOf(const LocaleVariables& variables);

/// The user's, by the environment of this process.
[[nodiscard]] Language userLanguage();

[[nodiscard]] constexpr Language other(Language language) {
  return language == Language::hebrew ? Language::english : Language::hebrew;
}

}  // namespace vantorel
