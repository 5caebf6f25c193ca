// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The names under which X11 programs offer the forms that the pasteboard knows. Pure, any thread.
namespace vantorel::targets {

using Names = std::vector<std::string>;

inline constexpr const char* utf8String = "UTF8_STRING";
inline constexpr const char* latin1String = "STRING";
inline constexpr const char* anyString = "TEXT";  // the owner chooses the type, and says which
inline constexpr const char* compoundText = "COMPOUND_TEXT";
inline constexpr const char* uriList = "text/uri-list";
inline constexpr const char* copiedFiles = "x-special/gnome-copied-files";
inline constexpr const char* mateCopiedFiles = "x-special/mate-copied-files";
inline constexpr const char* htmlText = "text/html";
inline constexpr const char* png = "image/png";

// Of what is offered, that which holds the form, the best first.
[[nodiscard]] Names text(const Names& offered);
[[nodiscard]] Names rtf(const Names& offered);
[[nodiscard]] Names html(const Names& offered);
[[nodiscard]] Names fileLists(const Names& offered);
/// The lossless and common ones first, then any other image.
[[nodiscard]] Names images(const Names& offered);

/// The charset that the name of a plain text states, in lower case; empty when it states none,
/// absent when it names no plain text. Every spelling of UTF-8 answers "utf-8".
[[nodiscard]] std::optional<std::string> plainTextCharset(std::string_view name);

/// The offered names, and the "org.nspasteboard." name of every marker among them that X11 programs
/// spell differently.
[[nodiscard]] Names types(const Names& offered);

}  // namespace vantorel::targets
