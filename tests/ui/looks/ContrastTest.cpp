// SPDX-License-Identifier: MIT
// How well what is small or thin is told from what it stands on, by the colours that are drawn.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>
#include <cmath>
#include <map>
#include <ostream>

#include "app/HelpPanel.h"
#include "app/ShortcutPanel.h"
#include "app/ShortcutPill.h"
#include "app/TextBlock.h"
#include "chrome/Geometry.h"
#include "fakes/FakeKeyboardGrabs.h"
#include "panel/ClipListView.h"
#include "panel/ClipRowView.h"
#include "panel/MediaPreview.h"
#include "panel/PreviewGeometry.h"
#include "panel/RowGeometry.h"
#include "ui/looks/FixedSurroundings.h"
#include "ui/looks/LookPainter.h"
#include "ui/looks/PanelScene.h"

namespace vantorel {
namespace {

// Of a text that is small, and of a sign.
constexpr double legible = 4.5;
constexpr double noticeable = 3;

/// So many pixels to a point that thin lines have a pixel in their own colour.
constexpr double scale = 4;

double luminance(QRgb color) {
  const auto linear = [](int channel) {
    const double c = channel / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) +
         0.0722 * linear(qBlue(color));
}

double contrast(QRgb a, QRgb b) {
  const auto [less, more] = std::minmax({luminance(a) + 0.05, luminance(b) + 0.05});
  return more / less;
}

struct Setting {
  Appearance appearance;
  Ground ground;
  const char* name;
};

[[maybe_unused]] void PrintTo(const Setting& setting, std::ostream* out) { *out << setting.name; }

class Contrast : public testing::TestWithParam<Setting> {
 protected:
  Contrast() {
    setAppearance(GetParam().appearance);
    if (GetParam().ground != Ground::plain) scene_.backdrops.setAvailable(Backdrop::blurrable);
  }
  ~Contrast() override { setAppearance(Appearance::light); }

  [[nodiscard]] static bool shinesThrough() { return GetParam().ground != Ground::plain; }
  [[nodiscard]] static QImage picture(QWidget& window) {
    QCoreApplication::processEvents();
    return pictureOnGround(window, GetParam().ground, scale);
  }
  /// The colour of most of the area.
  [[nodiscard]] static QRgb groundOf(const QImage& image, const QRectF& area) {
    std::map<QRgb, int> counts;
    forEachPixel(image, area, [&](QRgb pixel) { ++counts[pixel]; });
    return std::max_element(counts.begin(), counts.end(),
                            [](const auto& a, const auto& b) { return a.second < b.second; })
        ->first;
  }
  /// Of what stands out most in the area.
  [[nodiscard]] static double strongest(const QImage& image, const QRectF& area, QRgb ground) {
    double most = 1;
    forEachPixel(image, area, [&](QRgb pixel) { most = std::max(most, contrast(pixel, ground)); });
    return most;
  }
  [[nodiscard]] static double strongest(const QImage& image, const QRectF& area) {
    return strongest(image, area, groundOf(image, area));
  }
  [[nodiscard]] static QRectF in(const QWidget& part, const QRectF& area) {
    return area.translated(part.mapTo(part.window(), QPoint(0, 0)));
  }
  [[nodiscard]] static QRectF whole(const QWidget& part) { return in(part, part.rect()); }
  [[nodiscard]] static ClipRowView& row(std::size_t index) {
    return *PanelScene::list().row(index);
  }
  [[nodiscard]] static QRectF metadata(std::size_t index) {
    return in(row(index),
              toQRectF(RowGeometry::metadata(row(index).content().kind, row(0).width())));
  }
  [[nodiscard]] static QRectF title(std::size_t index) {
    return in(row(index), toQRectF(RowGeometry::title(row(index).content().kind, row(0).width())));
  }
  /// How well a part that has the keyboard is told from itself without it.
  [[nodiscard]] static double ring(QWidget& part) {
    auto& window = *part.window();
    window.activateWindow();  // a menu may have been open
    part.clearFocus();
    const auto without = picture(window);
    part.setFocus(Qt::TabFocusReason);
    const auto with = picture(window);
    double most = 1;
    forEachPlace(with, whole(part), [&](int x, int y) {
      most = std::max(most, contrast(with.pixel(x, y), without.pixel(x, y)));
    });
    return most;
  }
  /// The middle of its upper edge, a point high.
  [[nodiscard]] static QRectF edge(const QWidget& part) {
    return in(part, QRectF(part.width() / 2.0, 0, 20, 2));
  }
  [[nodiscard]] static QAbstractButton& button(QWidget& window, const char* name) {
    for (auto* each : window.findChildren<QAbstractButton*>()) {
      if (each->accessibleName() == QString::fromUtf8(name) || each->text() == name) return *each;
    }
    throw std::logic_error("no such button");
  }

