// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/ThumbnailerEntry.h"

#include <algorithm>
#include <cstddef>

#include "platform/linux/applications/ExecWords.h"
#include "platform/linux/xdg/KeyFile.h"

namespace vantorel {

namespace {

constexpr std::size_t maxWords = 64;

bool mentions(const std::vector<std::string>& command, std::string_view code) {
  return std::any_of(command.begin(), command.end(),
                     [code](const auto& word) { return word.find(code) != std::string::npos; });
}

std::string meaning(char code, const ThumbnailerTask& task) {
  switch (code) {
    case 'i':
      return task.file.string();
    case 'u':
      return task.uri;
    case 'o':
      return task.output.string();
    case 's':
      return std::to_string(task.side);
    case '%':
      return "%";
    default:
      return {};
  }
}

std::string filledIn(const std::string& word, const ThumbnailerTask& task) {
  std::string result;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (word[i] == '%' && i + 1 < word.size()) {
      result += meaning(word[++i], task);
    } else {
      result += word[i];
    }
  }
  return result;
}

}  // namespace

std::optional<ThumbnailerEntry> parseThumbnailer(std::string_view text) {
  const KeyGroup keys = parseKeyGroup(text, "Thumbnailer Entry");
  ThumbnailerEntry entry;
  entry.command = execWords(valueOf(keys, "Exec"));
  entry.tryExec = valueOf(keys, "TryExec");
  entry.types = listOf(valueOf(keys, "MimeType"), ';');
  if (entry.command.empty() || entry.command.size() > maxWords) return std::nullopt;
  if (!mentions(entry.command, "%o")) return std::nullopt;
  if (!mentions(entry.command, "%i") && !mentions(entry.command, "%u")) return std::nullopt;
  return entry;
}

std::vector<std::string> thumbnailerCommand(const ThumbnailerEntry& entry,
                                            const ThumbnailerTask& task) {
  std::vector<std::string> words;
  words.reserve(entry.command.size());
  for (const auto& word : entry.command) words.push_back(filledIn(word, task));
  return words;
}

}  // namespace vantorel
