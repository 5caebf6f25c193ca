// SPDX-License-Identifier: MIT
#include "app/Language.h"

#include <array>
#include <cstdlib>

namespace vantorel {
namespace {

/// "he" of "he_IL.UTF-8@x".
std::string_view nameOf(std::string_view locale) {
  return locale.substr(0, locale.find_first_of("_.@-"));
}

bool saysNothing(std::string_view locale) {
  const auto name = nameOf(locale);
  return name.empty() || name == "C" || name == "POSIX";
}

}  // namespace

Language languageOf(const LocaleVariables& variables) {
  std::string_view locale;
  for (const auto value : std::array{variables.all, variables.messages, variables.lang}) {
    if (locale.empty()) locale = value;
  }
  if (saysNothing(locale)) return Language::hebrew;
  // Only beside a locale: without one it is not asked for by anybody else either.
  const auto dearest = variables.language.substr(0, variables.language.find(':'));
  const auto name = nameOf(dearest.empty() ? locale : dearest);
  // The code that Hebrew had before is still in use.
  return name == "he" || name == "iw" || name == "heb" ? Language::hebrew : Language::english;
}

Language userLanguage() {
  const auto variable = [](const char* name) -> std::string_view {
    // Nothing in this program changes the environment.
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
  };
  return languageOf({.language = variable("LANGUAGE"),
                     .all = variable("LC_ALL"),
                     .messages = variable("LC_MESSAGES"),
                     .lang = variable("LANG")});
}

}  // namespace vantorel
