// SPDX-License-Identifier: MIT
#include "chrome/SheetWindow.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "chrome/AccessibleRole.h"
#include "chrome/FocusedButton.h"
#include "chrome/Geometry.h"
#include "chrome/PushButton.h"
#include "chrome/ReadableGlassView.h"
#include "chrome/VantorelTheme.h"
#include "chrome/WindowGlass.h"
#include "chrome/WorkspaceWindows.h"

namespace vantorel {
namespace {

constexpr double cornerRadius = 14;
constexpr int margin = 20;
constexpr int belowTop = 34;  // of the window that the sheet is attached to
constexpr double messagePoints = 13.5;
constexpr double informativePoints = 12;

QLabel* wrappedLabel(const QString& text, double points, QFont::Weight weight) {
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setFont(VantorelTheme::systemFont(points, weight));
  label->setWordWrap(true);
  label->setFixedWidth(SheetWindow::contentWidth);
  return label;
}

/// `start` moved so that `length` fits into the area; its beginning counts more than its end.
double kept(double start, double length, double areaStart, double areaLength) {
  return std::max(areaStart, std::min(start, areaStart + areaLength - length));
}

}  // namespace

SheetWindow::SheetWindow(const Question& question, const ChromeServices& services,
                         QWidget* attachedTo)
    : QWidget(attachedTo, (attachedTo != nullptr ? Qt::Dialog : Qt::Tool) |
                              Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      services_(services),
      style_(question.style),
      attachedTo_(attachedTo),
      glass_(new ReadableGlassView(cornerRadius, this)),
      column_(new QVBoxLayout(glass_)) {
  setAccessibleRole(*this, QAccessible::Dialog);
  setWindowTitle(question.message);
  setAccessibleName(question.message);
  setAccessibleDescription(question.informativeText);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_QuitOnClose, false);
  setFocusPolicy(Qt::ClickFocus);
  if (attachedTo != nullptr) setWindowModality(Qt::WindowModal);
  column_->setContentsMargins(margin, margin, margin, margin - 2);
  constexpr int spacing = 8;
  column_->setSpacing(spacing);
  addText(question);
  addButtons(question);
  tintText();
  new WindowGlass({*this, cornerRadius, services_.accessibility, services_.backdrops},
                  [this](const GlassFinish& finish) { glass_->setFinish(finish); });
  if (attachedTo != nullptr) attachedTo->installEventFilter(this);
}

void SheetWindow::addText(const Question& question) {
  message_ = wrappedLabel(question.message, messagePoints, QFont::DemiBold);
  column_->addWidget(message_);
  if (question.informativeText.isEmpty()) return;
  informativeText_ = wrappedLabel(question.informativeText, informativePoints, QFont::Normal);
  column_->addWidget(informativeText_);
}

void SheetWindow::addButtons(const Question& question) {
  constexpr int above = 10;
  auto* row = new QHBoxLayout;
  row->setContentsMargins(0, above, 0, 0);
  row->setSpacing(column_->spacing());
  using enum PushButton::Prominence;
  const bool warns = question.style == Style::warning;
  auto* cancel = new PushButton(question.cancelTitle, glass_, warns ? primary : standard);
  auto* accept = new PushButton(question.acceptTitle, glass_, warns ? standard : primary);
  cancel_ = cancel;
  connect(cancel, &QPushButton::clicked, this, [this] { end(Answer::cancelled); });
  connect(accept, &QPushButton::clicked, this, [this] { end(Answer::accepted); });
  row->addStretch();
  row->addWidget(cancel);
  row->addWidget(accept);
  column_->addLayout(row);
  // Tab goes on from the accessory to what Return does.
  setTabOrder(accept, cancel);
  if (warns) accept->setTint(QColor::fromRgbF(0.85F, 0.25F, 0.2F), {});
}

void SheetWindow::setAccessory(QWidget* accessory) {
  column_->insertWidget(column_->count() - 1, accessory);
}

void SheetWindow::begin(QWidget* firstResponder) {
  column_->activate();
  setFixedSize(column_->sizeHint());
  place();
  open_ = true;
  // Left to itself the focus would go to a button that Return does not mean.
  if (firstResponder == nullptr && style_ == Style::warning) firstResponder = cancel_;
  (firstResponder != nullptr ? firstResponder : this)->setFocus(Qt::OtherFocusReason);
  if (attachedTo_ == nullptr) showOnAllWorkspaces(*this, services_.spaces);
  show();
  raise();
  activateWindow();
}

void SheetWindow::end(Answer answer) {
  if (!open_) return;
  open_ = false;
  dismiss(*this);
  const auto finished = onFinished;  // which may destroy this
  if (finished) finished(answer);
}

void SheetWindow::place() {
  if (attachedTo_ == nullptr) {
    const auto screen = screenUnderMouse(services_.screens);
    if (!screen) return;
    const Rect& area = screen->visibleFrame;
    move(toQPoint({area.midX() - width() / 2.0, area.midY() - height() / 2.0}));
    return;
  }
  const Rect window = toRect(attachedTo_->geometry());
  const Rect wanted{window.midX() - width() / 2.0, window.y + belowTop,
                    static_cast<double>(width()), static_cast<double>(height())};
  const auto screen = screenNear(services_.screens, {window.midX(), window.midY()});
  const Rect area = screen ? screen->visibleFrame : wanted;
  move(toQPoint({kept(wanted.x, wanted.width, area.x, area.width),
                 kept(wanted.y, wanted.height, area.y, area.height)}));
}

/// Goes with its window and stays at its place over it.
bool SheetWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == attachedTo_ && open_) {
    const auto type = event->type();
    if (type == QEvent::Hide && !event->spontaneous()) end(Answer::cancelled);
    if (type == QEvent::Move || type == QEvent::Resize) place();
  }
  return false;
}

void SheetWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) return end(Answer::cancelled);
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (auto* button = focusedButton(*this)) return button->click();
    if (style_ == Style::standard) end(Answer::accepted);
    return;
  }
  QWidget::keyPressEvent(event);
}

void SheetWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  end(Answer::cancelled);
}

void SheetWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && message_ != nullptr) tintText();
}

void SheetWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  glass_->setGeometry(rect());
}

void SheetWindow::tintText() {
  VantorelTheme::setTextColor(*message_, VantorelTheme::label(palette()));
  if (informativeText_ != nullptr) {
    VantorelTheme::setTextColor(*informativeText_, VantorelTheme::secondaryLabel(palette()));
  }
}

}  // namespace vantorel
