// SPDX-License-Identifier: MIT
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/Iso8601.h"
#include "platform/linux/settings/JsonObjectText.h"

namespace {

using vantorel::JsonMember;

void require(bool held) {
  if (!held) std::abort();
}

bool same(const std::vector<JsonMember>& a, const std::vector<JsonMember>& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i].key != b[i].key || a[i].text != b[i].text) return false;
  }
  return true;
}

}  // namespace

/// Whatever stands in the settings' file: what is understood is written so that it is understood
/// again, to the letter; and every value can be asked for as any type.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  constexpr auto kept = vantorel::DateFraction::kept;
  if (const auto date = vantorel::dateFromIso8601(text, kept)) {
    const auto again = vantorel::dateFromIso8601(vantorel::iso8601(*date, kept), kept);
    require(again && *date - *again < std::chrono::milliseconds(1) && *again <= *date);
  }
  const auto members = vantorel::parseJsonObject(text);
  if (!members) return 0;
  const auto again = vantorel::parseJsonObject(vantorel::jsonObjectText(*members));
  require(again && same(*members, *again));
  for (const JsonMember& member : *members) {
    static_cast<void>(vantorel::jsonBoolean(member.text));
    static_cast<void>(vantorel::jsonInteger(member.text));
    if (const auto string = vantorel::jsonString(member.text)) {
      const auto written = vantorel::jsonText(*string);
      require(written && vantorel::jsonString(*written) == string);
    }
    static_cast<void>(vantorel::jsonStringArray(member.text));
  }
  return 0;
}
