// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QTest>

#include "chrome/VantorelPanel.h"
#include "chrome/VantorelTheme.h"
#include "panel/ClipListView.h"
#include "panel/ClipRowView.h"
#include "panel/PinButton.h"
#include "panel/SearchField.h"
#include "ui/HistoryPanelTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;

// By then the background of a row has the colour that it was to have.
constexpr Seconds fadeTime{0.15};

/// Gives the application other colours for as long as it lives.
class ApplicationPalette {
 public:
  explicit ApplicationPalette(const QPalette& palette) : before_(QApplication::palette()) {
    QApplication::setPalette(palette);
  }
  ~ApplicationPalette() { QApplication::setPalette(before_); }
  ApplicationPalette(const ApplicationPalette&) = delete;
  ApplicationPalette& operator=(const ApplicationPalette&) = delete;

 private:
  QPalette before_;
};

QPalette darkPalette() {
  QPalette palette;
  palette.setColor(QPalette::Window, QColor(40, 40, 44));
  palette.setColor(QPalette::WindowText, Qt::white);
  return palette;
}

class PanelLooks : public HistoryPanelTest {
 protected:
  [[nodiscard]] static QImage pictureOf(QWidget& widget) {
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
  }
  /// Where dark ink lies between two columns of a row's title line.
  [[nodiscard]] static bool titleHasInk(QWidget& row, int from, int to) {
    const auto image = pictureOf(row);
    for (int y = 7; y < 23; ++y) {
      for (int x = from; x < to; ++x) {
        if (qGray(image.pixel(x, y)) < 100) return true;
      }
    }
    return false;
  }
  /// The darkest pixel of a row's title line.
  [[nodiscard]] static int darkestInTitle(QWidget& row) {
    const auto image = pictureOf(row);
    int darkest = 255;
    for (int y = 7; y < 23; ++y) {
      for (int x = 80; x < 340; ++x) darkest = std::min(darkest, qGray(image.pixel(x, y)));
    }
    return darkest;
  }
  void addFile(const std::string& path) {
    store_.tick();
    store_->insert(filesItem({path}, dispatch_.now()));
  }
};

TEST_F(PanelLooks, LatinTitlesStandLeftHebrewOnesRight) {
  addTexts({"Hi", "שלום"});
  open();
  auto& latin = *rows()[0];
  auto& hebrew = *rows()[1];
  EXPECT_TRUE(titleHasInk(latin, 33, 50));
  EXPECT_FALSE(titleHasInk(latin, 200, 350));
  EXPECT_FALSE(titleHasInk(hebrew, 33, 250));
  EXPECT_TRUE(titleHasInk(hebrew, 330, 350));
}

TEST_F(PanelLooks, TitlesNeverRunIntoThePin) {
  addTexts({std::string(500, 'W')});
  open();
  EXPECT_TRUE(titleHasInk(*rows()[0], 330, 350));
  EXPECT_FALSE(titleHasInk(*rows()[0], 351, 356));
}

TEST_F(PanelLooks, AFileThatIsGoneIsFaintAndSaysSo) {
  addFile("/nonexistent/report.pdf");
  addFile("/etc/passwd");
  open();
  dispatch_.runQueued();  // the disk has answered
  const auto shown = rows();
  EXPECT_GT(darkestInTitle(*shown[1]), 90);
  EXPECT_LT(darkestInTitle(*shown[0]), 60);
  EXPECT_TRUE(shown[1]->content().metadata.starts_with("File unavailable  ·  "));
}

TEST_F(PanelLooks, TheSelectedRowIsWashedWithGoldAndHasABar) {
  addTexts({"one", "two"});
  open();
  const auto selected = pictureOf(*rows()[0]);
  const auto other = pictureOf(*rows()[1]);
  EXPECT_EQ(selected.pixel(2, 24), VantorelTheme::gold().rgba());
  EXPECT_NE(selected.pixel(200, 3), other.pixel(200, 3));
  EXPECT_EQ(other.pixel(200, 3), QColor(Qt::white).rgba());
  EXPECT_NE(other.pixel(2, 24), VantorelTheme::gold().rgba());
}

TEST_F(PanelLooks, ARowUnderThePointerIsWashed) {
  addTexts({"one", "two"});
  open();
  auto& row = *rows()[1];
  const auto before = pictureOf(row);
  QEnterEvent enter({50, 20}, {50, 20}, {50, 20});
  QApplication::sendEvent(&row, &enter);
  dispatch_.advance(fadeTime);
  EXPECT_NE(pictureOf(row).pixel(200, 3), before.pixel(200, 3));
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&row, &leave);
  dispatch_.advance(fadeTime);
  EXPECT_EQ(pictureOf(row), before);
}

