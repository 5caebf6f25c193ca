#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Date.h"

namespace vantorel {

/// The date as an internet date-time in UTC, "2025-03-14T09:26:53Z". The fraction of the second is
/// dropped, towards the past; a date outside the years 0000 to 9999 is written as the nearest one
/// inside, since the form has four digits.
[[nodiscard]] std::string iso8601(Date date);

/// Reads an internet date-time with "Z" or an offset such as "+02:00". Absent for anything else: a
/// fraction, a day or an hour that does not exist, a leap second, a year that the offset carries
/// out of 0000 to 9999.
[[nodiscard]] std::optional<Date> dateFromIso8601(std::string_view text);

}  // namespace vantorel
