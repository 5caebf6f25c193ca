#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Date.h"

namespace vantorel {

/// `date` as an ISO 8601 date-time in UTC, such as "2025-03-14T09:26:53Z"; with three digits of a
/// fraction when its milliseconds are not zero. Finer parts are dropped. Absent for years that
/// four digits cannot write.
[[nodiscard]] std::optional<std::string> isoDateText(Date date);

/// The moment that an ISO 8601 date-time names: with or without a fraction, in UTC ("Z") or at an
/// offset ("+02:00"). Absent for anything else, days that no calendar has included.
[[nodiscard]] std::optional<Date> dateFromIsoText(std::string_view text);

}  // namespace vantorel
