// SPDX-License-Identifier: MIT
#include "base/Iso8601.h"

#include <gtest/gtest.h>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using namespace std::chrono_literals;

TEST(Iso8601, IsWrittenInUtcWithWholeSeconds) {
  EXPECT_EQ(iso8601(testDate()), "2025-03-14T09:26:53Z");
  EXPECT_EQ(iso8601(Date()), "1970-01-01T00:00:00Z");
}

TEST(Iso8601, DropsTheFractionTowardsThePast) {
  EXPECT_EQ(iso8601(testDate(0.999)), "2025-03-14T09:26:53Z");
  EXPECT_EQ(iso8601(Date(-1us)), "1969-12-31T23:59:59Z");
}

TEST(Iso8601, RefusesWhatIsNoDigit) {
  for (const char* text :
       {"2025-03-14T 9:26:53Z", "2025-03-14T/9:26:53Z", "2025-03-14T09:26:53+-1:00",
        "2025-03-14T09:26:53+ 1:00", "2025-03-14T09:26:53+01:-1", "2025-03-14T09:26:53+0::00"}) {
    EXPECT_FALSE(dateFromIso8601(text)) << text;
  }
}

TEST(Iso8601, WritesTheNearestYearThatItCan) {
  EXPECT_EQ(iso8601(Date::max()), "9999-12-31T23:59:59Z");
  EXPECT_EQ(iso8601(Date::min()), "0000-01-01T00:00:00Z");
}

TEST(Iso8601, IsReadWithAnyOffset) {
  EXPECT_EQ(dateFromIso8601("2025-03-14T09:26:53Z"), testDate());
  EXPECT_EQ(dateFromIso8601("2025-03-14T11:26:53+02:00"), testDate());
  EXPECT_EQ(dateFromIso8601("2025-03-13T21:41:53-11:45"), testDate());
  EXPECT_EQ(dateFromIso8601("2025-03-14T09:26:53-00:00"), testDate());
  EXPECT_EQ(dateFromIso8601("2024-02-29T00:00:00Z"),
            Date(std::chrono::sys_days(std::chrono::year(2024) / 2 / 29)));
}

TEST(Iso8601, ReadsEveryYearOfFourDigits) {
  for (const char* text : {"0000-01-01T00:00:00Z", "0001-12-31T23:59:59Z", "1969-12-31T23:59:59Z",
                           "9999-12-31T23:59:59Z"}) {
    const auto date = dateFromIso8601(text);
    ASSERT_TRUE(date) << text;
    EXPECT_EQ(iso8601(*date), text);
  }
}

constexpr auto kept = DateFraction::kept;

TEST(Iso8601, WritesMillisecondsWhereTheyAreKept) {
  EXPECT_EQ(iso8601(testDate(), kept), "2025-03-14T09:26:53Z");
  EXPECT_EQ(iso8601(testDate() + 7ms, kept), "2025-03-14T09:26:53.007Z");
  EXPECT_EQ(iso8601(testDate() + 7999us, kept), "2025-03-14T09:26:53.007Z");
  EXPECT_EQ(iso8601(testDate() + 999us, kept), "2025-03-14T09:26:53Z");
  EXPECT_EQ(iso8601(Date(-1ms), kept), "1969-12-31T23:59:59.999Z");
  EXPECT_EQ(iso8601(Date::max(), kept), "9999-12-31T23:59:59Z");
  EXPECT_EQ(iso8601(Date::min(), kept), "0000-01-01T00:00:00Z");
}

TEST(Iso8601, ReadsAFractionWhereItIsKept) {
  EXPECT_EQ(dateFromIso8601("2025-03-14T09:26:53Z", kept), testDate());
  EXPECT_EQ(dateFromIso8601("2025-03-14T09:26:53.5Z", kept), testDate() + 500ms);
  EXPECT_EQ(dateFromIso8601("2025-03-14T11:26:53.007+02:00", kept), testDate() + 7ms);
  EXPECT_EQ(dateFromIso8601("2025-03-14T09:26:53.0000019999999999999999999Z", kept),
            testDate() + 1us);
  EXPECT_EQ(dateFromIso8601("9999-12-31T23:59:59.999999Z", kept),
            Date(std::chrono::sys_days(std::chrono::year(10000) / 1 / 1)) - 1us);
}

TEST(Iso8601, KnowsWhichYearsItCanWrite) {
  using std::chrono::sys_days;
  using std::chrono::year;
  EXPECT_TRUE(fitsIso8601(sys_days(year(0) / 1 / 1)));
  EXPECT_TRUE(fitsIso8601(Date(sys_days(year(10000) / 1 / 1)) - 1us));
  EXPECT_FALSE(fitsIso8601(Date(sys_days(year(0) / 1 / 1)) - 1us));
  EXPECT_FALSE(fitsIso8601(sys_days(year(10000) / 1 / 1)));
  EXPECT_FALSE(fitsIso8601(Date::max()));
  EXPECT_FALSE(fitsIso8601(Date::min()));
}

class Iso8601Refusal : public ::testing::TestWithParam<const char*> {};

TEST_P(Iso8601Refusal, IsNotRead) { EXPECT_FALSE(dateFromIso8601(GetParam())); }

TEST_P(Iso8601Refusal, IsNotReadWithFractionsEither) {
  EXPECT_FALSE(dateFromIso8601(GetParam(), kept));
}

TEST(Iso8601, RefusesAFractionWhereNoneIsKept) {
  EXPECT_FALSE(dateFromIso8601("2025-03-14T09:26:53.5Z"));
  EXPECT_FALSE(dateFromIso8601("2025-03-14T09:26:53.123+00:00"));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Iso8601Refusal,
    ::testing::Values("", "Z", "2025-03-14", "2025-03-14T09:26:53", "2025-03-14T09:26Z",
                      "2025-03-14T09:26:53.Z", "2025-03-14T09:26:53.5", "2025-03-14T09:26:53.+1Z",
                      "25-03-14T09:26:53Z", "2025-03-14T09:26:53Zx", "2025-13-14T09:26:53Z",
                      "2025-00-14T09:26:53Z", "2025-02-30T09:26:53Z", "2025-02-29T09:26:53Z",
                      "2025-03-32T09:26:53Z", "2025-03-00T09:26:53Z", "2025-03-14T24:00:00Z",
                      "2025-03-14T09:60:53Z", "2025-03-14T09:26:60Z", "2025-03-14t09:26:53Z",
                      "2025-03-14T09:26:53z", "2025-03-14 09:26:53Z", "2025-03-14T09:26:53Z ",
                      " 2025-03-14T09:26:53Z", "2025-03-14T09:26:53+0200", "2025-03-14T09:26:53+02",
                      "2025-03-14T09:26:53+24:00", "2025-03-14T09:26:53+02:60",
                      "2025-03-14T09:26:53 02:00", "20250314T092653Z", "+2025-03-14T09:26:53Z",
                      "12025-03-14T09:26:53Z", "-001-03-14T09:26:53Z", "2025-W11-5T09:26:53Z",
                      "0000-01-01T00:00:00+00:01", "9999-12-31T23:59:59-00:01",
                      "2025-03-1\xD9\xA4T09:26:53Z"));

}  // namespace
}  // namespace vantorel
