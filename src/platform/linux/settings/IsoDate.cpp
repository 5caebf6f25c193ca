#include "platform/linux/settings/IsoDate.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>

namespace vantorel {
namespace {

using namespace std::chrono;

/// Reads fixed pieces of a text from its front; once one is missing, every later one is too.
class Pieces {
 public:
  explicit Pieces(std::string_view text) : text_(text) {}

  int digits(std::size_t count) {
    int value = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const int digit = nextDigit();
      if (digit < 0) {
        failed_ = true;
        return 0;
      }
      value = value * 10 + digit;
    }
    return value;
  }

  void character(char expected) {
    if (!accept(expected)) failed_ = true;
  }

  bool accept(char expected) {
    if (text_.empty() || text_.front() != expected) return false;
    text_.remove_prefix(1);
    return true;
  }

  /// What follows the decimal point; digits finer than a microsecond are read and dropped.
  microseconds fraction() {
    std::int64_t value = 0;
    std::int64_t unit = 1'000'000;
    int digit = nextDigit();
    if (digit < 0) failed_ = true;
    for (; digit >= 0; digit = nextDigit()) {
      unit /= 10;
      value += unit * digit;
    }
    return microseconds(value);
  }

  [[nodiscard]] bool completed() const { return !failed_ && text_.empty(); }

 private:
  int nextDigit() {
    if (text_.empty() || text_.front() < '0' || text_.front() > '9') return -1;
    const int digit = text_.front() - '0';
    text_.remove_prefix(1);
    return digit;
  }

  std::string_view text_;
  bool failed_ = false;
};

/// Minutes east of UTC; absent when the clock never stands there.
std::optional<minutes> readOffset(Pieces& pieces) {
  if (pieces.accept('Z')) return minutes(0);
  const bool west = pieces.accept('-');
  if (!west) pieces.character('+');
  const hours hour(pieces.digits(2));
  pieces.character(':');
  const minutes minute(pieces.digits(2));
  if (hour > hours(23) || minute > minutes(59)) return std::nullopt;
  return west ? -(hour + minute) : hour + minute;
}

}  // namespace

std::optional<std::string> isoDateText(Date date) {
  const auto day = floor<days>(date);
  const year_month_day calendar(day);
  const int yearNumber = static_cast<int>(calendar.year());
  if (yearNumber < 0 || yearNumber > 9999) return std::nullopt;
  const hh_mm_ss clock(floor<milliseconds>(date - day));
  std::array<char, 32> text{};
  int length = std::snprintf(
      text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d", yearNumber,
      static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()),
      static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
      static_cast<int>(clock.seconds().count()));
  std::string result(text.data(), static_cast<std::size_t>(length));
  if (const auto fraction = clock.subseconds().count(); fraction != 0) {
    length = std::snprintf(text.data(), text.size(), ".%03d", static_cast<int>(fraction));
    result.append(text.data(), static_cast<std::size_t>(length));
  }
  return result + "Z";
}

std::optional<Date> dateFromIsoText(std::string_view text) {
  Pieces pieces(text);
  const year yearNumber(pieces.digits(4));
  pieces.character('-');
  const month monthNumber(static_cast<unsigned>(pieces.digits(2)));
  pieces.character('-');
  const day dayNumber(static_cast<unsigned>(pieces.digits(2)));
  pieces.character('T');
  const hours hour(pieces.digits(2));
  pieces.character(':');
  const minutes minute(pieces.digits(2));
  pieces.character(':');
  const seconds second(pieces.digits(2));
  microseconds fraction(0);
  if (pieces.accept('.')) fraction = pieces.fraction();
  const auto offset = readOffset(pieces);
  const year_month_day calendar(yearNumber, monthNumber, dayNumber);
  if (!pieces.completed() || !offset || !calendar.ok() || hour > hours(23) ||
      minute > minutes(59) || second > seconds(59)) {
    return std::nullopt;
  }
  return Date(sys_days(calendar)) + hour + minute + second + fraction - *offset;
}

}  // namespace vantorel
