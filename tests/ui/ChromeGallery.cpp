// Shows what windows are made of: symbols, menus, sheets, popovers and the ends of a list, for
// looking at them.
//
//   chrome_gallery --save DIRECTORY       a picture of each, over a busy background
//   --dark                                with dark colours
//   --opaque                              as without a compositor
//   --blurred                             as over a blurred background

#include <QActionGroup>
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QStyleFactory>
#include <QVariantAnimation>
#include <QWheelEvent>
#include <functional>
#include <memory>
#include <vector>

#include "chrome/CheckBox.h"
#include "chrome/ElasticScrollView.h"
#include "chrome/PopoverWindow.h"
#include "chrome/ReadableGlassView.h"
#include "chrome/SheetWindow.h"
#include "chrome/Symbols.h"
#include "chrome/VantorelMenu.h"
#include "chrome/VantorelPanel.h"
#include "chrome/VantorelTheme.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/ManualDispatch.h"

namespace {

using namespace vantorel;

struct Stage {
  ManualDispatch dispatch;
  FakeScreens screens;
  FakeAccessibilityPreferences accessibility;
  FakeWindowBackdrops backdrops;
  ChromeServices services{dispatch, screens, accessibility, &backdrops};
};

using Built = std::unique_ptr<QWidget>;

struct State {
  const char* name;
  std::function<Built(Stage&)> show;
};

/// Every symbol at the sizes it may be seen at, on the colour of windows.
class ContactSheet : public QWidget {
 public:
  ContactSheet() {
    setFixedSize(left + columnWidth * 6, rowHeight * static_cast<int>(names.size()));
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.fillRect(rect(), VantorelTheme::window(palette()));
    painter.setFont(VantorelTheme::systemFont(11));
    int y = 0;
    for (const auto& name : names) {
      painter.setPen(VantorelTheme::label(palette()));
      painter.drawText(QRect(8, y, left - 8, rowHeight), Qt::AlignVCenter,
                       QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
      int x = left;
      for (const double points : {13.0, 15.0, 16.0, 17.0, 20.0, 28.0}) {
        Symbols::draw(painter, name, QRectF(x, y, columnWidth, rowHeight), points,
                      points == 17 ? VantorelTheme::gold() : VantorelTheme::label(palette()));
        x += columnWidth;
      }
      y += rowHeight;
    }
  }

 private:
  static constexpr int left = 230;
  static constexpr int columnWidth = 44;
  static constexpr int rowHeight = 36;
  const std::vector<std::string_view> names = {"line.3.horizontal.decrease",
                                               "line.3.horizontal.decrease.circle.fill",
                                               "app",
                                               "app.fill",
                                               "pencil",
                                               "pin",
                                               "pin.fill",
                                               "text.alignleft",
                                               "photo",
                                               "film",
                                               "doc",
                                               "questionmark.circle",
                                               "magnifyingglass",
                                               "xmark.circle.fill",
                                               "checkmark.circle.fill",
                                               "exclamationmark.circle.fill"};
};

void choose(VantorelMenu& menu, const char* title) {
  auto* action = menu.addAction(QString::fromUtf8(title));
  action->setCheckable(true);
}

Built sourceMenu(Stage& stage, Qt::LayoutDirection direction) {
  auto menu = std::make_unique<VantorelMenu>(stage.accessibility, &stage.backdrops);
  menu->setLayoutDirection(direction);
  choose(*menu, "All apps");
  menu->addSeparator();
  choose(*menu, "Firefox");
  choose(*menu, "Mail && Calendar");
  choose(*menu, "דואר ופגישות");
  choose(*menu, "Terminal");
  menu->actions().at(3)->setChecked(true);
  menu->actions().at(4)->setEnabled(false);
  auto& submenu = menu->addSubmenu("Exclude");
  submenu.addAction("Inner");
  menu->addSeparator();
  menu->addAction("Delete\tCtrl+D");
  menu->popup({40, 40});
  menu->setActiveAction(menu->actions().at(2));
  return menu;
}

Built nameSheet(Stage& stage) {
  auto sheet = std::make_unique<SheetWindow>(
      SheetWindow::Question{"Rename Pin", "Choose a name for this pinned clip.", "Save", "Cancel"},
      stage.services, nullptr);
  auto* field = new QLineEdit("Home address");
  sheet->setAccessory(field);
  sheet->begin(field);
  return sheet;
}

Built alertSheet(Stage& stage) {
  auto sheet = std::make_unique<SheetWindow>(
      SheetWindow::Question{"Clear Clipboard History?",
                            "This permanently removes the entries that are kept on this computer.",
                            "Clear", "Cancel", SheetWindow::Style::warning},
      stage.services, nullptr);
  sheet->setAccessory(new CheckBox("Also remove pinned clips", nullptr));
  sheet->begin();
  return sheet;
}

Built popover(Stage& stage) {
  auto window = std::make_unique<PopoverWindow>("Preview", QSize(360, 92), 14, stage.services);
  auto* label = new QLabel("A one-line clip is shown whole.", &window->glass());
  label->setFont(VantorelTheme::systemFont(13.5));
  label->setGeometry(16, 14, 328, 22);
  stage.accessibility.setReduceMotion(true);
  window->show({100, 100, 300, 40}, PopoverEdge::right);
  return window;
}

/// A list pushed beyond one of its ends.
Built pushedList(Stage& stage, int eighthsOfDegree) {
  stage.accessibility.setReduceMotion(true);
  auto panel = std::make_unique<VantorelPanel>("Test", QSize(408, 240), 18, stage.accessibility,
                                               &stage.backdrops);
  auto* view = new ElasticScrollView(stage.dispatch, stage.accessibility, &panel->glass());
  view->setGeometry(10, 10, 388, 220);
  auto* document = new QWidget;
  document->resize(388, 49 * 12);
  for (int row = 0; row < 12; ++row) {
    auto* label = new QLabel(QStringLiteral("Row %1 of twelve").arg(row + 1), document);
    label->setGeometry(24, 49 * row, 340, 48);
  }
  view->setWidget(document);
  document->setAutoFillBackground(false);
  panel->makeKeyAndOrderFront();
  view->scrollTo(eighthsOfDegree < 0 ? 10000 : 0);
  QWheelEvent event(QPointF(50, 50), view->mapToGlobal(QPointF(50, 50)), {}, {0, eighthsOfDegree},
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(view->viewport(), &event);
  const auto fades = view->findChildren<QVariantAnimation*>();
  for (auto* fade : fades) {
    if (fade->state() == QAbstractAnimation::Running) fade->setCurrentTime(fade->duration());
  }
  return panel;
}

const std::vector<State>& states() {
  static const std::vector<State> all = {
      {"symbols",
       [](Stage& /*stage*/) -> Built {
         auto sheet = std::make_unique<ContactSheet>();
         sheet->show();
         return sheet;
       }},
      {"menu", [](Stage& stage) { return sourceMenu(stage, Qt::LeftToRight); }},
      {"menu-rtl", [](Stage& stage) { return sourceMenu(stage, Qt::RightToLeft); }},
      {"sheet", nameSheet},
      {"alert", alertSheet},
      {"popover", popover},
      {"list-top", [](Stage& stage) { return pushedList(stage, 240); }},
      {"list-end", [](Stage& stage) { return pushedList(stage, -240); }},
  };
  return all;
}

enum class Behind { sharp, blurred };

/// What a window could stand on: stripes, text and colours.
QImage background(const QSize& size, double scale, Behind behind) {
  QImage image(size * scale, QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  QPainter painter(&image);
  constexpr int stripe = 22;
  painter.fillRect(QRect({}, size), QColor(0x3b, 0x5b, 0x7a));
  for (int y = 0; y < size.height(); y += stripe) {
    painter.fillRect(0, y, size.width(), stripe / 2, QColor::fromHsv((y * 5) % 360, 120, 220));
    painter.drawText(4, y + stripe / 2 - 1,
                     QStringLiteral("The quick brown fox jumps over the lazy dog. ").repeated(4));
  }
  painter.end();
  if (behind == Behind::sharp) return image;
  constexpr int coarse = 24;
  auto blurred =
      image.scaled(image.size() / coarse, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
          .scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  blurred.setDevicePixelRatio(scale);
  return blurred;
}

void save(const State& state, const QString& file, Backdrop backdrop) {
  Stage stage;
  stage.backdrops.setAvailable(backdrop);
  const auto window = state.show(stage);
  QCoreApplication::processEvents();
  constexpr int margin = 24;
  const double scale = window->devicePixelRatioF();
  const QSize size = window->size() + QSize(2 * margin, 2 * margin);
  auto image =
      background(size, scale, backdrop == Backdrop::blurrable ? Behind::blurred : Behind::sharp);
  QPainter painter(&image);
  if (!window->mask().isEmpty()) painter.setClipRegion(window->mask().translated(margin, margin));
  // By way of a picture of its own, for a menu wipes what it is drawn on.
  QImage picture(window->size() * scale, QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  window->render(&picture, {}, {}, QWidget::DrawChildren);
  painter.drawImage(margin, margin, picture);
  painter.end();
  image.save(file);
}

QPalette darkPalette() {
  QPalette palette;
  palette.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2e));
  palette.setColor(QPalette::WindowText, QColor(0xf2, 0xf2, 0xf2));
  palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
  palette.setColor(QPalette::Text, QColor(0xf2, 0xf2, 0xf2));
  palette.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3d));
  palette.setColor(QPalette::ButtonText, QColor(0xf2, 0xf2, 0xf2));
  palette.setColor(QPalette::Highlight, QColor(0x3d, 0x6f, 0xb8));
  return palette;
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QCommandLineParser parser;
  parser.addOptions({{"save", "pictures", "directory"},
                     {"dark", "dark colours"},
                     {"opaque", "no compositor"},
                     {"blurred", "a compositor that blurs"}});
  parser.process(application);
  QString suffix;
  auto backdrop = Backdrop::translucent;
  if (parser.isSet(QStringLiteral("dark"))) {
    QApplication::setPalette(darkPalette());
    suffix += QStringLiteral("-dark");
  }
  if (parser.isSet(QStringLiteral("opaque"))) {
    backdrop = Backdrop::none;
    suffix += QStringLiteral("-opaque");
  } else if (parser.isSet(QStringLiteral("blurred"))) {
    backdrop = Backdrop::blurrable;
    suffix += QStringLiteral("-blurred");
  }
  suffix += QStringLiteral("-%1x.png").arg(application.devicePixelRatio());
  const QDir directory(parser.value(QStringLiteral("save")));
  for (const auto& state : states()) {
    save(state, directory.filePath(QString::fromUtf8(state.name) + suffix), backdrop);
  }
  return 0;
}
