// SPDX-License-Identifier: MIT
#include "panel/DateText.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/reldatefmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <cstdlib>
#include <ctime>
#include <string_view>
#include <utility>

namespace vantorel {
namespace {

/// What the clock on the wall shows, as if it showed UTC: formats then need no time zone, and a
/// change of the machine's zone is seen at once.
Date wallClock(Date date) {
  // A damaged clock may say anything; only the ends of time leave no room for an offset.
  constexpr std::chrono::days room{1};
  if (date > Date::max() - room || date < Date::min() + room) return date;
  const std::time_t time =
      std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
  std::tm local{};
  ::tzset();
  if (::localtime_r(&time, &local) == nullptr) return date;
  return date + std::chrono::seconds(local.tm_gmtoff);
}

UDate icuDate(Date date) {
  return static_cast<UDate>(
      std::chrono::floor<std::chrono::milliseconds>(date).time_since_epoch().count());
}

icu::Locale icuLocale(const std::string& name) {
  const std::string_view language = std::string_view(name).substr(0, name.find('.'));
  if (language.empty() || language == "C" || language == "POSIX") return icu::Locale::getUS();
  auto locale = icu::Locale::createCanonical(std::string(language).c_str());
  return locale.isBogus() ? icu::Locale::getUS() : locale;
}

/// Narrow no-break spaces stand in few fonts; the ordinary one keeps the text in one font.
std::string plain(icu::UnicodeString text) {
  text.findAndReplace(icu::UnicodeString(char16_t{0x202F}), icu::UnicodeString(char16_t{0x00A0}));
  std::string utf8;
  text.toUTF8String(utf8);
  return utf8;
}

}  // namespace

struct DateText::Formats {
  explicit Formats(const icu::Locale& locale)
      : date(icu::DateFormat::createDateInstance(icu::DateFormat::kShort, locale)),
        time(icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale)),
        days(locale, nullptr, UDAT_STYLE_LONG, UDISPCTX_CAPITALIZATION_FOR_BEGINNING_OF_SENTENCE,
             status) {
    if (date) date->adoptTimeZone(icu::TimeZone::getGMT()->clone());
    if (time) time->adoptTimeZone(icu::TimeZone::getGMT()->clone());
  }

  [[nodiscard]] bool usable() const { return date && time && U_SUCCESS(status) != 0; }

  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::DateFormat> date;
  std::unique_ptr<icu::DateFormat> time;
  icu::RelativeDateTimeFormatter days;
};

DateText::DateText(const std::string& locale)
    : formats_(std::make_unique<Formats>(icuLocale(locale))) {
  if (!formats_->usable()) formats_ = std::make_unique<Formats>(icu::Locale::getRoot());
}

DateText DateText::forUser() {
  // The environment itself, since a locale that is not installed still says what the user reads.
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    // Nothing in this program changes the environment.
    const char* name = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe)
    if (name != nullptr && *name != '\0') return DateText(name);
  }
  return DateText("");
}

DateText::~DateText() = default;
DateText::DateText(DateText&&) noexcept = default;
DateText& DateText::operator=(DateText&&) noexcept = default;

std::string DateText::text(Date date, Date now) const {
  const Date local = wallClock(date);
  icu::UnicodeString time;
  icu::UnicodeString day;
  if (!formats_->usable()) return std::to_string(local.time_since_epoch().count());
  formats_->time->format(icuDate(local), time);

  UErrorCode status = U_ZERO_ERROR;
  const auto daysAgo = (std::chrono::floor<std::chrono::days>(wallClock(now)) -
                        std::chrono::floor<std::chrono::days>(local))
                           .count();
  if (daysAgo == 0) {
    formats_->days.format(UDAT_DIRECTION_THIS, UDAT_ABSOLUTE_DAY, day, status);
  } else if (daysAgo == 1) {
    formats_->days.format(UDAT_DIRECTION_LAST, UDAT_ABSOLUTE_DAY, day, status);
  } else if (daysAgo == -1) {
    formats_->days.format(UDAT_DIRECTION_NEXT, UDAT_ABSOLUTE_DAY, day, status);
  }
  if (day.isEmpty() || U_FAILURE(status) != 0) formats_->date->format(icuDate(local), day);

  icu::UnicodeString both;
  status = U_ZERO_ERROR;
  formats_->days.combineDateAndTime(day, time, both, status);
  if (U_FAILURE(status) != 0) both = day + u' ' + time;
  return plain(both);
}

}  // namespace vantorel
