#pragma once

#include <string>
#include <vector>

/// The names under which X11 programs offer the forms that the pasteboard knows. Pure, any thread.
namespace vantorel::targets {

using Names = std::vector<std::string>;

inline constexpr const char* utf8String = "UTF8_STRING";
inline constexpr const char* latin1String = "STRING";
inline constexpr const char* uriList = "text/uri-list";
inline constexpr const char* copiedFiles = "x-special/gnome-copied-files";
inline constexpr const char* htmlText = "text/html";
inline constexpr const char* png = "image/png";

// Of what is offered, that which holds the form, the best first.
[[nodiscard]] Names text(const Names& offered);
[[nodiscard]] Names rtf(const Names& offered);
[[nodiscard]] Names html(const Names& offered);
[[nodiscard]] Names fileLists(const Names& offered);
/// The lossless and common ones first, then any other image.
[[nodiscard]] Names images(const Names& offered);

/// The offered names, and the "org.nspasteboard." name of every marker among them that X11 programs
/// spell differently.
[[nodiscard]] Names types(const Names& offered);

}  // namespace vantorel::targets
