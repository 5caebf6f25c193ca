// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace vantorel {

/// A moment in UTC. Microseconds leave room for every year that ISO 8601 can name.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// A time interval in seconds, fraction included.
using Seconds = std::chrono::duration<double>;

/// `date` moved by `interval`, rounded to the resolution of `Date`.
inline Date advanced(Date date, Seconds interval) {
  return date + std::chrono::round<Date::duration>(interval);
}

}  // namespace vantorel
