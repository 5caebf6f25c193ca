// SPDX-License-Identifier: MIT
#include "base/Iso8601.h"

#include <algorithm>

#include "base/Ascii.h"

namespace vantorel {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

constexpr sys_seconds firstSecond = sys_days(std::chrono::year(0) / 1 / 1);
constexpr sys_seconds lastSecond = sys_days(std::chrono::year(10000) / 1 / 1) - seconds(1);

/// A decimal number of exactly as many digits as `text` is long; -1 for anything else.
int number(std::string_view text) {
  int value = 0;
  for (const char digit : text) {
    if (!isAsciiDigit(digit)) return -1;
    value = value * 10 + (digit - '0');
  }
  return value;
}

void append(std::string& text, int value, int digits) {
  std::string reversed;
  for (int i = 0; i < digits; ++i, value /= 10) {
    reversed.push_back(static_cast<char>('0' + value % 10));
  }
  text.append(reversed.rbegin(), reversed.rend());
}

/// Takes a decimal point and what follows it off `text`; none counts as zero.
std::optional<microseconds> takeFraction(std::string_view& text) {
  microseconds fraction(0);
  if (!text.starts_with('.')) return fraction;
  text.remove_prefix(1);
  if (text.empty() || !isAsciiDigit(text.front())) return std::nullopt;
  for (int unit = 100'000; !text.empty() && isAsciiDigit(text.front()); unit /= 10) {
    fraction += microseconds(unit * (text.front() - '0'));
    text.remove_prefix(1);
  }
  return fraction;
}

/// What comes last: "Z", or a sign, hours, a colon and minutes.
std::optional<minutes> offset(std::string_view text) {
  if (text == "Z") return minutes(0);
  if (text.size() != 6 || (text[0] != '+' && text[0] != '-') || text[3] != ':') return std::nullopt;
  const int h = number(text.substr(1, 2));
  const int m = number(text.substr(4, 2));
  if (h < 0 || h > 23 || m < 0 || m > 59) return std::nullopt;
  const minutes size = hours(h) + minutes(m);
  return text[0] == '-' ? -size : size;
}

}  // namespace

bool fitsIso8601(Date date) { return date >= firstSecond && date < lastSecond + seconds(1); }

std::string iso8601(Date date, DateFraction fraction) {
  const sys_seconds second = std::clamp(std::chrono::floor<seconds>(date), firstSecond, lastSecond);
  const sys_days day = std::chrono::floor<days>(second);
  const std::chrono::year_month_day ymd(day);
  const std::chrono::hh_mm_ss time(second - day);
  std::string text;
  append(text, static_cast<int>(ymd.year()), 4);
  text.push_back('-');
  append(text, static_cast<int>(static_cast<unsigned>(ymd.month())), 2);
  text.push_back('-');
  append(text, static_cast<int>(static_cast<unsigned>(ymd.day())), 2);
  text.push_back('T');
  append(text, static_cast<int>(time.hours().count()), 2);
  text.push_back(':');
  append(text, static_cast<int>(time.minutes().count()), 2);
  text.push_back(':');
  append(text, static_cast<int>(time.seconds().count()), 2);
  const auto rest = std::chrono::floor<milliseconds>(date - second).count();
  if (fraction == DateFraction::kept && fitsIso8601(date) && rest != 0) {
    text.push_back('.');
    append(text, static_cast<int>(rest), 3);
  }
  text.push_back('Z');
  return text;
}

std::optional<Date> dateFromIso8601(std::string_view text, DateFraction fraction) {
  constexpr std::string_view pattern = "0000-00-00T00:00:00";
  if (text.size() <= pattern.size()) return std::nullopt;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == '0' ? !isAsciiDigit(text[i]) : text[i] != pattern[i]) return std::nullopt;
  }
  const std::chrono::year_month_day ymd(
      std::chrono::year(number(text.substr(0, 4))),
      std::chrono::month(static_cast<unsigned>(number(text.substr(5, 2)))),
      std::chrono::day(static_cast<unsigned>(number(text.substr(8, 2)))));
  const int hour = number(text.substr(11, 2));
  const int minute = number(text.substr(14, 2));
  const int second = number(text.substr(17, 2));
  text.remove_prefix(pattern.size());
  const auto part = fraction == DateFraction::kept ? takeFraction(text) : microseconds(0);
  const auto zone = offset(text);
  if (!ymd.ok() || hour > 23 || minute > 59 || second > 59 || !part || !zone) return std::nullopt;
  const Date moment =
      sys_days(ymd) + hours(hour) + minutes(minute) + seconds(second) + *part - *zone;
  return fitsIso8601(moment) ? std::optional(moment) : std::nullopt;
}

}  // namespace vantorel
