// SPDX-License-Identifier: MIT
#include "app/PolicyTextView.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextFrame>

#include "app/TextBlock.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double textPoints = 13;
constexpr double headingPoints = 14;
constexpr double linePitch = 19;
constexpr int sideInset = 10;
constexpr int endInset = 8;
constexpr int scrollerWidth = 28;
constexpr QChar bullet(u'•');

enum class LineKind { heading, item, text, gap };

LineKind kindOf(const QStringList& lines, qsizetype index) {
  const auto& line = lines[index];
  if (line.isEmpty()) return LineKind::gap;
  if (line.startsWith(bullet)) return LineKind::item;
  const bool first = index == 0 || lines[index - 1].isEmpty();
  const bool alone = index + 1 == lines.size() || lines[index + 1].isEmpty();
  return first && !alone ? LineKind::heading : LineKind::text;
}

QTextBlockFormat blockFormat(LineKind kind, Qt::LayoutDirection direction) {
  constexpr double itemGap = 3;
  constexpr double headingGap = 4;
  constexpr double textGap = 5;
  QTextBlockFormat format;
  const bool toTheLeft = direction == Qt::RightToLeft;
  format.setLayoutDirection(direction);
  format.setAlignment((toTheLeft ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute);
  if (kind != LineKind::gap) format.setLineHeight(linePitch, QTextBlockFormat::FixedHeight);
  if (kind == LineKind::item) {
    // The lines of an item hang below its first word, not below its dot.
    const double itemIndent =
        QFontMetricsF(documentFont(textPoints)).horizontalAdvance(bullet + u' ');
    (format.*(toTheLeft ? &QTextBlockFormat::setRightMargin : &QTextBlockFormat::setLeftMargin))(
        itemIndent);
    format.setTextIndent(-itemIndent);
    format.setTopMargin(itemGap);
  }
  if (kind == LineKind::text) format.setBottomMargin(textGap);
  if (kind == LineKind::heading) format.setBottomMargin(headingGap);
  return format;
}

QTextCharFormat charFormat(LineKind kind) {
  constexpr double gapPoints = 7;
  QTextCharFormat format;
  format.setFont(kind == LineKind::heading
                     ? documentFont(headingPoints, QFont::Bold)
                     : documentFont(kind == LineKind::gap ? gapPoints : textPoints));
  return format;
}

/// How far a key moves the text.
QAbstractSlider::SliderAction movementOf(const QKeyEvent& event) {
  if (event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)) {
    return QAbstractSlider::SliderNoAction;
  }
  switch (event.key()) {
    case Qt::Key_Up:
      return QAbstractSlider::SliderSingleStepSub;
    case Qt::Key_Down:
      return QAbstractSlider::SliderSingleStepAdd;
    case Qt::Key_PageUp:
      return QAbstractSlider::SliderPageStepSub;
    case Qt::Key_PageDown:
    case Qt::Key_Space:
      return QAbstractSlider::SliderPageStepAdd;
    case Qt::Key_Home:
      return QAbstractSlider::SliderToMinimum;
    case Qt::Key_End:
      return QAbstractSlider::SliderToMaximum;
    default:
      return QAbstractSlider::SliderNoAction;
  }
}

}  // namespace

PolicyTextView::PolicyTextView(const QString& text, Qt::LayoutDirection direction, QWidget* parent)
    : QTextEdit(parent) {
  setUp();
  showText(text, direction);
  styleScrollBar();
}

void PolicyTextView::setUp() {
  setReadOnly(true);
  setFrameShape(QFrame::NoFrame);
  setFont(documentFont(textPoints));
  setTextInteractionFlags(Qt::TextSelectableByMouse);
  setContextMenuPolicy(Qt::NoContextMenu);
  setFocusPolicy(Qt::StrongFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  viewport()->setAutoFillBackground(false);
}

void PolicyTextView::showText(const QString& text, Qt::LayoutDirection direction) {
  document()->setDocumentMargin(0);
  const auto lines = text.trimmed().split(u'\n');
  QTextCursor cursor(document());
  for (qsizetype i = 0; i < lines.size(); ++i) {
    const auto kind = kindOf(lines, i);
    if (i > 0) cursor.insertBlock();
    cursor.setBlockFormat(blockFormat(kind, direction));
    cursor.setBlockCharFormat(charFormat(kind));
    cursor.insertText(lines[i], charFormat(kind));
  }
  auto frame = document()->rootFrame()->frameFormat();
  frame.setMargin(0);
  frame.setLeftMargin(sideInset);
  frame.setRightMargin(sideInset);
  frame.setTopMargin(endInset);
  frame.setBottomMargin(endInset);
  document()->rootFrame()->setFrameFormat(frame);
  moveCursor(QTextCursor::Start);
}

/// A slim thumb without a groove, in the colour of the text.
void PolicyTextView::styleScrollBar() {
  const auto rgba = [this](double alpha) {
    return VantorelTheme::labelWash(palette(), alpha).name(QColor::HexArgb);
  };
  constexpr double thumbAlpha = 0.26;
  constexpr double hoverAlpha = 0.42;
  constexpr double pressedAlpha = 0.55;
  verticalScrollBar()->setStyleSheet(
      QStringLiteral("QScrollBar:vertical { background: transparent; width: %1px; border: none; }"
                     "QScrollBar::handle:vertical { background: %2; border-radius: 3px;"
                     " margin: 2px 11px; min-height: 36px; }"
                     "QScrollBar::handle:vertical:hover { background: %3; }"
                     "QScrollBar::handle:vertical:pressed { background: %4; }"
                     "QScrollBar::add-line, QScrollBar::sub-line { height: 0; width: 0; }"
                     "QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }")
          .arg(scrollerWidth)
          .arg(rgba(thumbAlpha), rgba(hoverAlpha), rgba(pressedAlpha)));
}

// Nothing is written here, so the arrows move the text and not a cursor in it.
void PolicyTextView::keyPressEvent(QKeyEvent* event) {
  const auto movement = movementOf(*event);
  if (movement == QAbstractSlider::SliderNoAction) return QTextEdit::keyPressEvent(event);
  verticalScrollBar()->triggerAction(movement);
  event->accept();
}

// A hairline says that the text goes on beyond an edge.
void PolicyTextView::paintEvent(QPaintEvent* event) {
  constexpr double hairlineAlpha = 0.13;
  QTextEdit::paintEvent(event);
  const auto* scroller = verticalScrollBar();
  QPainter painter(viewport());
  const auto color = VantorelTheme::labelWash(palette(), hairlineAlpha);
  const int bottom = viewport()->height() - 1;
  if (scroller->value() > scroller->minimum()) {
    painter.fillRect(0, 0, viewport()->width(), 1, color);
  }
  if (scroller->value() < scroller->maximum()) {
    painter.fillRect(0, bottom, viewport()->width(), 1, color);
  }
}

void PolicyTextView::scrollContentsBy(int dx, int dy) {
  QTextEdit::scrollContentsBy(dx, dy);
  viewport()->update();  // the hairlines stay where they are
}

void PolicyTextView::changeEvent(QEvent* event) {
  QTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) styleScrollBar();
}

}  // namespace vantorel
