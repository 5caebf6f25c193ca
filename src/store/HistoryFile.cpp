// SPDX-License-Identifier: MIT
#include "store/HistoryFile.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <new>

#include "store/HistoryReader.h"
#include "store/HistorySize.h"
#include "store/HistoryWriter.h"

namespace vantorel {
namespace {

/// A parser's window on bytes that it may overwrite with what it has read. Past the end it shows
/// NUL, which no JSON contains, so that the bytes need no terminator of their own.
class InSituStream {
 public:
  using Ch = char;
  explicit InSituStream(Bytes& bytes)
      : begin_(reinterpret_cast<char*>(bytes.data())), end_(begin_ + bytes.size()), from_(begin_) {}

  [[nodiscard]] char Peek() const { return from_ < end_ ? *from_ : '\0'; }
  char Take() { return from_ < end_ ? *from_++ : '\0'; }
  [[nodiscard]] std::size_t Tell() const { return static_cast<std::size_t>(from_ - begin_); }
  [[nodiscard]] bool atEnd() const { return from_ == end_; }

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

/// Overwrites what it was given when it goes.
class Wiping {
 public:
  explicit Wiping(Bytes& bytes) : bytes_(bytes) {}
  ~Wiping() { OPENSSL_cleanse(bytes_.data(), bytes_.size()); }
  Wiping(const Wiping&) = delete;
  Wiping& operator=(const Wiping&) = delete;

 private:
  Bytes& bytes_;
};

/// Room for the history, and for what the writer makes sure of before each text: that it may need
/// six times its length. Of what is not used the system gives no memory.
std::size_t roomFor(const std::vector<ClipItem>& items) {
  std::size_t longest = 0;
  for (const ClipItem& item : items) {
    if (item.text) longest = std::max(longest, item.text->get().size());
    if (item.recognizedText) longest = std::max(longest, item.recognizedText->size());
    longest = std::max(longest, item.preview.size());
    for (const std::string& path : item.filePaths) longest = std::max(longest, path.size());
  }
  return static_cast<std::size_t>(historySize(items)) + 6 * longest;
}

}  // namespace

EncodedHistory::EncodedHistory(const std::vector<ClipItem>& items)
    : json_(std::make_unique<HistoryJson>()) {
  json_->Reserve(roomFor(items));
  HistoryWriter(*json_).write(items);
}

EncodedHistory::~EncodedHistory() = default;

ByteView EncodedHistory::view() const { return bytesOf({json_->GetString(), json_->GetSize()}); }

std::optional<std::vector<ClipItem>> decodeHistory(Bytes json) {
  const Wiping wiping(json);
  if (json.size() > maximumHistoryBytes) return std::nullopt;
  try {
    InSituStream stream(json);
    HistoryReader reader;
    rapidjson::Reader parser;
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseInsituFlag;
    if (parser.Parse<flags>(stream, reader).IsError()) return std::nullopt;
    // The parser takes a NUL for the end of its input.
    if (!stream.atEnd()) return std::nullopt;
    return reader.takeItems();
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
}

}  // namespace vantorel
