// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include "platform/Dispatch.h"
#include "store/ImportedClips.h"

namespace vantorel {

/// Why a start ends without having done its work.
struct ToolFailure {
  int status = 0;  // one of `ToolStatus`
  std::string sentence;
};

/// Takes clips into the history of a user whose program does not run; holds it meanwhile, so that
/// none that starts writes to it too. Where there is no history yet, one begins. They are saved
/// when this returns, or nothing was changed. Answers how many of
/// them were kept.
[[nodiscard]] std::variant<std::size_t, ToolFailure> importHere(
    Dispatch& dispatch, const std::filesystem::path& dataHome,
    const std::vector<ImportedClip>& clips);

}  // namespace vantorel
