// SPDX-License-Identifier: MIT
#include "text/SubstringScan.h"

#include <array>
#include <cstring>

namespace vantorel {
namespace {

constexpr auto npos = std::string_view::npos;

/// How often bytes occur in folded text, roughly: most frequent first, what is not here is rare.
/// Lead bytes of the scripts that take two bytes a letter come before everything.
constexpr std::array<unsigned char, 256> commonness = [] {
  std::array<unsigned char, 256> made{};
  unsigned char rank = 200;
  for (const char c : std::string_view(" etaoinsrhldcumfpgwybvk\n.,-0121_/\"'()=:;xjqz3456789")) {
    auto& entry = made[static_cast<unsigned char>(c)];
    if (entry == 0) entry = rank--;
  }
  for (unsigned byte = 0x80; byte < 0xC0; ++byte) made[byte] = 180;
  for (unsigned byte = 0xC0; byte < 0x100; ++byte) made[byte] = 255;
  return made;
}();

unsigned commonnessOf(char c) { return commonness[static_cast<unsigned char>(c)]; }

/// Two different places of the needle whose bytes seldom occur, the rarer one first.
struct Probes {
  std::size_t first = 0;
  std::size_t second = 1;
};

Probes rarestPlaces(std::string_view needle) {
  Probes probes;
  if (commonnessOf(needle[1]) < commonnessOf(needle[0])) probes = {1, 0};
  for (std::size_t i = 2; i < needle.size(); ++i) {
    if (commonnessOf(needle[i]) < commonnessOf(needle[probes.first])) {
      probes = {i, probes.first};
    } else if (commonnessOf(needle[i]) < commonnessOf(needle[probes.second])) {
      probes.second = i;
    }
  }
  return probes;
}

class Scan {
 public:
  Scan(std::string_view haystack, std::string_view needle)
      : haystack_(haystack),
        needle_(needle),
        probes_(rarestPlaces(needle)),
        firstByte_(needle[probes_.first]),
        secondByte_(needle[probes_.second]) {}

  [[nodiscard]] std::size_t from(std::size_t start) const {
    const std::size_t starts = haystack_.size() - needle_.size() + 1;
    for (; start + blockSize <= starts; start += blockSize) {
      if (!blockMayMatch(start)) continue;
      const auto found = firstMatch(start, start + blockSize);
      if (found != npos) return found;
    }
    return firstMatch(start, starts);
  }

 private:
  static constexpr std::size_t blockSize = 64;

  /// Written without branches, so that the compiler compares many bytes at a time.
  [[nodiscard]] bool blockMayMatch(std::size_t start) const {
    const char* const firsts = haystack_.data() + start + probes_.first;
    const char* const seconds = haystack_.data() + start + probes_.second;
    unsigned char seen = 0;
    for (std::size_t i = 0; i < blockSize; ++i) {
      const auto here = static_cast<unsigned char>((firsts[i] == firstByte_ ? 0xFF : 0) &
                                                   (seconds[i] == secondByte_ ? 0xFF : 0));
      seen = static_cast<unsigned char>(seen | here);
    }
    return seen != 0;
  }

  [[nodiscard]] std::size_t firstMatch(std::size_t start, std::size_t end) const {
    const char* const firsts = haystack_.data() + probes_.first;
    for (; start < end; ++start) {
      const void* const next = std::memchr(firsts + start, firstByte_, end - start);
      if (next == nullptr) break;
      start = static_cast<std::size_t>(static_cast<const char*>(next) - firsts);
      if (haystack_[start + probes_.second] == secondByte_ &&
          std::memcmp(haystack_.data() + start, needle_.data(), needle_.size()) == 0) {
        return start;
      }
    }
    return npos;
  }

  std::string_view haystack_;
  std::string_view needle_;
  Probes probes_;
  char firstByte_;
  char secondByte_;
};

}  // namespace

std::size_t findBytes(std::string_view haystack, std::string_view needle, std::size_t from) {
  if (from > haystack.size() || needle.size() > haystack.size() - from) return npos;
  if (needle.size() < 2) return haystack.find(needle, from);
  // A long needle may agree with many places for long; the C library's search is linear.
  constexpr std::size_t longNeedle = 128;
  if (needle.size() > longNeedle) {
    const void* found =
        memmem(haystack.data() + from, haystack.size() - from, needle.data(), needle.size());
    return found != nullptr ? static_cast<const char*>(found) - haystack.data() : npos;
  }
  return Scan(haystack, needle).from(from);
}

}  // namespace vantorel
