// SPDX-License-Identifier: MIT
#include "platform/linux/windows/PasteboardTargets.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "text/Unicode.h"

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

std::optional<std::string> plainTextCharset(std::string_view name) {
  constexpr std::string_view plainText = "text/plain";
  constexpr std::string_view label = "charset=";
  const std::string lower = lowerCased(name);
  std::string_view rest = lower;
  if (rest.substr(0, plainText.size()) != plainText) return std::nullopt;
  rest.remove_prefix(plainText.size());
  if (!rest.empty() && rest.front() != ';' && rest.front() != ' ') return std::nullopt;
  const auto found = rest.find(label);
  if (found == std::string_view::npos) return std::string();
  rest.remove_prefix(found + label.size());
  rest = rest.substr(0, rest.find(';'));
  std::string charset;
  for (const char c : rest) {
    if (c != '"' && c != ' ') charset += c;
  }
  return charset == "utf8" ? "utf-8" : charset;
}

Names text(const Names& offered) {
  Names utf8 = chosen(offered, {utf8String});
  Names marked;
  Names unmarked;
  for (const auto& name : offered) {
    const auto charset = plainTextCharset(name);
    if (charset)
      (*charset == "utf-8" ? utf8 : charset->empty() ? unmarked : marked).push_back(name);
  }
  Names found = std::move(utf8);
  for (const auto& names :
       {marked, unmarked, chosen(offered, {latin1String, anyString, compoundText})}) {
    found.insert(found.end(), names.begin(), names.end());
  }
  return found;
}

Names rtf(const Names& offered) {
  return chosen(offered, {"text/rtf", "application/rtf", "text/richtext"});
}

Names html(const Names& offered) { return chosen(offered, {htmlText}); }

Names fileLists(const Names& offered) {
  return chosen(offered, {uriList, copiedFiles, mateCopiedFiles});
}

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
