// SPDX-License-Identifier: MIT
#include "chrome/MenuStyle.h"

#include <QPainter>
#include <QStyleOptionMenuItem>
#include <cmath>

#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr int rowHeight = 26;
constexpr int separatorHeight = 9;
constexpr int margin = 5;      // around all rows
constexpr int markSpace = 24;  // before the titles: check marks
constexpr int trailing = 28;   // behind them: arrows of submenus
constexpr int shortcutGap = 24;
constexpr double chosenRadius = 6;
constexpr double separatorAlpha = 0.12;

/// Faint enough for text of the usual colour to be read on it, on light and on dark.
QColor chosenWash() {
  constexpr float alpha = 0.34F;
  QColor wash = VantorelTheme::gold();
  wash.setAlphaF(alpha);
  return wash;
}

bool isSubmenu(const QStyleOptionMenuItem& item) {
  return item.menuItemType == QStyleOptionMenuItem::SubMenu;
}

/// The rectangle at the side where reading begins, or at the other one, `width` wide.
QRectF atStart(const QRectF& row, double width, Qt::LayoutDirection direction) {
  return direction == Qt::LeftToRight ? QRectF(row.left(), row.top(), width, row.height())
                                      : QRectF(row.right() - width, row.top(), width, row.height());
}

QRectF atEnd(const QRectF& row, double width, Qt::LayoutDirection direction) {
  return atStart(row, width, direction == Qt::LeftToRight ? Qt::RightToLeft : Qt::LeftToRight);
}

QPen glyphPen(const QColor& color) {
  constexpr double weight = 1.7;
  return {color, weight, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void drawCheck(QPainter& painter, const QRectF& area, const QColor& color) {
  const QPointF middle = area.center();
  painter.setPen(glyphPen(color));
  const QPointF points[] = {middle + QPointF(-3.6, 0.2), middle + QPointF(-1.1, 2.9),
                            middle + QPointF(3.9, -3.4)};
  painter.drawPolyline(points, 3);
}

void drawArrow(QPainter& painter, const QRectF& area, Qt::LayoutDirection direction,
               const QColor& color) {
  const QPointF middle = area.center();
  const double forward = direction == Qt::LeftToRight ? 1 : -1;
  painter.setPen(glyphPen(color));
  const QPointF points[] = {middle + QPointF(-1.8 * forward, -3.6),
                            middle + QPointF(1.8 * forward, 0),
                            middle + QPointF(-1.8 * forward, 3.6)};
  painter.drawPolyline(points, 3);
}

void drawSeparator(QPainter& painter, const QStyleOptionMenuItem& item) {
  const double middle = std::floor(item.rect.center().y());
  painter.fillRect(
      QRectF(item.rect.left() + markSpace / 2.0, middle, item.rect.width() - markSpace, 1),
      VantorelTheme::labelWash(item.palette, separatorAlpha));
}

void drawRow(QPainter& painter, const QStyleOptionMenuItem& item) {
  const bool enabled = (item.state & QStyle::State_Enabled) != 0;
  const bool chosen = enabled && (item.state & QStyle::State_Selected) != 0;
  const QRectF row = item.rect;
  painter.setRenderHint(QPainter::Antialiasing);
  if (chosen) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(chosenWash());
    painter.drawRoundedRect(row, chosenRadius, chosenRadius);
  }
  const QColor color =
      enabled ? VantorelTheme::label(item.palette) : VantorelTheme::tertiaryLabel(item.palette);
  if (item.checked) drawCheck(painter, atStart(row, markSpace, item.direction), color);
  if (isSubmenu(item))
    drawArrow(painter, atEnd(row, trailing, item.direction), item.direction, color);

  const auto parts = item.text.split(QLatin1Char('\t'));
  painter.setFont(item.font);
  painter.setPen(color);
  painter.setLayoutDirection(item.direction);
  const bool forwards = item.direction == Qt::LeftToRight;
  const QRectF text = row.adjusted(forwards ? markSpace : trailing / 2.0, 0,
                                   forwards ? -trailing / 2.0 : -markSpace, 0);
  constexpr int line = Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextHideMnemonic;
  painter.drawText(text, line | Qt::AlignLeading, parts.first());
  if (parts.size() < 2) return;
  painter.setPen(enabled ? VantorelTheme::secondaryLabel(item.palette) : color);
  painter.drawText(text, line | Qt::AlignTrailing, parts.last());
}

}  // namespace

MenuStyle::MenuStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

int MenuStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
  switch (metric) {
    case PM_MenuPanelWidth:
    case PM_MenuTearoffHeight:
      return 0;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
      return margin;
    case PM_SubMenuOverlap:
      return -2;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int MenuStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* returned) const {
  switch (hint) {
    case SH_Menu_MouseTracking:
    case SH_Menu_Scrollable:
      return 1;
    case SH_Menu_FlashTriggeredItem:
    case SH_UnderlineShortcut:
      return 0;
    default:
      return QProxyStyle::styleHint(hint, option, widget, returned);
  }
}

QSize MenuStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                  const QSize& contents, const QWidget* widget) const {
  const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
  if (type != CT_MenuItem || item == nullptr) {
    return QProxyStyle::sizeFromContents(type, option, contents, widget);
  }
  if (item->menuItemType == QStyleOptionMenuItem::Separator) return {markSpace, separatorHeight};
  const auto parts = item->text.split(QLatin1Char('\t'));
  const QFontMetrics metrics(item->font);
  int width = metrics.boundingRect(QRect(), Qt::TextHideMnemonic, parts.first()).width();
  if (parts.size() > 1) width += shortcutGap + metrics.horizontalAdvance(parts.last());
  return {markSpace + width + trailing, rowHeight};
}

void MenuStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
  if (element == CE_MenuEmptyArea) return;
  if (element != CE_MenuItem || item == nullptr) {
    QProxyStyle::drawControl(element, option, painter, widget);
    return;
  }
  painter->save();
  if (item->menuItemType == QStyleOptionMenuItem::Separator) {
    drawSeparator(*painter, *item);
  } else {
    drawRow(*painter, *item);
  }
  painter->restore();
}

void MenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
  if (element == PE_PanelMenu || element == PE_FrameMenu) return;  // the menu draws its own glass
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

}  // namespace vantorel
