// SPDX-License-Identifier: MIT
#include "base/JsonReader.h"

// The library is known here and nowhere else: what a compiler or a release of it asks for stands in
// this file.
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <limits>

namespace vantorel {
namespace {

constexpr unsigned commonFlags = rapidjson::kParseIterativeFlag;

/// A window on characters that the parser may overwrite with what it has read. Past the end it
/// shows NUL, which no JSON contains, so that the text needs no terminator of its own.
class InSituStream {
 public:
  using Ch = char;
  explicit InSituStream(std::span<std::byte> text)
      : begin_(reinterpret_cast<char*>(text.data())), end_(begin_ + text.size()), from_(begin_) {}

  [[nodiscard]] char Peek() const { return from_ < end_ ? *from_ : '\0'; }
  char Take() { return from_ < end_ ? *from_++ : '\0'; }
  [[nodiscard]] std::size_t Tell() const { return static_cast<std::size_t>(from_ - begin_); }

  char* PutBegin() { return to_ = from_; }
  void Put(char c) { *to_++ = c; }  // never ahead of what was taken
  [[nodiscard]] std::size_t PutEnd(const char* begin) const {
    return static_cast<std::size_t>(to_ - begin);
  }
  void Flush() {}

 private:
  char* begin_;
  char* end_;
  char* from_;
  char* to_ = nullptr;
};

/// Says what the parser tells in our words. Named as the library calls them.
class ParserEvents {
 public:
  explicit ParserEvents(JsonEvents& events) : events_(events) {}

  bool Null() { return events_.null(); }
  bool Bool(bool value) { return events_.boolean(value); }
  bool Int(int value) { return events_.integer(value); }
  bool Uint(unsigned value) { return events_.integer(value); }
  bool Int64(std::int64_t value) { return events_.integer(value); }
  bool Uint64(std::uint64_t value) {
    constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return value > largest ? events_.real(static_cast<double>(value))
                           : events_.integer(static_cast<std::int64_t>(value));
  }
  bool Double(double value) { return events_.real(value); }
  bool RawNumber(const char* /*text*/, unsigned /*length*/, bool /*copy*/) {
    return events_.real(0);
  }
  bool String(const char* text, unsigned length, bool /*copy*/) {
    return events_.text({text, length});
  }
  bool StartObject() { return events_.beginObject(); }
  bool Key(const char* text, unsigned length, bool /*copy*/) { return events_.key({text, length}); }
  bool EndObject(unsigned /*members*/) { return events_.endObject(); }
  bool StartArray() { return events_.beginArray(); }
  bool EndArray(unsigned /*elements*/) { return events_.endArray(); }

 private:
  JsonEvents& events_;
};

/// A window on characters that stay, which says how far it was read.
class CountedStream : public rapidjson::MemoryStream {
 public:
  CountedStream(std::string_view text, std::size_t& position)
      : MemoryStream(text.data(), text.size()), position_(position) {}
  char Take() {
    const char taken = MemoryStream::Take();
    position_ = Tell();
    return taken;
  }

 private:
  std::size_t& position_;
};

/// The parser takes a NUL for the end: only where it has come to the very end all of it was read.
template <unsigned flags, class Stream>
bool hasReadAll(Stream& stream, std::size_t size, JsonEvents& events) {
  rapidjson::Reader parser;
  ParserEvents handler(events);
  return !parser.Parse<flags>(stream, handler).IsError() && stream.Tell() == size;
}

}  // namespace

bool readJsonWithin(std::span<std::byte> text, JsonEncoding encoding, JsonEvents& events) {
  InSituStream stream(text);
  constexpr unsigned flags = commonFlags | rapidjson::kParseInsituFlag;
  return encoding == JsonEncoding::checked
             ? hasReadAll<flags | rapidjson::kParseValidateEncodingFlag>(stream, text.size(),
                                                                         events)
             : hasReadAll<flags>(stream, text.size(), events);
}

bool readJsonInPieces(std::string_view text, std::size_t& position, JsonEvents& events) {
  position = 0;
  CountedStream stream(text, position);
  return hasReadAll<commonFlags | rapidjson::kParseValidateEncodingFlag |
                    rapidjson::kParseNumbersAsStringsFlag>(stream, text.size(), events);
}

}  // namespace vantorel
