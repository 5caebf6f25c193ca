// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace vantorel {

/// A word as one reader reads it, with where it stands in the picture of its line.
struct ReadWord {
  std::string text;
  double confidence = 0;  // 0 to 100
  int left = 0;
  int right = 0;
};

/// Which writing a reader knows. The reader of Hebrew loses digits at the ends of numbers.
enum class Script { latin, hebrew };

struct LineReading {
  Script script = Script::latin;
  std::vector<ReadWord> words;  // from left to right, whatever the script
  /// The mean over all letters; 0 for no word.
  [[nodiscard]] double confidence() const;
};

/// Whether nobody else needs to be asked.
[[nodiscard]] bool isSure(const LineReading& reading);

/// Of what several readers read at each place, the best. In a line of two scripts each reader is
/// sure of its own words and reads the others as nonsense.
[[nodiscard]] std::vector<ReadWord> bestWords(const std::vector<LineReading>& readings);

/// The words as they are read aloud: from right to left in a Hebrew line, with words of the other
/// script in their own order. Words that are likely no words are left out.
[[nodiscard]] std::string lineText(const std::vector<ReadWord>& words);

[[nodiscard]] bool hasHebrew(const std::string& text);

}  // namespace vantorel
