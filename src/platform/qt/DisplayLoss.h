// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

namespace vantorel {

/// A last word for a program whose display goes. The toolkit ends the process on the spot when its
/// connection breaks, on whichever of its threads sees it, in Wayland sessions without running
/// anything more; all that comes before is a warning, which this listens to. Where the user has
/// warnings switched off, nothing comes. Main thread; one at a time.
class DisplayLoss {
 public:
  /// `lastWord` is called on the main thread, once, perhaps from within the toolkit: nothing of its
  /// windows may be touched any more. The process ends when it returns, or is late by ten seconds.
  explicit DisplayLoss(std::function<void()> lastWord);
  ~DisplayLoss();
  /// There is nothing to say any more, since the program has ended in order: nobody waits for it.
  void endInOrder();
  DisplayLoss(const DisplayLoss&) = delete;
  DisplayLoss& operator=(const DisplayLoss&) = delete;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace vantorel
