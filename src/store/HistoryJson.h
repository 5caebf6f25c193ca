// SPDX-License-Identifier: MIT
#pragma once

#include <openssl/crypto.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>

namespace vantorel {

/// Memory that is overwritten when a larger piece takes its place; whoever has the last piece knows
/// how much of it to overwrite.
class WipingAllocator {
 public:
  // Named as RapidJSON calls them.
  static constexpr bool kNeedFree = true;
  void* Malloc(std::size_t size) { return size > 0 ? ::operator new(size) : nullptr; }
  void* Realloc(void* old, std::size_t oldSize, std::size_t size) {
    void* const memory = Malloc(size);
    if (old != nullptr && memory != nullptr) std::memcpy(memory, old, std::min(oldSize, size));
    if (old != nullptr) OPENSSL_cleanse(old, oldSize);
    Free(old);
    return memory;
  }
  static void Free(void* memory) { ::operator delete(memory); }
};

/// A text of JSON that grows, and is overwritten when it goes. Of its own kind, so that RapidJSON
/// writes into it what needs no escaping eight characters at once: one by one, a full history takes
/// longer to save. RapidJSON's own scan of many characters (RAPIDJSON_SSE2) takes U+001A to U+001F
/// for plain in 1.1.0.
class HistoryJson : public rapidjson::GenericStringBuffer<rapidjson::UTF8<>, WipingAllocator> {
 public:
  ~HistoryJson() { OPENSSL_cleanse(stack_.Bottom<char>(), stack_.GetSize()); }
  HistoryJson() = default;
  HistoryJson(const HistoryJson&) = delete;
  HistoryJson& operator=(const HistoryJson&) = delete;
};

inline void PutReserve(HistoryJson& json, std::size_t count) { json.Reserve(count); }
inline void PutUnsafe(HistoryJson& json, char c) { json.PutUnsafe(c); }

/// How many characters at the front of `text` stand for themselves in a JSON string.
inline std::size_t plainLength(std::string_view text) {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  // Marks bytes below `limit`, which is at most 0x80, and perhaps some after the first of them.
  const auto below = [](std::uint64_t word, std::uint64_t limit) {
    return (word - ones * limit) & ~word & (ones * 0x80U);
  };
  std::size_t i = 0;
  for (; i + 8 <= text.size(); i += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + i, 8);
    const std::uint64_t quotes = word ^ (ones * static_cast<unsigned char>('"'));
    const std::uint64_t backslashes = word ^ (ones * static_cast<unsigned char>('\\'));
    const std::uint64_t marks = below(word, 0x20) | below(quotes, 1) | below(backslashes, 1);
    static_assert(std::endian::native == std::endian::little);  // the first byte is the lowest
    if (marks != 0) return i + static_cast<std::size_t>(std::countr_zero(marks)) / 8;
  }
  const auto isPlain = [](char c) {
    return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\';
  };
  while (i < text.size() && isPlain(text[i])) ++i;
  return i;
}

}  // namespace vantorel

/// Writes what stands for itself; whether anything is left.
template <>
inline bool rapidjson::Writer<vantorel::HistoryJson>::ScanWriteUnescapedString(StringStream& is,
                                                                               size_t length) {
  const std::string_view rest(is.src_, length - is.Tell());
  const std::size_t plain = vantorel::plainLength(rest);
  std::memcpy(os_->PushUnsafe(plain), is.src_, plain);
  is.src_ += plain;
  return plain < rest.size();
}
