// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/Bytes.h"

namespace vantorel {

/// Empties `text` and overwrites wherever it stood, then gives the memory back. Emptied in the
/// usual way a string keeps its memory, with all of its characters but the first. Any thread.
void wipe(std::string& text) noexcept;
/// The same for bytes.
void wipe(Bytes& bytes) noexcept;

}  // namespace vantorel
