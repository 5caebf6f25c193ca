// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

namespace vantorel {

/// How a paste ended.
enum class PasteOutcome {
  pasted,
  clipboardOnlyNeedsAccessibility,  // on the pasteboard; this program may not press keys
  clipboardOnlyNoTarget,            // on the pasteboard; no target, or it never came to the front
  unavailable,                      // nothing could be written
};

/// What the user is told about it; nothing when the paste speaks for itself. Key symbols stand as
/// in every text of this program; the view spells them.
[[nodiscard]] std::optional<std::string_view> notice(PasteOutcome outcome);

}  // namespace vantorel
