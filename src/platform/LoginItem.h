// SPDX-License-Identifier: MIT
#pragma once

namespace vantorel {

/// Whether the desktop starts this program when the user logs in. Main thread; each call looks at
/// what holds now, so that a change made elsewhere is seen.
class LoginItem {
 public:
  /// unavailable: this desktop has no such thing, and asking for it would fail.
  enum class Status { enabled, disabled, unavailable };

  virtual ~LoginItem() = default;

  [[nodiscard]] virtual Status status() = 0;
  /// From the next login on the desktop starts the program that runs now. What the user set beside
  /// that is kept. False when nothing could be changed.
  [[nodiscard]] virtual bool registerItem() = 0;
  /// An item that an older version made starts the program from now on as this one would: without
  /// showing anything. True when it was such a one, and now is not.
  [[nodiscard]] virtual bool renewItem() = 0;
  /// The desktop no longer starts it; it goes on running now. False when nothing could be changed.
  [[nodiscard]] virtual bool unregisterItem() = 0;
};

}  // namespace vantorel
