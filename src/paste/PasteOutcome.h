#pragma once

namespace vantorel {

/// How a paste ended.
enum class PasteOutcome {
  pasted,
  clipboardOnlyNeedsAccessibility,  // on the pasteboard; this program may not press keys
  clipboardOnlyNoTarget,            // on the pasteboard; no target, or it never came to the front
  unavailable,                      // nothing could be written
};

}  // namespace vantorel
