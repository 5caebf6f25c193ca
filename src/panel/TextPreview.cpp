// SPDX-License-Identifier: MIT
#include "panel/TextPreview.h"

#include <QAbstractTextDocumentLayout>
#include <QLinearGradient>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextFrame>
#include <algorithm>
#include <cmath>
#include <utility>

#include "chrome/InvisibleScroller.h"
#include "chrome/VantorelTheme.h"
#include "panel/PreviewGeometry.h"

namespace vantorel {
namespace {

constexpr double tabDistance = 28;
constexpr double endPoints = 11.5;
constexpr double endMargin = 10;
constexpr double leastFade = 24;

/// So much text fills every preview, whatever it is made of.
constexpr int maxPiecesMeasured = 4;

void configure(QTextDocument& document, bool rtl) {
  document.setUndoRedoEnabled(false);
  document.setDocumentMargin(0);
  document.setDefaultFont(VantorelTheme::systemFont(PreviewGeometry::textFontPoints));
  QTextOption option(rtl ? Qt::AlignRight | Qt::AlignAbsolute : Qt::AlignLeft);
  option.setTextDirection(rtl ? Qt::RightToLeft : Qt::LeftToRight);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTabStopDistance(tabDistance);
  document.setDefaultTextOption(option);
}

/// Lines of scripts whose fonts are lower stand as far apart as the empty ones between them.
QTextBlockFormat lineFormat(const QTextDocument& document) {
  QTextBlockFormat lines;
  lines.setLineHeight(QFontMetricsF(document.defaultFont()).lineSpacing(),
                      QTextBlockFormat::MinimumHeight);
  return lines;
}

void appendPiece(QTextDocument& document, const std::string& piece, bool first) {
  QTextCursor cursor(&document);
  cursor.movePosition(QTextCursor::End);
  if (first) {
    cursor.setBlockFormat(lineFormat(document));
  } else {
    cursor.insertBlock();
  }
  cursor.insertText(QString::fromStdString(piece));
}

}  // namespace

double TextPreview::measuredHeight(PreviewText text) {
  QTextDocument document;
  configure(document, text.isRTL());
  document.setTextWidth(PreviewGeometry::textLineWidth);
  for (int pieces = 0; pieces < maxPiecesMeasured; ++pieces) {
    const auto piece = text.nextPiece();
    if (!piece) break;
    appendPiece(document, *piece, pieces == 0);
    if (document.size().height() > PreviewGeometry::maxTextHeight) break;
  }
  return document.size().height();
}

TextPreview::TextPreview(PreviewText text, Dispatch& dispatch, QWidget* parent)
    : QTextEdit(parent), text_(std::move(text)), dispatch_(dispatch) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse);
  setContextMenuPolicy(Qt::NoContextMenu);
  setFocusPolicy(Qt::NoFocus);
  setFrameShape(QFrame::NoFrame);
  viewport()->setAutoFillBackground(false);
  setVerticalScrollBar(new InvisibleScroller(this));
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setAccessibleName(QStringLiteral("Preview"));
  tint();
  configure(*document(), text_.isRTL());
  auto inset = document()->rootFrame()->frameFormat();
  inset.setLeftMargin(PreviewGeometry::textInsetX);
  inset.setRightMargin(PreviewGeometry::textInsetX);
  inset.setTopMargin(PreviewGeometry::textInsetY - PreviewGeometry::rim);
  inset.setBottomMargin(PreviewGeometry::textInsetY - PreviewGeometry::rim);
  document()->rootFrame()->setFrameFormat(inset);
  connect(verticalScrollBar(), &QScrollBar::rangeChanged, viewport(),
          qOverload<>(&QWidget::update));
  appendInTurns();
}

void TextPreview::appendInTurns() {
  const auto piece = text_.nextPiece();
  if (!piece) {
    if (text_.goesOn()) appendEnd();
    return;
  }
  const bool first = !std::exchange(begun_, true);
  appendPiece(*document(), *piece, first);
  if (first) moveCursor(QTextCursor::Start);
  dispatch_.async(life_.guard([this] { appendInTurns(); }));
}

