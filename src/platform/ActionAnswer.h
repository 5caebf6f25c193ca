// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace vantorel {

/// Tells whoever asked for an action what came of it: nothing where it is done, else one sentence
/// of why it is not. Called once, perhaps later; an action whose answer goes without being called
/// was not done. Main thread.
using ActionAnswer = std::function<void(const std::string& trouble)>;

/// For whoever does not wait.
inline void answerNobody(const std::string& /*trouble*/) {}

}  // namespace vantorel
