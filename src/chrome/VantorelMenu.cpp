#include "chrome/VantorelMenu.h"

#include <QAction>
#include <QCoreApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>

#include "chrome/GlassDrawing.h"
#include "chrome/MenuStyle.h"
#include "chrome/ToolTipPanel.h"
#include "chrome/VantorelTheme.h"
#include "chrome/WindowGlass.h"

namespace vantorel {
namespace {

constexpr double fontPoints = 13;

/// One for all menus, which goes with the application.
MenuStyle* menuStyle() {
  static MenuStyle* const style = [] {
    auto* made = new MenuStyle;
    made->setParent(QCoreApplication::instance());
    return made;
  }();
  return style;
}

}  // namespace

QString VantorelMenu::label(std::string_view title) {
  return QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()))
      .replace(u'&', QStringLiteral("&&"));
}

VantorelMenu::VantorelMenu(const AccessibilityPreferences& accessibility,
                           const WindowBackdrops* backdrops, QWidget* parent)
    : QMenu(parent), accessibility_(accessibility), backdrops_(backdrops) {
  setStyle(menuStyle());
  setFont(VantorelTheme::systemFont(fontPoints));
  setWindowTitle(QStringLiteral("Menu"));  // without one it would have the program's name
  setWindowFlag(Qt::FramelessWindowHint);
  setWindowFlag(Qt::NoDropShadowWindowHint);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_QuitOnClose, false);
  new WindowGlass({*this, MenuStyle::cornerRadius, accessibility_, backdrops_},
                  [this](const GlassFinish& finish) {
                    finish_ = finish;
                    update();
                  });
  connect(this, &QMenu::aboutToHide, this, [this] {
    if (onClosed) onClosed();
  });
}

VantorelMenu& VantorelMenu::addSubmenu(const QString& title) {
  auto* menu = new VantorelMenu(accessibility_, backdrops_, this);
  menu->setTitle(title);
  menu->setWindowTitle(title);
  addMenu(menu);
  return *menu;
}

/// A key that stands beside a row's title chooses the row.
void VantorelMenu::keyPressEvent(QKeyEvent* event) {
  const QKeySequence pressed(event->keyCombination());
  const auto rows = actions();
  for (QAction* row : rows) {
    if (row->shortcut().isEmpty() || row->shortcut() != pressed || !row->isEnabled()) continue;
    close();
    row->trigger();
    return;
  }
  QMenu::keyPressEvent(event);
}

bool VantorelMenu::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QMenu::event(event);
  auto* row = actionAt(static_cast<const QHelpEvent*>(event)->pos());
  // A row that has nothing to say would give its title.
  const bool speaks = row != nullptr && row->toolTip() != QAction(row->text()).toolTip();
  if (speaks) ToolTipPanel::show(*this, actionGeometry(row), row->toolTip());
  return true;
}

void VantorelMenu::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    GlassDrawing::draw(painter, rect(), MenuStyle::cornerRadius, finish_, palette());
  }
  QMenu::paintEvent(event);
}

}  // namespace vantorel
