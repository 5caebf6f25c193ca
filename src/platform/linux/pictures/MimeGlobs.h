#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

/// The MIME types of files by their names, as the shared database's "globs2" files have them.
/// Immutable, for any thread.
class MimeGlobs {
 public:
  /// `texts` are those files, the most important first. Lines that make no sense are passed over.
  explicit MimeGlobs(const std::vector<std::string>& texts);

  /// The type of a file with that name: by a pattern that fits as it is spelled, else by one that
  /// fits whatever the case; of several the weightiest, then the longest. Empty when none fits.
  [[nodiscard]] std::string_view typeOf(const std::string& fileName) const;

 private:
  enum class Case { matters, ignored };
  struct Glob {
    std::size_t type = 0;  // in types_
    int weight = 0;
    std::size_t length = 0;           // of the pattern
    Case letterCase = Case::ignored;  // matters: the name has to be spelled like the pattern
  };
  struct Pattern {
    std::string text;
    Glob glob;
  };
  using Globs = std::map<std::string, std::vector<Glob>, std::less<>>;

  void read(std::string_view text);
  void add(std::string pattern, Glob glob);
  std::size_t numberOf(std::string_view type);
  [[nodiscard]] std::string_view best(const std::string& name, Case letterCase) const;

  std::vector<std::string> types_;
  std::map<std::string, std::size_t, std::less<>> numbers_;  // of types
  std::set<std::size_t> closed_;                             // to less important files
  Globs literals_;                                           // whole names
  Globs suffixes_;                                           // what follows the asterisk
  std::vector<Pattern> patterns_;
};

}  // namespace vantorel
