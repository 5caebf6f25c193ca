// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vantorel {

/// From here on every warning of the toolkit fails the test that runs, unless it is expected.
void failTestsOnQtWarnings();

/// Announces that a warning containing `text` will come before this object goes; fails the test
/// when it does not.
class ExpectedQtWarning {
 public:
  explicit ExpectedQtWarning(std::string text);
  ~ExpectedQtWarning();
  ExpectedQtWarning(const ExpectedQtWarning&) = delete;
  ExpectedQtWarning& operator=(const ExpectedQtWarning&) = delete;

  /// Whether `message` is the one; it then counts as having come.
  [[nodiscard]] bool accepts(const std::string& message);

 private:
  std::string text_;
  bool came_ = false;
  ExpectedQtWarning* outer_;
};

}  // namespace vantorel
