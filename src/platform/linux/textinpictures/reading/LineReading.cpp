// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/reading/LineReading.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

namespace vantorel {
namespace {

// Measured: a reader of the right script is 83 to 96 sure of a line, one of the wrong script 0 to
// 80, and less of single words.
constexpr double sureOfLatin = 88;
constexpr double sureOfHebrew = 86;
constexpr double doubtfulWord = 70;
constexpr double sureOfNumber = 75;
constexpr double likelyNoWord = 25;
constexpr int mayOverlap = 2;  // pixels, of words beside each other

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool hasDigit(const std::string& text) { return std::any_of(text.begin(), text.end(), isDigit); }

bool isNumber(const std::string& text) {
  constexpr std::string_view inNumbers = ",.:/-%$+()#*";
  return hasDigit(text) && std::all_of(text.begin(), text.end(), [&](char c) {
           return isDigit(c) || inNumbers.find(c) != std::string_view::npos;
         });
}

/// What one reader reads at a place that words of several readers cover.
struct Candidate {
  std::vector<const ReadWord*> words;
  double weighted = 0;
  double width = 0;
  Script script = Script::latin;

  void add(const ReadWord& word) {
    const double wordWidth = std::max(1, word.right - word.left);
    words.push_back(&word);
    weighted += word.confidence * wordWidth;
    width += wordWidth;
  }
  [[nodiscard]] double confidence() const { return width > 0 ? weighted / width : -1; }
  [[nodiscard]] bool isSureNumber() const {
    return script == Script::latin && !words.empty() && confidence() >= sureOfNumber &&
           std::all_of(words.begin(), words.end(),
                       [](const ReadWord* word) { return isNumber(word->text); });
  }
};

bool isBetter(const Candidate& a, const Candidate& b) {
  if (a.isSureNumber() != b.isSureNumber()) return a.isSureNumber();
  return a.confidence() > b.confidence();
}

struct Placed {
  const ReadWord* word;
  std::size_t reading;
};

std::vector<Placed> fromLeft(const std::vector<LineReading>& readings) {
  std::vector<Placed> placed;
  for (std::size_t i = 0; i < readings.size(); ++i)
    for (const ReadWord& word : readings[i].words) placed.push_back({&word, i});
  std::stable_sort(placed.begin(), placed.end(),
                   [](const Placed& a, const Placed& b) { return a.word->left < b.word->left; });
  return placed;
}

bool readsFromRight(const std::vector<ReadWord>& words) {
  std::size_t hebrew = 0;  // letters of two bytes each
  std::size_t other = 0;
  for (const ReadWord& word : words) (hasHebrew(word.text) ? hebrew : other) += word.text.size();
  return hebrew > 0 && hebrew * 3 >= other * 2;
}

}  // namespace

double LineReading::confidence() const {
  double weighted = 0;
  double letters = 0;
  for (const ReadWord& word : words) {
    weighted += word.confidence * static_cast<double>(word.text.size());
    letters += static_cast<double>(word.text.size());
  }
  return letters > 0 ? weighted / letters : 0;
}

bool hasHebrew(const std::string& text) {
  constexpr char firstByteOfHebrew = '\xD7';
  return text.find(firstByteOfHebrew) != std::string::npos;
}

bool isSure(const LineReading& reading) {
  const bool isHebrew = reading.script == Script::hebrew;
  if (reading.words.empty() || reading.confidence() < (isHebrew ? sureOfHebrew : sureOfLatin))
    return false;
  return std::all_of(reading.words.begin(), reading.words.end(), [&](const ReadWord& word) {
    if (word.confidence < doubtfulWord) return false;
    return !isHebrew || (hasHebrew(word.text) && !hasDigit(word.text));
  });
}

std::vector<ReadWord> bestWords(const std::vector<LineReading>& readings) {
  const std::vector<Placed> placed = fromLeft(readings);
  std::vector<ReadWord> best;
  for (std::size_t i = 0; i < placed.size();) {
    std::vector<Candidate> candidates(readings.size());
    for (std::size_t k = 0; k < readings.size(); ++k) candidates[k].script = readings[k].script;
    int right = placed[i].word->right;
    do {
      candidates[placed[i].reading].add(*placed[i].word);
      right = std::max(right, placed[i].word->right);
      ++i;
    } while (i < placed.size() && placed[i].word->left < right - mayOverlap);
    const auto winner = std::min_element(candidates.begin(), candidates.end(), isBetter);
    std::transform(winner->words.begin(), winner->words.end(), std::back_inserter(best),
                   [](const ReadWord* word) { return *word; });
  }
  return best;
}

std::string lineText(const std::vector<ReadWord>& words) {
  std::vector<const ReadWord*> kept;
  for (const ReadWord& word : words)
    if (word.confidence >= likelyNoWord) kept.push_back(&word);
  const bool fromRight = readsFromRight(words);
  if (fromRight) std::reverse(kept.begin(), kept.end());
  // Words of the other direction keep their own order among themselves.
  const auto isTurned = [&](const ReadWord* word) { return hasHebrew(word->text) != fromRight; };
  for (auto begin = kept.begin(); begin != kept.end();) {
    const auto first = std::find_if(begin, kept.end(), isTurned);
    const auto end = std::find_if_not(first, kept.end(), isTurned);
    std::reverse(first, end);
    begin = end;
  }
  std::string text;
  for (const ReadWord* word : kept) {
    if (!text.empty()) text += ' ';
    text += word->text;
  }
  return text;
}

}  // namespace vantorel
