// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QGuiApplication>
#include <algorithm>
#include <ostream>

#include "ui/looks/FixedSurroundings.h"
#include "ui/looks/KeptPictures.h"
#include "ui/looks/Look.h"
#include "ui/looks/LookPainter.h"

namespace vantorel {

/// For the report of a test.
static void PrintTo(const Look& look, std::ostream* out) { *out << look.name; }

namespace {

/// Dark colours at a point per pixel only: what more pixels change, colours do not.
bool isKept(Appearance appearance, double scale) {
  return appearance == Appearance::light || scale == 1;
}

std::string pictureName(const Look& look, Appearance appearance, double scale) {
  return look.name + (appearance == Appearance::dark ? "-dark-" : "-light-") +
         std::to_string(static_cast<int>(scale)) + "x";
}

class Looks : public testing::TestWithParam<Look> {
 protected:
  static void expectAsKept(Appearance appearance) {
    if (!isKept(appearance, qGuiApp->devicePixelRatio())) return;
    setAppearance(appearance);
    const auto picture = pictureOf(GetParam());
    EXPECT_TRUE(
        looksAsKept(picture, pictureName(GetParam(), appearance, picture.devicePixelRatio())));
  }
};

TEST_P(Looks, AreAsKept) {
  expectAsKept(Appearance::light);
  expectAsKept(Appearance::dark);
}

std::string testName(const testing::TestParamInfo<Look>& info) {
  std::string name = info.param.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(, Looks, testing::ValuesIn(allLooks()), testName);

TEST(KeptPictures, AreAllOfSomethingThatIsStillDrawn) {
  std::vector<std::string> expected;
  for (const auto& look : allLooks()) {
    for (const auto appearance : {Appearance::light, Appearance::dark}) {
      for (const double scale : {1, 2}) {
        if (isKept(appearance, scale)) expected.push_back(pictureName(look, appearance, scale));
      }
    }
  }
  std::sort(expected.begin(), expected.end());
  auto kept = keptPictures();
  std::sort(kept.begin(), kept.end());
  EXPECT_EQ(kept, expected);
}

TEST(KeptPictures, HaveTheirFonts) {
  const auto families = QFontDatabase::families();
  for (const char* family : {"Noto Sans", "Noto Sans Hebrew", "DejaVu Sans Mono"}) {
    EXPECT_TRUE(families.contains(QString::fromUtf8(family)))
        << family << " is missing: tools/packages packaging/test-packages.txt installs it";
  }
}

}  // namespace
}  // namespace vantorel
