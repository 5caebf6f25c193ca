// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/linux/windows/UriList.h"

/// Whatever another program offers as a list of files: every path found is absolute, holds no NUL
/// and is found again when written back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto files = vantorel::filesFromUriList(text);
  const bool sound = std::all_of(files.begin(), files.end(), [](const auto& file) {
    return file.is_absolute() && file.native().find('\0') == std::string::npos;
  });
  if (!sound) std::abort();
  if (vantorel::filesFromUriList(vantorel::uriListOf(files)) != files) std::abort();
  if (vantorel::filesFromCopiedFiles(vantorel::copiedFilesOf(files)) != files) std::abort();
  return 0;
}
