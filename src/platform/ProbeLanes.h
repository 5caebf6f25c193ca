// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "platform/Dispatch.h"

namespace vantorel {

/// Asks questions that may never be answered, such as those to a disk behind a dead network,
/// without anybody waiting for the answers. Questions begin in the order given, one after the
/// other; one that takes long is left to itself and the next ones go on beside it. When this ends,
/// questions that have not begun are dropped, and what is being asked is left behind. Main thread.
class ProbeLanes {
 public:
  /// Runs on another thread, maybe beyond the end of this, so it owns or shares all that it
  /// touches. It returns what is to be done with the answer, which is run on the main queue unless
  /// this has ended by then; empty for nothing.
  using Question = std::function<Work()>;

  /// How long a question holds the next ones up; up to twice as long, since time is looked at in
  /// steps.
  static constexpr Seconds patience{0.1};
  /// As many are asked beside each other at most, when none of them is answered.
  static constexpr std::size_t maxLanes = 64;

  /// `dispatch` outlives this.
  explicit ProbeLanes(Dispatch& dispatch);
  ~ProbeLanes();
  ProbeLanes(const ProbeLanes&) = delete;
  ProbeLanes& operator=(const ProbeLanes&) = delete;

  void ask(Question question);

 private:
  struct Shared;
  struct Lane;

  static void work(const std::shared_ptr<Shared>& shared, const std::shared_ptr<Lane>& lane);
  void startLanes(std::size_t count);
  void lookAround();

  Dispatch& dispatch_;
  std::shared_ptr<Shared> shared_;
  std::unique_ptr<Timer> timer_;  // while questions wait
};

}  // namespace vantorel
