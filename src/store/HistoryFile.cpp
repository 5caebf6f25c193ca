// SPDX-License-Identifier: MIT
#include "store/HistoryFile.h"

#include <openssl/crypto.h>

#include <new>

#include "base/JsonReader.h"
#include "store/HistoryReader.h"
#include "store/HistorySize.h"
#include "store/HistoryWriter.h"

namespace vantorel {
namespace {

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

}  // namespace

EncodedHistory::EncodedHistory(const std::vector<ClipItem>& items)
    : json_(static_cast<std::size_t>(historySize(items))) {
  HistoryWriter(json_).write(items);
}

std::optional<std::vector<ClipItem>> decodeHistory(Bytes json) {
  const Wiping wiping(json);
  if (json.size() > maximumHistoryBytes) return std::nullopt;
  try {
    HistoryReader reader;
    // Every text is checked by the reader of the history.
    if (!readJsonWithin(json, JsonEncoding::unchecked, reader)) return std::nullopt;
    return reader.takeItems();
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
}

}  // namespace vantorel
