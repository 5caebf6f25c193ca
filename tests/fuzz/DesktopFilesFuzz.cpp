// SPDX-License-Identifier: MIT
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/linux/applications/DesktopEntry.h"
#include "platform/linux/applications/ExecWords.h"
#include "platform/linux/xdg/KeyFile.h"
#include "text/Unicode.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

/// What somebody installed as a desktop entry: every text that is taken from it is UTF-8, one group
/// read by itself is the group of the whole file as far as it goes, and a command has no empty
/// tail.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vantorel;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const KeyFile file = parseKeyFile(text);
  for (const auto& [group, keys] : file) {
    for (const auto& [key, value] : parseKeyGroup(text, group)) {
      require(valueOf(keys, key) == value);
      require(isValidUtf8(value));
    }
  }
  const auto parsed =
      parseDesktopEntry("id", text, desktopEntryLocales(text.substr(0, size < 12 ? size : 12)));
  require(isValidUtf8(parsed.entry.name));
  require(isValidUtf8(parsed.entry.icon));
  require(parsed.entry.executable.find('/') == std::string::npos);
  (void)parsed.entry.isTerminalEmulator();
  (void)execWords(text);
  return 0;
}
