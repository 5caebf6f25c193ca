#include "store/HistoryFile.h"

#include <new>

#include "base/Base64.h"
#include "store/HistoryReader.h"
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

std::size_t expectedSize(const std::vector<ClipItem>& items) {
  std::size_t size = 16;
  for (const ClipItem& item : items) {
    size += 1024 + item.preview.size() + item.recognizedText.value_or("").size();
    for (const std::string& path : item.filePaths) size += path.size() + 16;
    // A prose's quotes and ends of lines are one byte in thirty or so, and take two.
    if (item.text) size += item.text->get().size() + item.text->get().size() / 16;
    if (item.rtfData) size += base64Length(item.rtfData->get().size());
    if (item.htmlData) size += base64Length(item.htmlData->get().size());
  }
  return size;
}

}  // namespace

Bytes encodeHistory(const std::vector<ClipItem>& items) {
  HistoryJson json;
  json.Reserve(expectedSize(items));
  HistoryWriter(json).write(items);
  const ByteView bytes = bytesOf({json.GetString(), json.GetSize()});
  return {bytes.begin(), bytes.end()};
}

std::optional<std::vector<ClipItem>> decodeHistory(Bytes json) {
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
