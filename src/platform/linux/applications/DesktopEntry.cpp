// SPDX-License-Identifier: MIT
#include "platform/linux/applications/DesktopEntry.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/linux/applications/ExecWords.h"
#include "platform/linux/xdg/KeyFile.h"

namespace vantorel {

namespace {

char unescaped(char code) {
  switch (code) {
    case 's':
      return ' ';
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    default:
      return code;
  }
}

std::string unescapedValue(std::string_view value) {
  std::string result;
  result.reserve(value.size());
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == '\\' && i + 1 < value.size()) {
      result += unescaped(value[++i]);
    } else {
      result += value[i];
    }
  }
  return result;
}

std::vector<std::string> listValue(std::string_view value) {
  std::vector<std::string> result;
  std::string item;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == '\\' && i + 1 < value.size()) {
      item += unescaped(value[++i]);
    } else if (value[i] == ';') {
      if (!item.empty()) result.push_back(std::exchange(item, {}));
    } else {
      item += value[i];
    }
  }
  if (!item.empty()) result.push_back(std::move(item));
  return result;
}

std::string fileName(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

bool isAssignment(const std::string& word) {
  const auto equals = word.find('=');
  return equals != std::string::npos && equals > 0 && word.find('/') > equals;
}

bool isFieldCode(const std::string& word) { return word.size() == 2 && word[0] == '%'; }

void readCommand(DesktopEntry& entry, std::string_view command) {
  const auto all = execWords(command);
  auto word = all.begin();
  if (word != all.end() && fileName(*word) == "env") {
    ++word;
    word = std::find_if_not(word, all.end(), isAssignment);
  }
  if (word == all.end()) return;
  entry.executable = fileName(*word);
  entry.execHasArguments = !std::all_of(word + 1, all.end(), isFieldCode);
}

std::string value(const KeyGroup& keys, std::string_view key) {
  const auto found = keys.find(key);
  return found == keys.end() ? std::string() : unescapedValue(found->second);
}

std::string localizedValue(const KeyGroup& keys, const std::string& key,
                           const std::vector<std::string>& locales) {
  for (const auto& locale : locales) {
    const auto found = keys.find(std::string(key).append("[").append(locale).append("]"));
    if (found != keys.end()) return unescapedValue(found->second);
  }
  return value(keys, key);
}

}  // namespace

bool DesktopEntry::isTerminalEmulator() const {
  return std::find(categories.begin(), categories.end(), "TerminalEmulator") != categories.end();
}

std::vector<std::string> desktopEntryLocales(std::string_view locale) {
  if (locale.empty() || locale == "C" || locale == "POSIX" || locale.substr(0, 2) == "C.") {
    return {};
  }
  const auto at = locale.find('@');
  const std::string modifier(at == std::string_view::npos ? "" : locale.substr(at));
  const auto base = locale.substr(0, std::min(locale.find('.'), at));
  const std::string country(base);
  const std::string language(base.substr(0, base.find('_')));
  std::vector<std::string> result;
  const auto add = [&result](std::string candidate) {
    if (std::find(result.begin(), result.end(), candidate) == result.end()) {
      result.push_back(std::move(candidate));
    }
  };
  add(country + modifier);
  add(country);
  add(language + modifier);
  add(language);
  return result;
}

ParsedDesktopEntry parseDesktopEntry(std::string id, std::string_view text,
                                     const std::vector<std::string>& locales) {
  ParsedDesktopEntry result;
  const KeyGroup keys = parseKeyGroup(text, "Desktop Entry");
  if (value(keys, "Hidden") == "true") {
    result.state = DesktopEntryState::hidden;
    return result;
  }
  if (value(keys, "Type") != "Application") return result;
  result.state = DesktopEntryState::usable;
  auto& entry = result.entry;
  entry.id = std::move(id);
  entry.name = localizedValue(keys, "Name", locales);
  entry.icon = localizedValue(keys, "Icon", locales);
  entry.startupWmClass = value(keys, "StartupWMClass");
  entry.noDisplay = value(keys, "NoDisplay") == "true";
  const auto categories = keys.find("Categories");
  if (categories != keys.end()) entry.categories = listValue(categories->second);
  readCommand(entry, value(keys, "Exec"));
  return result;
}

}  // namespace vantorel
