// SPDX-License-Identifier: MIT
#include "panel/DateText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

namespace vantorel {
namespace {

using namespace std::chrono;

Date utc(int y, unsigned m, unsigned d, int hour, int minute) {
  return sys_days(year(y) / static_cast<int>(m) / static_cast<int>(d)) + hours(hour) +
         minutes(minute);
}

/// Sets a variable, or takes it away, and puts back what was there.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const char* value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    set(value);
  }
  ~EnvironmentVariable() { set(before_ ? before_->c_str() : nullptr); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

  void set(const char* value) const {
    if (value != nullptr) {
      ::setenv(name_, value, 1);
    } else {
      ::unsetenv(name_);
    }
  }

 private:
  const char* name_;
  std::optional<std::string> before_;
};

class DateTextTest : public testing::Test {
 protected:
  void setZone(const char* zone) const { zone_.set(zone); }

  const Date now_ = utc(2025, 3, 14, 9, 26);

 private:
  const EnvironmentVariable zone_{"TZ", "UTC0"};
};

TEST_F(DateTextTest, NearDaysHaveNames) {
  const DateText british("en_GB.UTF-8");
  EXPECT_EQ(british.text(utc(2025, 3, 14, 9, 2), now_), "Today, 09:02");
  EXPECT_EQ(british.text(utc(2025, 3, 13, 23, 59), now_), "Yesterday, 23:59");
  EXPECT_EQ(british.text(utc(2025, 3, 15, 0, 0), now_), "Tomorrow, 00:00");
}

TEST_F(DateTextTest, OtherDaysAreShortDates) {
  const DateText british("en_GB.UTF-8");
  EXPECT_EQ(british.text(utc(2025, 3, 12, 14, 2), now_), "12/03/2025, 14:02");
  EXPECT_EQ(british.text(utc(2024, 3, 14, 9, 26), now_), "14/03/2024, 09:26");
}

TEST_F(DateTextTest, LocalesHaveTheirOwnWordsAndClocks) {
  EXPECT_EQ(DateText("en_US.UTF-8").text(utc(2025, 3, 14, 14, 2), now_), "Today, 2:02\u00A0PM");
  EXPECT_EQ(DateText("de_DE.UTF-8").text(utc(2025, 3, 14, 14, 2), now_), "Heute, 14:02");
  EXPECT_EQ(DateText("he_IL.UTF-8").text(utc(2025, 3, 13, 14, 2), now_), "אתמול, 14:02");
}

TEST_F(DateTextTest, NoLocaleReadsAsAmerican) {
  const auto american = DateText("en_US").text(now_, now_);
  for (const char* name : {"", "C", "C.UTF-8", "POSIX"}) {
    EXPECT_EQ(DateText(name).text(now_, now_), american) << name;
  }
  EXPECT_FALSE(DateText("!!!").text(now_, now_).empty());
}

TEST_F(DateTextTest, TheEnvironmentNamesTheLocale) {
  const EnvironmentVariable all("LC_ALL", nullptr);
  const EnvironmentVariable time("LC_TIME", "de_DE.UTF-8");
  const EnvironmentVariable language("LANG", "he_IL.UTF-8");
  EXPECT_EQ(DateText::forUser().text(now_, now_), "Heute, 09:26");
  {
    const EnvironmentVariable empty("LC_TIME", "");
    EXPECT_EQ(DateText::forUser().text(now_, now_), "היום, 9:26");
  }
  const EnvironmentVariable stronger("LC_ALL", "en_GB.UTF-8");
  EXPECT_EQ(DateText::forUser().text(now_, now_), "Today, 09:26");
}

TEST_F(DateTextTest, TheDayIsTheMachinesOwn) {
  setZone("EAST-10");  // ten hours ahead of UTC
  const DateText british("en_GB");
  EXPECT_EQ(british.text(utc(2025, 3, 13, 14, 0), now_), "Today, 00:00");
  EXPECT_EQ(british.text(utc(2025, 3, 13, 13, 59), now_), "Yesterday, 23:59");
}

TEST_F(DateTextTest, AChangeOfTheTimeZoneIsSeen) {
  const DateText british("en_GB");
  EXPECT_EQ(british.text(utc(2025, 3, 14, 9, 0), now_), "Today, 09:00");
  setZone("EAST-2");
  EXPECT_EQ(british.text(utc(2025, 3, 14, 9, 0), now_), "Today, 11:00");
}

TEST_F(DateTextTest, DaysAreCountedByTheCalendarAcrossSummerTime) {
  setZone("EST5EDT,M3.2.0,M11.1.0");
  const DateText british("en_GB");
  // The night of 9 March 2025 had 23 hours there.
  EXPECT_EQ(british.text(utc(2025, 3, 9, 4, 30), utc(2025, 3, 10, 4, 30)), "08/03/2025, 23:30");
  EXPECT_EQ(british.text(utc(2025, 3, 9, 5, 30), utc(2025, 3, 10, 4, 30)), "Yesterday, 00:30");
}

TEST_F(DateTextTest, FarAwayDatesAreStillText) {
  const DateText british("en_GB");
  EXPECT_EQ(british.text(utc(1970, 1, 1, 0, 0), now_), "01/01/1970, 00:00");
  EXPECT_EQ(british.text(utc(9999, 12, 31, 23, 59), now_), "31/12/9999, 23:59");
  EXPECT_FALSE(british.text(Date::min(), now_).empty());
  EXPECT_FALSE(british.text(Date::max(), now_).empty());
}

}  // namespace
}  // namespace vantorel
