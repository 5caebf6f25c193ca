// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"

namespace vantorel {

/// What the owner of a selection says and gives, for one change. Every completion is called exactly
/// once, perhaps at once, on the thread of the window system, where all of this lives.
class OwnerForms {
 public:
  /// What no history could hold is not taken.
  static constexpr std::size_t maximumBytes = std::size_t{64} * 1024 * 1024;

  /// refused: the owner answers, only not with this form; lost: it stayed silent or gave too much,
  /// or nobody wants the answer any more.
  enum class Outcome { received, refused, lost };
  struct Answer {
    Outcome outcome = Outcome::lost;
    Bytes bytes = {};       // when received
    std::string type = {};  // what the owner labelled them with, where it has labels
  };

  virtual ~OwnerForms() = default;
  /// Absent when the owner does not say.
  virtual void readTargets(
      std::function<void(std::optional<std::vector<std::string>>)> completion) = 0;
  virtual void read(const std::string& target, std::function<void(Answer)> completion) = 0;
};

}  // namespace vantorel
