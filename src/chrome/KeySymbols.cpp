// SPDX-License-Identifier: MIT
#include "chrome/KeySymbols.h"

#include <array>
#include <vector>

namespace vantorel {
namespace {

struct ModifierKey {
  std::string_view symbol;
  std::string_view global;
  std::string_view inWindow;
};

constexpr std::array modifierKeys = {
    ModifierKey{"⌘", "Super", "Ctrl"},
    ModifierKey{"⇧", "Shift", "Shift"},
    ModifierKey{"⌥", "Alt", "Alt"},
    ModifierKey{"⌃", "Ctrl", "Ctrl"},
};

const ModifierKey* modifierAtStart(std::string_view text) {
  for (const auto& key : modifierKeys) {
    if (text.starts_with(key.symbol)) return &key;
  }
  return nullptr;
}

struct Word {
  std::string_view written;
  std::string_view here;
};

constexpr std::array words = {
    Word{"Option", "Alt"},
    Word{"במק", "במחשב"},
    Word{"למק", "למחשב"},
};

/// Whether `text` goes on with the key that the modifiers are held for: anything printed but
/// punctuation that ends a phrase.
bool startsWithKey(std::string_view text) {
  constexpr std::string_view notKeys = " \t\n\r.,;:!?)]}\"'";
  return !text.empty() && notKeys.find(text.front()) == std::string_view::npos;
}

}  // namespace

std::string spelledKeys(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    std::vector<const ModifierKey*> chord;
    while (const auto* key = modifierAtStart(text)) {
      chord.push_back(key);
      text.remove_prefix(key->symbol.size());
    }
    for (const auto* key : chord) {
      if (key != chord.front()) result += '+';
      result += chord.size() > 1 ? key->global : key->inWindow;
    }
    if (text.empty()) break;
    if (!chord.empty() && startsWithKey(text)) result += '+';
    result += text.front();
    text.remove_prefix(1);
  }
  return result;
}

std::string spelledWords(std::string_view text) {
  auto result = spelledKeys(text);
  for (const auto& word : words) {
    for (auto at = result.find(word.written); at != std::string::npos;
         at = result.find(word.written, at + word.here.size())) {
      result.replace(at, word.written.size(), word.here);
    }
  }
  return result;
}

}  // namespace vantorel
