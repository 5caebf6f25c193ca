// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "base/Date.h"

namespace vantorel {

/// Moments as a person says them: "Today, 14:02", "Yesterday, 09:15", otherwise a short date with a
/// short time, in one locale and in the time zone of the machine. Main thread.
class DateText {
 public:
  /// `locale` as the environment names it ("he_IL.UTF-8"); "C", "POSIX" and nonsense read as US
  /// English.
  explicit DateText(const std::string& locale);
  /// In the locale that the environment names for dates.
  [[nodiscard]] static DateText forUser();
  ~DateText();
  DateText(DateText&&) noexcept;
  DateText& operator=(DateText&&) noexcept;

  /// `date` as seen at `now`. Never empty.
  [[nodiscard]] std::string text(Date date, Date now) const;

 private:
  struct Formats;
  std::unique_ptr<Formats> formats_;
};

}  // namespace vantorel
