// SPDX-License-Identifier: MIT
#include "platform/linux/xdg/KeyFile.h"

#include "base/SplitText.h"
#include "text/Unicode.h"

namespace vantorel {

namespace {

enum class Next { readOn, stop };

/// Calls `onGroup(name)` for each header until it says stop, and `onKey(key, value)` for each line
/// below one.
template <class OnGroup, class OnKey>
void readLines(std::string_view text, OnGroup onGroup, OnKey onKey) {
  bool inside = false;
  while (!text.empty()) {
    const auto line = withoutBlanksAround(takePart(text, '\n'));
    if (line.empty() || line.front() == '#') continue;
    if (line.front() == '[') {
      inside = line.size() > 2 && line.back() == ']';
      const auto name = inside ? line.substr(1, line.size() - 2) : std::string_view();
      if (onGroup(name) == Next::stop) return;
      continue;
    }
    const auto equals = line.find('=');
    if (!inside || equals == std::string_view::npos) continue;
    const auto value = withoutBlanksAround(line.substr(equals + 1));
    if (isValidUtf8(value)) onKey(withoutBlanksAround(line.substr(0, equals)), value);
  }
}

}  // namespace

KeyFile parseKeyFile(std::string_view text) {
  KeyFile file;
  KeyGroup* group = nullptr;
  readLines(
      text,
      [&](std::string_view name) {
        group = &file[std::string(name)];
        return Next::readOn;
      },
      [&](std::string_view key, std::string_view value) { group->emplace(key, value); });
  return file;
}

KeyGroup parseKeyGroup(std::string_view text, std::string_view group) {
  KeyGroup keys;
  bool inside = false;
  readLines(
      text,
      [&](std::string_view name) {
        if (inside) return Next::stop;
        inside = name == group;
        return Next::readOn;
      },
      [&](std::string_view key, std::string_view value) {
        if (inside) keys.emplace(key, value);
      });
  return keys;
}

std::string_view valueOf(const KeyGroup& keys, std::string_view key) {
  const auto found = keys.find(key);
  return found == keys.end() ? std::string_view() : std::string_view(found->second);
}

std::vector<std::string> listOf(std::string_view value, char separator) {
  std::vector<std::string> parts;
  while (!value.empty()) {
    const auto part = withoutBlanksAround(takePart(value, separator));
    if (!part.empty()) parts.emplace_back(part);
  }
  return parts;
}

}  // namespace vantorel
