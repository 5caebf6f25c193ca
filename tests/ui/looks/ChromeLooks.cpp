// SPDX-License-Identifier: MIT
// What windows are made of: symbols, menus, and the ends of a list.

#include <QApplication>
#include <QLabel>
#include <QPainter>
#include <QVariantAnimation>
#include <QWheelEvent>
#include <functional>
#include <memory>
#include <vector>

#include "chrome/ElasticScrollView.h"
#include "chrome/Symbols.h"
#include "chrome/VantorelMenu.h"
#include "chrome/VantorelPanel.h"
#include "chrome/VantorelTheme.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/ManualDispatch.h"
#include "ui/looks/Look.h"

namespace vantorel {
namespace {

struct Stage {
  ManualDispatch dispatch;
  FakeAccessibilityPreferences accessibility;
  FakeWindowBackdrops backdrops;
  std::unique_ptr<QWidget> window;
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

std::unique_ptr<QWidget> sourceMenu(Stage& stage, Qt::LayoutDirection direction) {
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

/// A list pushed beyond one of its ends.
std::unique_ptr<QWidget> pushedList(Stage& stage, int eighthsOfDegree) {
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

Look look(const char* name, std::function<std::unique_ptr<QWidget>(Stage&)> build) {
  return {name, [build = std::move(build)]() -> std::shared_ptr<void> {
            auto stage = std::make_shared<Stage>();
            stage->accessibility.setReduceMotion(true);
            stage->window = build(*stage);
            return stage;
          }};
}

std::unique_ptr<QWidget> contactSheet(Stage& /*stage*/) {
  auto sheet = std::make_unique<ContactSheet>();
  sheet->show();
  return sheet;
}

}  // namespace

std::vector<Look> chromeLooks() {
  return {
      look("symbols", contactSheet),
      look("menu", [](Stage& stage) { return sourceMenu(stage, Qt::LeftToRight); }),
      look("menu-from-the-right", [](Stage& stage) { return sourceMenu(stage, Qt::RightToLeft); }),
      look("list-top", [](Stage& stage) { return pushedList(stage, 240); }),
      look("list-end", [](Stage& stage) { return pushedList(stage, -240); }),
  };
}

std::vector<Look> allLooks() {
  std::vector<Look> all = panelLooks();
  for (const auto& more : {panelWindowLooks(), windowLooks(), chromeLooks()}) {
    all.insert(all.end(), more.begin(), more.end());
  }
  return all;
}

}  // namespace vantorel
