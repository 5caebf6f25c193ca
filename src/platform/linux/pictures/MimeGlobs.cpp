#include "platform/linux/pictures/MimeGlobs.h"

#include <fnmatch.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "text/Unicode.h"

namespace vantorel {

namespace {

constexpr std::size_t longestPattern = 128;
constexpr std::size_t longestSuffix = 64;  // bytes of a name's end that are looked at
constexpr std::size_t mostPatterns =
    1000;                      // that are neither names nor suffixes; some 30 are usual
constexpr auto mostStars = 3;  // in one pattern; more could take for ever to match
constexpr std::string_view special = "*?[\\";

struct Line {
  int weight = 0;
  std::string_view type;
  std::string_view pattern;
  std::string_view flags;
};

std::string_view takeField(std::string_view& rest) {
  const auto colon = rest.find(':');
  const auto field = rest.substr(0, colon);
  rest.remove_prefix(colon == std::string_view::npos ? rest.size() : colon + 1);
  return field;
}

/// "weight:type:pattern" and perhaps ":flags".
std::optional<Line> parseLine(std::string_view text) {
  if (text.empty() || text.front() == '#') return std::nullopt;
  Line line;
  const auto weight = takeField(text);
  const auto [end, error] =
      std::from_chars(weight.data(), weight.data() + weight.size(), line.weight);
  if (error != std::errc() || end != weight.data() + weight.size()) return std::nullopt;
  line.type = takeField(text);
  line.pattern = takeField(text);
  line.flags = takeField(text);
  if (line.type.find('/') == std::string_view::npos || !isValidUtf8(line.type)) return std::nullopt;
  if (line.pattern.empty() || line.pattern.size() > longestPattern) return std::nullopt;
  return line;
}

bool saysCaseMatters(std::string_view flags) {
  while (!flags.empty()) {
    const auto end = flags.find(',');
    if (flags.substr(0, end) == "cs") return true;
    flags.remove_prefix(end == std::string_view::npos ? flags.size() : end + 1);
  }
  return false;
}

}  // namespace

MimeGlobs::MimeGlobs(const std::vector<std::string>& texts) {
  for (const auto& text : texts) read(text);
}

std::size_t MimeGlobs::numberOf(std::string_view type) {
  const auto found = numbers_.find(type);
  if (found != numbers_.end()) return found->second;
  types_.emplace_back(type);
  numbers_.emplace(types_.back(), types_.size() - 1);
  return types_.size() - 1;
}

void MimeGlobs::read(std::string_view text) {
  std::vector<std::size_t> closing;
  while (!text.empty()) {
    const auto end = text.find('\n');
    const auto line = parseLine(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (!line) continue;
    const auto type = numberOf(line->type);
    if (line->pattern == "__NOGLOBS__") {
      closing.push_back(type);
    } else if (!closed_.contains(type)) {
      const auto letterCase = saysCaseMatters(line->flags) ? Case::matters : Case::ignored;
      add(letterCase == Case::matters ? std::string(line->pattern) : lowerCased(line->pattern),
          {type, line->weight, line->pattern.size(), letterCase});
    }
  }
  closed_.insert(closing.begin(), closing.end());
}

void MimeGlobs::add(std::string pattern, Glob glob) {
  if (pattern.find_first_of(special) == std::string::npos) {
    literals_[std::move(pattern)].push_back(glob);
  } else if (pattern.front() == '*' && pattern.size() <= longestSuffix &&
             pattern.find_first_of(special, 1) == std::string::npos) {
    suffixes_[pattern.substr(1)].push_back(glob);
  } else if (patterns_.size() < mostPatterns &&
             std::count(pattern.begin(), pattern.end(), '*') <= mostStars) {
    patterns_.push_back({std::move(pattern), glob});
  }
}

std::string_view MimeGlobs::best(const std::string& name, Case letterCase) const {
  const Glob* winner = nullptr;
  const auto consider = [&](const Glob& glob) {
    if (letterCase == Case::ignored && glob.letterCase == Case::matters) return;
    const bool wins = winner == nullptr || glob.weight > winner->weight ||
                      (glob.weight == winner->weight && glob.length > winner->length);
    if (wins) winner = &glob;
  };
  const auto considerAll = [&](const Globs& globs, std::string_view key) {
    const auto found = globs.find(key);
    if (found != globs.end()) std::for_each(found->second.begin(), found->second.end(), consider);
  };
  considerAll(literals_, name);
  const std::size_t first = name.size() > longestSuffix ? name.size() - longestSuffix : 0;
  for (auto start = first; start <= name.size(); ++start) {
    considerAll(suffixes_, std::string_view(name).substr(start));
  }
  for (const auto& pattern : patterns_) {
    if (::fnmatch(pattern.text.c_str(), name.c_str(), 0) == 0) consider(pattern.glob);
  }
  return winner != nullptr ? std::string_view(types_[winner->type]) : std::string_view();
}

std::string_view MimeGlobs::typeOf(const std::string& fileName) const {
  const auto exact = best(fileName, Case::matters);
  return exact.empty() ? best(lowerCased(fileName), Case::ignored) : exact;
}

}  // namespace vantorel
