// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vantorel {

/// `text` with its key symbols spelled as the keys of this desktop's keyboards: ⌘, ⇧, ⌥ and ⌃, in
/// the order given, joined by "+".
///
/// Two or more symbols in a row are the global shortcut, whose command key is Super: "⌘⇧V" becomes
/// "Super+Shift+V". (A global shortcut always has two modifiers at least.) A symbol that stands
/// alone is a key pressed in a window, where command is Ctrl: "⌘P" becomes "Ctrl+P". Text without
/// symbols comes back as it is, so any message may be passed.
[[nodiscard]] std::string spelledKeys(std::string_view text);

/// The same for the texts of the program itself, which also name keys and the computer by words:
/// "Option" becomes "Alt". Not for what may hold other people's names.
[[nodiscard]] std::string spelledWords(std::string_view text);

}  // namespace vantorel
