#include "platform/linux/settings/IsoDate.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

using namespace std::chrono;

constexpr Date moment = sys_days(year(2025) / 3 / 14) + hours(9) + minutes(26) + seconds(53);

TEST(IsoDate, WritesWholeSecondsWithoutAFraction) {
  EXPECT_EQ(isoDateText(moment), "2025-03-14T09:26:53Z");
}

TEST(IsoDate, WritesMillisecondsAndDropsFinerParts) {
  EXPECT_EQ(isoDateText(moment + milliseconds(7)), "2025-03-14T09:26:53.007Z");
  EXPECT_EQ(isoDateText(moment + microseconds(7999)), "2025-03-14T09:26:53.007Z");
  EXPECT_EQ(isoDateText(moment + microseconds(999)), "2025-03-14T09:26:53Z");
}

TEST(IsoDate, WritesTimesBefore1970) {
  EXPECT_EQ(isoDateText(Date(milliseconds(-1))), "1969-12-31T23:59:59.999Z");
}

TEST(IsoDate, RefusesYearsOfMoreThanFourDigits) {
  EXPECT_EQ(isoDateText(sys_days(year(9999) / 12 / 31)), "9999-12-31T00:00:00Z");
  EXPECT_FALSE(isoDateText(sys_days(year(10000) / 1 / 1)));
  EXPECT_FALSE(isoDateText(sys_days(year(-1) / 12 / 31)));
  EXPECT_FALSE(isoDateText(Date::max()));
  EXPECT_FALSE(isoDateText(Date::min()));
}

TEST(IsoDate, ReadsWithAndWithoutAFraction) {
  EXPECT_EQ(dateFromIsoText("2025-03-14T09:26:53Z"), moment);
  EXPECT_EQ(dateFromIsoText("2025-03-14T09:26:53.5Z"), moment + milliseconds(500));
  EXPECT_EQ(dateFromIsoText("2025-03-14T09:26:53.007Z"), moment + milliseconds(7));
  EXPECT_EQ(dateFromIsoText("2025-03-14T09:26:53.0000019999999999999999999Z"),
            moment + microseconds(1));
}

TEST(IsoDate, ReadsOffsets) {
  EXPECT_EQ(dateFromIsoText("2025-03-14T11:26:53+02:00"), moment);
  EXPECT_EQ(dateFromIsoText("2025-03-14T05:56:53-03:30"), moment);
}

TEST(IsoDate, RefusesEverythingElse) {
  for (const char* text : {"",
                           "2025-03-14",
                           "2025-03-14T09:26:53",
                           "2025-03-14T09:26Z",
                           "2025-03-14 09:26:53Z",
                           "2025-02-30T09:26:53Z",
                           "2025-13-01T09:26:53Z",
                           "2025-00-01T09:26:53Z",
                           "2025-03-14T24:00:00Z",
                           "2025-03-14T09:60:00Z",
                           "2025-03-14T09:26:60Z",
                           "2025-03-14T09:26:53.Z",
                           "2025-03-14T09:26:53Zx",
                           "2025-03-14T09:26:53+24:00",
                           "2025-03-14T09:26:53+02:60",
                           "2025-03-14T09:26:53+0200",
                           "25-03-14T09:26:53Z",
                           "-025-03-14T09:26:53Z",
                           "2025-03-14T09:26:53z",
                           " 2025-03-14T09:26:53Z"}) {
    EXPECT_FALSE(dateFromIsoText(text)) << text;
  }
}

}  // namespace
}  // namespace vantorel