void TextPreview::appendEnd() {
  QTextBlockFormat block;
  block.setLayoutDirection(Qt::LeftToRight);
  block.setAlignment(Qt::AlignLeft);
  block.setTopMargin(endMargin);
  QTextCursor cursor(document());
  cursor.movePosition(QTextCursor::End);
  cursor.insertBlock(block);
  cursor.insertText(QStringLiteral("The preview ends here; the clip goes on."));
  ended_ = true;
  styleEnd();
}

void TextPreview::styleEnd() {
  if (!ended_) return;
  QTextCharFormat format;
  format.setFont(VantorelTheme::systemFont(endPoints, QFont::Medium));
  format.setForeground(VantorelTheme::secondaryLabel(palette()));
  QTextCursor line(document()->lastBlock());
  line.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
  line.setCharFormat(format);
}

/// Where text begins to fade, while there is more below: the last line is either seen whole, with
/// its foot a little fainter, or is gone before it would be cut.
std::optional<double> TextPreview::fadeStart() const {
  const auto* bar = verticalScrollBar();
  if (bar->maximum() - bar->value() <= PreviewGeometry::textInsetY) return std::nullopt;
  const double bottom = viewport()->height();
  const auto last = cursorForPosition(QPoint(viewport()->width() / 2, viewport()->height() - 1));
  const auto block = last.block();
  const auto line = block.layout()->lineForTextPosition(last.positionInBlock());
  if (!line.isValid()) return bottom - leastFade;
  const double top =
      document()->documentLayout()->blockBoundingRect(block).top() + line.y() - bar->value();
  return std::min(top, bottom - leastFade);
}

void TextPreview::paintEvent(QPaintEvent* event) {
  QTextEdit::paintEvent(event);
  const auto start = fadeStart();
  if (!start) return;
  const double bottom = viewport()->height();
  const QColor glass = VantorelTheme::window(palette());
  QColor nothing = glass;
  nothing.setAlpha(0);
  QLinearGradient fade(0, *start, 0, bottom);
  fade.setColorAt(0, nothing);
  fade.setColorAt(1, glass);
  // The round corners of the glass are beside the text.
  constexpr double inset = PreviewGeometry::textInsetX - 1;
  QPainter painter(viewport());
  painter.fillRect(
      QRectF(inset, *start, viewport()->width() - 2 * inset, std::ceil(bottom - *start)), fade);
}

void TextPreview::mousePressEvent(QMouseEvent* event) {
  // A selection that is pressed would be dragged out, which waits for wherever it is dropped.
  if (textCursor().hasSelection()) setTextCursor(cursorForPosition(event->pos()));
  QTextEdit::mousePressEvent(event);
}

/// The text alone: how it is set here is no part of it.
QMimeData* TextPreview::createMimeDataFromSelection() const {
  auto* marked = new QMimeData;
  marked->setText(textCursor().selection().toPlainText());
  return marked;
}

void TextPreview::changeEvent(QEvent* event) {
  QTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) tint();
  // The base class has given the text the size of the window's own font.
  if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange) {
    applyFont();
  }
}

void TextPreview::applyFont() {
  document()->setDefaultFont(VantorelTheme::systemFont(PreviewGeometry::textFontPoints));
  const auto format = lineFormat(*document());
  for (auto block = document()->begin(); block.isValid(); block = block.next()) {
    if (block.blockFormat().lineHeightType() != QTextBlockFormat::MinimumHeight) continue;
    QTextCursor(block).mergeBlockFormat(format);
  }
  styleEnd();
}

void TextPreview::tint() {
  QPalette colors = palette();
  colors.setColor(QPalette::Text, VantorelTheme::label(colors));
  VantorelTheme::setSelectionColors(colors);
  if (colors == palette()) return;
  setPalette(colors);
  styleEnd();
}

}  // namespace vantorel