TEST_F(PanelLooks, FollowsANewPaletteWhileOpen) {
  addTexts({"one"});
  open();
  const auto light = pictureOf(panel());
  EXPECT_GT(qGray(light.pixel(204, 8)), 200);
  EXPECT_EQ(searchField().palette().color(QPalette::Highlight).rgb(), VantorelTheme::gold().rgb());
  {
    const ApplicationPalette dark(darkPalette());
    QCoreApplication::processEvents();
    const auto now = pictureOf(panel());
    EXPECT_LT(qGray(now.pixel(204, 8)), 80);
    EXPECT_EQ(searchField().palette().color(QPalette::Text), QColor(Qt::white));
    EXPECT_EQ(searchField().palette().color(QPalette::Highlight).rgb(),
              VantorelTheme::gold().rgb());
  }
  QCoreApplication::processEvents();
  EXPECT_EQ(pictureOf(panel()), light);
}

TEST_F(PanelLooks, MegabytesAndControlCharactersAreShownAsALine) {
  const std::string text = "start\x01\x02\n\u202Eeno\u2069 " + std::string(20'000'000, 'x');
  ClipItem item = textItem("x", dispatch_.now());
  item.preview = text;
  store_->insert(item);
  open();
  EXPECT_TRUE(titles()[0].starts_with("start eno xxx"));
  EXPECT_TRUE(titles()[0].ends_with("…"));
}

TEST_F(PanelLooks, ARowShowsWhenItWasCopied) {
  addTexts({"one"});
  open();
  const auto& metadata = rows()[0]->content().metadata;
  EXPECT_NE(metadata.find("Today"), std::string::npos) << metadata;
  dispatch_.setNow(advanced(dispatch_.now(), Seconds(86'400)));
  controller_->hide();
  open();
  EXPECT_NE(rows()[0]->content().metadata.find("Yesterday"), std::string::npos);
}

class PanelAccessibility : public HistoryPanelTest {
 protected:
  [[nodiscard]] static QAccessibleInterface& accessible(QObject& object) {
    return *QAccessible::queryAccessibleInterface(&object);
  }
};

TEST_F(PanelAccessibility, TheListIsAListOfButtonsNamedLikeTheirRows) {
  addTexts({"one", "two"});
  open();
  auto& list = accessible(*panel().findChild<ClipListView*>());
  EXPECT_EQ(list.role(), QAccessible::List);
  auto& row = accessible(*rows()[1]);
  EXPECT_EQ(row.role(), QAccessible::Button);
  EXPECT_EQ(row.parent()->object(), list.object());
  EXPECT_EQ(row.text(QAccessible::Name).toStdString(), "two, " + rows()[1]->content().metadata);
}

TEST_F(PanelAccessibility, TheSelectedRowIsSelected) {
  addTexts({"one", "two"});
  open();
  press(Qt::Key_Down);
  EXPECT_FALSE(accessible(*rows()[0]).state().selected);
  EXPECT_TRUE(accessible(*rows()[1]).state().selected);
}

TEST_F(PanelAccessibility, PressingARowPastesIt) {
  addTexts({"one", "two"});
  open();
  auto* action = accessible(*rows()[1]).actionInterface();
  ASSERT_TRUE(action->actionNames().contains(QAccessibleActionInterface::pressAction()));
  action->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(pasted(), "two");
}

TEST_F(PanelAccessibility, ThePinSaysWhatItDoesAndWhetherItHas) {
  addTexts({"one"}, 1);
  open();
  auto& pin = accessible(*rows()[0]->findChild<PinButton*>());
  EXPECT_EQ(pin.role(), QAccessible::Button);
  EXPECT_EQ(pin.text(QAccessible::Name), QStringLiteral("Unpin"));
  EXPECT_EQ(pin.text(QAccessible::Value), QStringLiteral("Pinned"));
  pin.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_FALSE(store_->items()[0].pinned());
}

TEST_F(PanelAccessibility, TheSearchFieldHasAName) {
  addTexts({"one"});
  controller_->openSearch(target_);
  auto& field = accessible(searchField());
  EXPECT_EQ(field.role(), QAccessible::EditableText);
  EXPECT_EQ(field.text(QAccessible::Name), QStringLiteral("Search clips"));
}

TEST_F(PanelAccessibility, TheSentenceOfAnEmptyListIsRead) {
  open();
  auto& list = accessible(*panel().findChild<ClipListView*>());
  bool found = false;
  for (int i = 0; i < list.childCount(); ++i) {
    found = found || list.child(i)->text(QAccessible::Name) == QStringLiteral("No clips yet");
  }
  EXPECT_TRUE(found);
}

}  // namespace
}  // namespace vantorel
