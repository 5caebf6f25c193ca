// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Date.h"

namespace vantorel {

/// What becomes of the fraction of a second.
enum class DateFraction {
  none,  // dropped towards the past when written, refused when read
  kept,  // three digits when they are not all zero; read to the microsecond
};

/// Whether the date lies in the years 0000 to 9999, which is all that four digits can write.
[[nodiscard]] bool fitsIso8601(Date date);

/// The date as an internet date-time in UTC, "2025-03-14T09:26:53Z". A date outside of the years is
/// written as the nearest one inside.
[[nodiscard]] std::string iso8601(Date date, DateFraction fraction = DateFraction::none);

/// Reads an internet date-time with "Z" or an offset such as "+02:00". Absent for anything else: a
/// day or an hour that does not exist, a leap second, a year that the offset carries out of 0000 to
/// 9999.
[[nodiscard]] std::optional<Date> dateFromIso8601(std::string_view text,
                                                  DateFraction fraction = DateFraction::none);

}  // namespace vantorel
