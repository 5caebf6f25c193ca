// SPDX-License-Identifier: MIT
// Any bytes may stand in a history file. What is read from them must be written and read back the
// same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "store/HistoryFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vantorel;
  const ByteView input = std::as_bytes(std::span(data, size));
  const auto items = decodeHistory(Bytes(input.begin(), input.end()));
  if (!items) return 0;
  const EncodedHistory written(*items);
  const ByteView json = written.view();
  if (decodeHistory(Bytes(json.begin(), json.end())) != items) std::abort();
  return 0;
}
