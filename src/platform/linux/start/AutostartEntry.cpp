// SPDX-License-Identifier: MIT
#include "platform/linux/start/AutostartEntry.h"

#include <algorithm>
#include <utility>

#include "base/SplitText.h"
#include "platform/ApplicationId.h"
#include "platform/linux/xdg/KeyFile.h"

namespace vantorel {
namespace {

constexpr std::string_view groupHeader = "[Desktop Entry]";

bool isHeader(std::string_view line) {
  const auto content = withoutBlanksAround(line);
  return !content.empty() && content.front() == '[';
}

bool hasKey(std::string_view line, std::string_view key) {
  const auto content = withoutBlanksAround(line);
  const auto equals = content.find('=');
  return equals != std::string_view::npos && withoutBlanksAround(content.substr(0, equals)) == key;
}

bool shareOne(const std::vector<std::string>& some, const std::vector<std::string>& others) {
  return std::find_first_of(some.begin(), some.end(), others.begin(), others.end()) != some.end();
}

/// The first line with that key; the end when there is none.
auto lineOf(auto& lines, std::string_view key) {
  return std::find_if(lines.begin(), lines.end(),
                      [key](const auto& line) { return hasKey(line, key); });
}

/// As every text value of a key file is written.
std::string escapedValue(std::string_view value) {
  constexpr std::string_view special = "\\\n\r\t";
  constexpr std::string_view letters = "\\nrt";
  std::string escaped;
  for (const char character : value) {
    const auto place = special.find(character);
    if (place != std::string_view::npos) escaped += '\\';
    escaped += place == std::string_view::npos ? character : letters[place];
  }
  return escaped;
}

}  // namespace

std::string desktopEntryCommand(const std::filesystem::path& program) {
  const std::string& path = program.native();
  const bool isPlain = path.find_first_of(" \t\n\r\"'\\><~|&;$*?#()`%") == std::string::npos;
  if (isPlain) return path;
  std::string quoted = "\"";
  for (const char character : path) {
    if (character == '"' || character == '`' || character == '$' || character == '\\') {
      quoted += '\\';
    }
    quoted += character;
    if (character == '%') quoted += '%';
  }
  return escapedValue(quoted + '"');
}

namespace {

/// Nobody who logs in asked to see anything.
std::string loginCommand(const std::filesystem::path& program) {
  return desktopEntryCommand(program) + " --background";
}

}  // namespace

AutostartEntry::AutostartEntry(std::string_view text) {
  auto* part = &before_;
  for (auto& line : linesOf(text)) {
    const bool begins = part == &before_ && withoutBlanksAround(line) == groupHeader;
    if (part == &group_ && isHeader(line)) part = &behind_;
    part->push_back(std::move(line));
    if (begins) part = &group_;
  }
  if (part != &before_) return;
  before_ = {std::string(groupHeader)};
}

bool AutostartEntry::startsAtLogin(const AutostartSurroundings& surroundings) const {
  // Desktops that switch entries off by a key of their own leave the convention's alone.
  return isApplication() && value("Hidden") != "true" &&
         value("X-GNOME-Autostart-enabled") != "false" && isHere(surroundings);
}

bool AutostartEntry::isApplication() const {
  return value("Type") == "Application" && !value("Exec").empty();
}

bool AutostartEntry::isHere(const AutostartSurroundings& surroundings) const {
  const auto only = listOf(value("OnlyShowIn"), ';');
  if (!only.empty() && !shareOne(only, surroundings.currentDesktops)) return false;
  if (shareOne(listOf(value("NotShowIn"), ';'), surroundings.currentDesktops)) return false;
  const auto tried = value("TryExec");
  return tried.empty() || surroundings.programExists(tried);
}

void AutostartEntry::enable(const std::filesystem::path& program,
                            const AutostartSurroundings& surroundings) {
  set("Type", "Application");
  if (value("Name").empty()) set("Name", "Vantorel");
  if (value("Icon").empty()) set("Icon", applicationId::name);
  set("Exec", loginCommand(program));
  set("TryExec", escapedValue(program.native()));
  remove("Hidden");
  if (value("X-GNOME-Autostart-enabled") == "false") set("X-GNOME-Autostart-enabled", "true");
  if (isHere(surroundings)) return;
  remove("OnlyShowIn");
  remove("NotShowIn");
  if (!isHere(surroundings)) remove("TryExec");  // no value of the key is such a path
}

bool AutostartEntry::renew(const std::filesystem::path& program) {
  if (value("Exec") != desktopEntryCommand(program)) return false;
  set("Exec", loginCommand(program));
  set("TryExec", escapedValue(program.native()));
  return true;
}

void AutostartEntry::disable() { set("Hidden", "true"); }

std::string AutostartEntry::text() const {
  std::string text;
  for (const auto* part : {&before_, &group_, &behind_}) {
    for (const auto& line : *part) text.append(line).append("\n");
  }
  return text;
}

std::string AutostartEntry::value(std::string_view key) const {
  const auto found = lineOf(group_, key);
  if (found == group_.end()) return {};
  return std::string(withoutBlanksAround(std::string_view(*found).substr(found->find('=') + 1)));
}

void AutostartEntry::set(std::string_view key, std::string_view value) {
  auto line = std::string(key).append("=").append(value);
  const auto found = lineOf(group_, key);
  if (found != group_.end()) {
    *found = std::move(line);
    return;
  }
  // Blank lines part the group from the next one.
  auto end = group_.end();
  while (end != group_.begin() && withoutBlanksAround(*(end - 1)).empty()) --end;
  group_.insert(end, std::move(line));
}

void AutostartEntry::remove(std::string_view key) {
  std::erase_if(group_, [key](const auto& line) { return hasKey(line, key); });
}

}  // namespace vantorel
