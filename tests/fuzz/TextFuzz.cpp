// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "text/CaseFolding.h"
#include "text/Unicode.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

/// Any bytes as a text: it can be repaired, cut and folded, stays well-formed, and is found in
/// itself.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vantorel;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto text = validUtf8(std::string(bytes));
  require(isValidUtf8(text));
  require(isValidUtf8(bytes) == (text == bytes));
  (void)trimmed(bytes);
  (void)prefixOfCharacters(bytes, size / 2);
  require(isValidUtf8(trimmed(text)));
  require(isValidUtf8(prefixOfCharacters(text, size / 2)));
  for (const auto rules : {CaseRules::general, CaseRules::turkic}) {
    const auto folded = foldedForSearch(bytes, rules);
    require(isValidUtf8(folded));
    require(folded == foldedForSearch(text, rules));
    require(containsFolded(folded, folded));
  }
  return 0;
}
