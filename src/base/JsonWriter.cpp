// SPDX-License-Identifier: MIT
#include "base/JsonWriter.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <utility>

namespace vantorel {
namespace {

/// How many characters at the front of `text` stand for themselves in a JSON text. Where the first
/// byte of a word is its lowest, eight are looked at at once: one by one, a full history takes
/// longer to save.
std::size_t plainLength(std::string_view text) {
  constexpr bool looksAtWords = std::endian::native == std::endian::little;
  constexpr std::uint64_t ones = 0x0101010101010101U;
  // Marks bytes below `limit`, which is at most 0x80, and perhaps some after the first of them.
  const auto below = [](std::uint64_t word, std::uint64_t limit) {
    return (word - ones * limit) & ~word & (ones * 0x80U);
  };
  std::size_t i = 0;
  for (; looksAtWords && i + 8 <= text.size(); i += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + i, 8);
    const std::uint64_t quotes = word ^ (ones * static_cast<unsigned char>('"'));
    const std::uint64_t backslashes = word ^ (ones * static_cast<unsigned char>('\\'));
    const std::uint64_t marks = below(word, 0x20) | below(quotes, 1) | below(backslashes, 1);
    if (marks != 0) return i + static_cast<std::size_t>(std::countr_zero(marks)) / 8;
  }
  const auto isPlain = [](char c) {
    return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\';
  };
  while (i < text.size() && isPlain(text[i])) ++i;
  return i;
}

constexpr std::size_t longestEscape = 6;

/// The letter that stands for a control character, 0 where none does.
constexpr auto names = [] {
  std::array<char, 0x20> letters{};
  letters['\b'] = 'b';
  letters['\f'] = 'f';
  letters['\n'] = 'n';
  letters['\r'] = 'r';
  letters['\t'] = 't';
  return letters;
}();

/// Writes what stands for `c`, which does not stand for itself; answers where that ends.
char* escape(char c, char* to) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto code = static_cast<unsigned char>(c);
  *to++ = '\\';
  if (code >= names.size()) {
    *to++ = c;
  } else if (names[code] != 0) {
    *to++ = names[code];
  } else {
    to = std::copy_n("u00", 3, to);
    *to++ = digits[code >> 4U];
    *to++ = digits[code & 15U];
  }
  return to;
}

}  // namespace

JsonWriter::~JsonWriter() { OPENSSL_cleanse(memory_.get(), size_); }

void JsonWriter::key(std::string_view name) {
  beforeValue();
  quote(name);
  put(": ");
  isAfterKey_ = true;
}

void JsonWriter::text(std::string_view text) {
  beforeValue();
  quote(text);
}

char* JsonWriter::plainText(std::size_t length) {
  beforeValue();
  makeRoom(length + 2);
  char* const place = memory_.get() + size_ + 1;
  place[-1] = place[length] = '"';
  size_ += length + 2;
  return place;
}

void JsonWriter::boolean(bool value) {
  beforeValue();
  put(value ? "true" : "false");
}

void JsonWriter::integer(std::int64_t value) {
  beforeValue();
  std::array<char, 24> digits{};
  const auto* const end = std::to_chars(digits.begin(), digits.end(), value).ptr;
  put({digits.data(), end});
}

void JsonWriter::real(double value) {
  beforeValue();
  std::array<char, 32> digits{};
  const auto* const end = std::to_chars(digits.begin(), digits.end(), value).ptr;
  const std::string_view number(digits.data(), end);
  put(number);
  if (number.find_first_of(".e") == std::string_view::npos) put(".0");  // it stays a real number
}

void JsonWriter::beforeValue() {
  if (std::exchange(isAfterKey_, false) || isEmpty_.empty()) return;
  if (!isEmpty_.back()) put(",");
  isEmpty_.back() = false;
  breakLine();
}

void JsonWriter::begin(char bracket) {
  beforeValue();
  put({&bracket, 1});
  isEmpty_.push_back(true);
}

void JsonWriter::end(char bracket) {
  const bool wasEmpty = isEmpty_.back();
  isEmpty_.pop_back();
  if (!wasEmpty) breakLine();
  put({&bracket, 1});
}

void JsonWriter::breakLine() {
  put("\n");
  for (std::size_t i = 0; i < isEmpty_.size(); ++i) put("  ");
}

void JsonWriter::quote(std::string_view text) {
  put("\"");
  for (;;) {
    const std::size_t plain = plainLength(text);
    makeRoom(text.size() + longestEscape + 1);
    char* to = std::copy_n(text.data(), plain, memory_.get() + size_);
    if (plain == text.size()) {
      *to++ = '"';
      size_ = static_cast<std::size_t>(to - memory_.get());
      return;
    }
    size_ = static_cast<std::size_t>(escape(text[plain], to) - memory_.get());
    text.remove_prefix(plain + 1);
  }
}

void JsonWriter::put(std::string_view characters) {
  makeRoom(characters.size());
  if (!characters.empty()) {
    std::memcpy(memory_.get() + size_, characters.data(), characters.size());
  }
  size_ += characters.size();
}

void JsonWriter::makeRoom(std::size_t count) {
  if (capacity_ - size_ >= count) return;
  const std::size_t capacity = std::max(size_ + count, capacity_ + capacity_ / 2);
  auto memory = std::make_unique_for_overwrite<char[]>(capacity);
  if (size_ > 0) std::memcpy(memory.get(), memory_.get(), size_);
  OPENSSL_cleanse(memory_.get(), size_);
  memory_ = std::move(memory);
  capacity_ = capacity;
}

}  // namespace vantorel