  PanelScene scene_;
  const ChromeServices services_{scene_.dispatch, scene_.screens, scene_.accessibility,
                                 &scene_.backdrops};

 private:
  template <class Visit>
  static void forEachPlace(const QImage& image, const QRectF& area, Visit visit) {
    const QRect pixels =
        QRectF(area.topLeft() * scale, area.size() * scale).toAlignedRect() & image.rect();
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
      for (int x = pixels.left(); x <= pixels.right(); ++x) visit(x, y);
    }
  }
  template <class Visit>
  static void forEachPixel(const QImage& image, const QRectF& area, Visit visit) {
    forEachPlace(image, area, [&](int x, int y) { visit(image.pixel(x, y)); });
  }
};

TEST_P(Contrast, SmallTextIsLegibleInEveryRow) {
  scene_.openKinds();
  scene_.hover(3);
  const auto image = picture(*PanelScene::panel());
  for (const std::size_t index : {0U, 2U, 3U}) {
    EXPECT_GE(strongest(image, metadata(index)), legible) << index;
  }
}

TEST_P(Contrast, SmallTextIsLegibleElsewhere) {
  scene_.open();
  const auto* sentence = PanelScene::list().findChild<QLabel*>();
  EXPECT_GE(strongest(picture(*PanelScene::panel()), whole(*sentence)), legible);
  scene_.press(Qt::Key_F, Qt::ControlModifier);
  const auto* field = PanelScene::panel()->findChild<QLineEdit*>();
  EXPECT_GE(strongest(picture(*PanelScene::panel()), in(*field, {32, 4, 100, 24})), legible);
}

TEST_P(Contrast, ACaptionIsLegible) {
  scene_.addKinds();
  scene_.open();
  scene_.showPreview(2);
  auto* window = shownWindow("Preview");
  const auto* media = window->findChild<MediaPreview*>();
  const Size size{static_cast<double>(media->width()), static_cast<double>(media->height())};
  EXPECT_GE(strongest(picture(*window), in(*media, toQRectF(PreviewGeometry::mediaCaption(size)))),
            legible);
}

TEST_P(Contrast, TheNameOfAFileThatIsGoneCanStillBeRead) {
  scene_.addKinds();
  scene_.open();
  const auto lost = PanelScene::rowTitled("Budget");
  const auto image = picture(*PanelScene::panel());
  EXPECT_GE(strongest(image, title(*lost)), shinesThrough() ? noticeable : legible);
  EXPECT_LT(strongest(image, title(*lost)), strongest(image, metadata(*lost)));
}

TEST_P(Contrast, PinsAreNoticeable) {
  scene_.openKinds();
  scene_.hover(3);
  const auto image = picture(*PanelScene::panel());
  for (const std::size_t index : {0U, 1U, 2U, 3U}) {
    auto& pin = button(row(index), index < 2 ? "Unpin" : "Pin");
    EXPECT_GE(strongest(image, whole(pin)), noticeable) << index;
  }
}

TEST_P(Contrast, APinThatCannotBeHadIsNoticeable) {
  for (int i = 0; i < 6; ++i) scene_.add(textItem("Entry " + std::to_string(i)), "Notes");
  for (int i = 0; i < 5; ++i) (void)scene_.store->togglePinned(scene_.store->items()[5].id);
  scene_.open();
  const auto image = picture(*PanelScene::panel());
  EXPECT_GE(strongest(image, whole(button(row(5), "Pin"))), noticeable);
}

TEST_P(Contrast, FiltersAreNoticeableInForceOrNot) {
  scene_.addMixed();
  scene_.open();
  scene_.press(Qt::Key_F, Qt::ControlModifier);
  const auto check = [&] {
    auto& panel = *PanelScene::panel();
    const auto image = picture(panel);
    for (const char* name : {"Filter by type", "Filter by app"}) {
      EXPECT_GE(strongest(image, whole(button(panel, name))), noticeable) << name;
    }
  };
  check();
  scene_.clickButton("Filter by app");
  PanelScene::choose("Files");
  scene_.clickButton("Filter by type");
  PanelScene::choose("Files");
  check();
}

TEST_P(Contrast, TheFieldAndTheButtonWithTheKeyboardAreMarked) {
  scene_.openKinds();
  scene_.press(Qt::Key_R, Qt::ControlModifier);
  auto& sheet = *shownWindow("Name Pinned Clip");
  auto* field = sheet.findChild<QLineEdit*>();
  const auto ground = [&](const QImage& image) {
    return groundOf(image, QRectF(4, sheet.height() / 2.0, 10, 4));
  };
  auto image = picture(sheet);
  EXPECT_GE(strongest(image, edge(*field), ground(image)), noticeable);
  auto& cancel = button(sheet, "Cancel");
  cancel.setFocus();
  image = picture(sheet);
  EXPECT_GE(strongest(image, edge(cancel), ground(image)), noticeable);
}

TEST_P(Contrast, AnEmptyListWithTheKeyboardIsMarked) {
  scene_.open();
  scene_.press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_GE(ring(PanelScene::list()), noticeable);
}

TEST_P(Contrast, TheListWithTheKeyboardIsMarked) {
  scene_.openKinds();
  scene_.press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_GE(ring(PanelScene::list()), noticeable);
}

TEST_P(Contrast, AFilterWithTheKeyboardIsMarkedInForceOrNot) {
  scene_.addMixed();
  scene_.open();
  scene_.press(Qt::Key_F, Qt::ControlModifier);
  auto& filter = button(*PanelScene::panel(), "Filter by type");
  EXPECT_GE(ring(filter), noticeable);
  scene_.clickButton("Filter by type");
  PanelScene::choose("Files");
  EXPECT_GE(ring(filter), noticeable) << "in force";
}

TEST_P(Contrast, WhatHasTheKeyboardInTheHelpIsMarked) {
  HelpPanel help(services_, HelpPanel::Occasion::about,
                 {"⌘⇧V", true, true, "0.1.0", Language::english});
  help.makeKeyAndOrderFront();
  int marked = 0;
  const auto controls = help.findChildren<QAbstractButton*>();
  for (auto* control : controls) {
    if (!(control->focusPolicy() & Qt::TabFocus) || !control->isEnabled()) continue;
    EXPECT_GE(ring(*control), noticeable)
        << control->accessibleName().toStdString() << control->text().toStdString();
    ++marked;
  }
  EXPECT_GE(marked, 5);
}

TEST_P(Contrast, ANoticeIsLegible) {
  constexpr auto message = "Copied to clipboard.";
  scene_.toast.show(message);
  auto* notice = shownWindow(message);
  EXPECT_GE(strongest(picture(*notice), whole(*notice->findChild<QLabel*>())), legible);
}

TEST_P(Contrast, TheRecorderIsLegible) {
  FakeKeyboardGrabs grabs;
  ShortcutPanel recorder(services_, grabs, nullptr, "⌘⇧V");
  recorder.makeKeyAndOrderFront();
  const auto image = picture(recorder);
  const auto texts = recorder.findChildren<TextBlock*>();
  EXPECT_GE(texts.size(), 2);
  for (const auto* text : texts) EXPECT_GE(strongest(image, whole(*text)), legible);
  EXPECT_GE(strongest(image, whole(*recorder.findChild<ShortcutPill*>())), legible);
  for (const char* name : {"Reset", "Cancel"}) {
    const auto& words = button(recorder, name);
    EXPECT_GE(strongest(image, whole(words).adjusted(8, 5, -8, -5)), legible) << name;
  }
}

TEST_P(Contrast, TheSelectedRowIsTheStrongestOfAll) {
  scene_.openKinds();
  scene_.press(Qt::Key_Down);
  scene_.press(Qt::Key_Down);
  scene_.hover(4);
  const auto image = picture(*PanelScene::panel());
  const QRgb ground = groundOf(image, whole(row(6)));
  const double selected = strongest(image, edge(row(2)), ground);
  EXPECT_GT(selected, strongest(image, edge(row(4)), ground));
  EXPECT_GE(selected, 1.5);
  const QRectF bar = in(row(2), {0, 12, 4, 24});
  EXPECT_GE(strongest(image, bar, ground), noticeable);
}

TEST_P(Contrast, NothingSharpShinesThrough) {
  if (shinesThrough()) return;
  scene_.openKinds();
  scene_.openMenu(3);
  for (const char* title : {"Vantorel", "Menu"}) {
    auto& window = *shownWindow(title);
    const QPoint place(100, static_cast<int>(window.height() * scale) - 30);
    const auto onDesktop = picture(window);
    EXPECT_EQ(onDesktop.pixel(place), pictureOnGround(window, Ground::black, scale).pixel(place))
        << title;
  }
}

std::string settingName(const testing::TestParamInfo<Setting>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(
    , Contrast,
    testing::Values(Setting{Appearance::light, Ground::plain, "light"},
                    Setting{Appearance::light, Ground::white, "light_on_white"},
                    Setting{Appearance::light, Ground::black, "light_on_black"},
                    Setting{Appearance::dark, Ground::plain, "dark"},
                    Setting{Appearance::dark, Ground::white, "dark_on_white"},
                    Setting{Appearance::dark, Ground::black, "dark_on_black"}),
    settingName);

}  // namespace
}  // namespace vantorel
