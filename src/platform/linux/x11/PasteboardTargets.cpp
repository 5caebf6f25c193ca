#include "platform/linux/x11/PasteboardTargets.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace vantorel::targets {

namespace {

constexpr std::string_view passwordHint = "x-kde-passwordManagerHint";
constexpr std::string_view concealed = "org.nspasteboard.ConcealedType";

bool contains(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

Names chosen(const Names& offered, std::initializer_list<std::string_view> preferred) {
  Names found;
  for (const auto name : preferred) {
    if (contains(offered, name)) found.emplace_back(name);
  }
  return found;
}

}  // namespace

Names text(const Names& offered) {
  return chosen(offered, {utf8String, "text/plain;charset=utf-8", "text/plain;charset=UTF-8",
                          "text/plain", latin1String});
}

Names rtf(const Names& offered) {
  return chosen(offered, {"text/rtf", "application/rtf", "text/richtext"});
}

Names html(const Names& offered) { return chosen(offered, {htmlText}); }

Names fileLists(const Names& offered) { return chosen(offered, {uriList, copiedFiles}); }

Names images(const Names& offered) {
  Names found = chosen(offered, {png, "image/tiff", "image/jpeg", "image/bmp", "image/x-bmp",
                                 "image/x-MS-bmp", "image/webp", "image/gif"});
  for (const auto& name : offered) {
    if (name.compare(0, 6, "image/") == 0 && !contains(found, name)) found.push_back(name);
  }
  return found;
}

Names types(const Names& offered) {
  Names names = offered;
  if (contains(offered, passwordHint) && !contains(offered, concealed)) {
    names.emplace_back(concealed);
  }
  return names;
}

}  // namespace vantorel::targets
