// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace vantorel {

/// Writes JSON, each member and element on its own line, two blanks further in than what holds it.
/// What was written is overwritten in memory when this goes. Calls come in an order that makes
/// JSON: one value in all, in an object each after its key.
class JsonWriter {
 public:
  /// With room for `size` bytes. What outgrows it is copied; of what is not used the system gives
  /// no memory.
  explicit JsonWriter(std::size_t size = 0) { makeRoom(size); }
  ~JsonWriter();
  JsonWriter(const JsonWriter&) = delete;
  JsonWriter& operator=(const JsonWriter&) = delete;

  void beginObject() { begin('{'); }
  void endObject() { end('}'); }
  void beginArray() { begin('['); }
  void endArray() { end(']'); }
  /// UTF-8, like all texts: anything else is written as it is, and the whole is no JSON then.
  void key(std::string_view name);
  void text(std::string_view text);
  /// A text of `length` characters, none of which needs an escape. They are to be put where the
  /// answer says, before anything else is written.
  [[nodiscard]] char* plainText(std::size_t length);
  void boolean(bool value);
  void integer(std::int64_t value);
  /// Finite.
  void real(double value);
  /// Behind the whole: ends its last line.
  void endLine() { put("\n"); }

  /// What was written, until more is.
  [[nodiscard]] std::string_view view() const { return {memory_.get(), size_}; }

 private:
  void beforeValue();
  void begin(char bracket);
  void end(char bracket);
  void breakLine();
  void quote(std::string_view text);
  void put(std::string_view characters);
  void makeRoom(std::size_t count);

  std::unique_ptr<char[]> memory_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
  std::vector<bool> isEmpty_;  // of each container that was begun and not ended
  bool isAfterKey_ = false;
};

}  // namespace vantorel
