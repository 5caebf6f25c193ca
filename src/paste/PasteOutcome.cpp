// SPDX-License-Identifier: MIT
#include "paste/PasteOutcome.h"

namespace vantorel {

std::optional<std::string_view> notice(PasteOutcome outcome) {
  switch (outcome) {
    case PasteOutcome::pasted:
      return std::nullopt;
    case PasteOutcome::clipboardOnlyNeedsAccessibility:
      return "Copied. Enable Accessibility for automatic paste.";
    case PasteOutcome::clipboardOnlyNoTarget:
      return "Copied to clipboard. Press ⌘V to paste.";
    case PasteOutcome::unavailable:
      return "This item is no longer available.";
  }
  return std::nullopt;
}

}  // namespace vantorel
