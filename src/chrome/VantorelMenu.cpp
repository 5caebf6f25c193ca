#include "chrome/VantorelMenu.h"

#include <QCoreApplication>
#include <QPainter>

#include "chrome/GlassDrawing.h"
#include "chrome/MenuStyle.h"
#include "chrome/VantorelTheme.h"

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

VantorelMenu::VantorelMenu(const AccessibilityPreferences& accessibility,
                           const WindowBackdrops* backdrops, QWidget* parent)
    : QMenu(parent), accessibility_(accessibility), backdrops_(backdrops) {
  setStyle(menuStyle());
  setFont(VantorelTheme::systemFont(fontPoints));
  setWindowFlag(Qt::FramelessWindowHint);
  setWindowFlag(Qt::NoDropShadowWindowHint);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_QuitOnClose, false);
  setToolTipsVisible(true);
  connect(this, &QMenu::aboutToHide, this, [this] {
    if (onClosed) onClosed();
  });
}

VantorelMenu& VantorelMenu::addSubmenu(const QString& title) {
  auto* menu = new VantorelMenu(accessibility_, backdrops_, this);
  menu->setTitle(title);
  addMenu(menu);
  return *menu;
}

void VantorelMenu::showEvent(QShowEvent* event) {
  finish_ = glassFinish(accessibility_, backdrops_);
  applyOutline();
  QMenu::showEvent(event);
}

void VantorelMenu::resizeEvent(QResizeEvent* event) {
  QMenu::resizeEvent(event);
  applyOutline();
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

void VantorelMenu::applyOutline() {
  if (finish_.outline == GlassFinish::Outline::shaped) {
    setMask(GlassDrawing::outline(size(), MenuStyle::cornerRadius));
  } else if (!mask().isEmpty()) {
    clearMask();
  }
}

}  // namespace vantorel
