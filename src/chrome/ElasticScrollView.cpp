// SPDX-License-Identifier: MIT
#include "chrome/ElasticScrollView.h"

#include <QApplication>
#include <QPointingDevice>
#include <QVariantAnimation>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "chrome/DedicationLabel.h"
#include "chrome/InvisibleScroller.h"
#include "chrome/RubberBand.h"
#include "chrome/WheelTurn.h"

namespace vantorel {
namespace {

constexpr int slideMilliseconds = 140;
constexpr int pushMilliseconds = 70;
constexpr int returnMilliseconds = 280;
constexpr Seconds heldFor{0.12};
constexpr int dedicationBottom = 7;

/// On Wayland a wheel is said to be of the seat's touchpad, of which only phases are.
bool isOfFingers(const QPointingDevice& device) {
  using Type = QInputDevice::DeviceType;
  if (QGuiApplication::platformName() == QLatin1String("wayland")) return false;
  return device.type() == Type::TouchPad || device.type() == Type::TouchScreen ||
         isTouchpad(device.name().toStdString());
}

/// Only who tells when a finger is put down and lifted knows of pixels; elsewhere what is reported
/// as such depends on the driver.
WheelReport reportOf(const QWheelEvent& event) {
  const bool hasPhases = event.phase() != Qt::NoScrollPhase;
  return {.eighths = static_cast<double>(event.angleDelta().y()),
          .pixels = hasPhases ? static_cast<double>(event.pixelDelta().y()) : 0,
          .isFinger = hasPhases || isOfFingers(*event.pointingDevice())};
}

}  // namespace

ElasticScrollView::ElasticScrollView(Dispatch& dispatch,
                                     const AccessibilityPreferences& accessibility, QWidget* parent)
    : QScrollArea(parent),
      dispatch_(dispatch),
      accessibility_(accessibility),
      dedication_(new DedicationLabel(viewport())),
      movement_(new QVariantAnimation(this)),
      sliding_(new QVariantAnimation(this)) {
  setVerticalScrollBar(new InvisibleScroller(this));
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameShape(QFrame::NoFrame);
  viewport()->setAutoFillBackground(false);
  movement_->setEasingCurve(QEasingCurve::OutQuad);
  connect(movement_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { paintDisplaced(value.toDouble()); });
  sliding_->setEasingCurve(QEasingCurve::OutQuad);
  connect(sliding_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    // At rest it tells of values that only stand between one course and the next.
    if (sliding_->state() != QAbstractAnimation::Running) return;
    verticalScrollBar()->setValue(static_cast<int>(std::lround(value.toDouble())));
  });
}

ElasticScrollView::~ElasticScrollView() = default;

double ElasticScrollView::offset() const { return verticalScrollBar()->value(); }

void ElasticScrollView::scrollTo(double offset) {
  sliding_->stop();
  rest_ = 0;
  verticalScrollBar()->setValue(static_cast<int>(std::lround(offset)));
}

void ElasticScrollView::wheelEvent(QWheelEvent* event) {
  const auto turn = wheelTurn(reportOf(*event), QApplication::wheelScrollLines(), measures_.line);
  RubberBand::Push push;
  push.delta = turn.distance;
  push.before = destination();
  if (turn.isStride) {
    slideTo(push.before - turn.distance, slideMilliseconds);
  } else {
    follow(-turn.distance);
  }
  event->accept();  // the turn was meant for the list, even at its end
  push.after = destination();
  if (widget() == nullptr) return;
  if (fits()) letGoLater();
  if (sliding_->state() == QAbstractAnimation::Running) return;
  push.viewHeight = viewport()->height();
  push.documentHeight = widget()->height();
  const auto bounce = RubberBand::bounce(push);
  if (!bounce) return;
  applyRubberBand(RubberBand::displaced(rubberBandOffset_, *bounce));
  placeDedication();
  if (bounce->atEnd) dedication_->raise();
  showDedication(bounce->atEnd);
}

/// A stride that is under way is cut short, for the finger is where the list is now.
void ElasticScrollView::follow(double distance) {
  sliding_->stop();
  auto* bar = verticalScrollBar();
  const double goal =
      std::clamp<double>(offset() + rest_ + distance, bar->minimum(), bar->maximum());
  bar->setValue(static_cast<int>(std::lround(goal)));
  rest_ = goal - offset();
}

bool ElasticScrollView::fits() const {
  return widget()->height() - measures_.endSpace <= viewport()->height();
}

/// Where scrolling will have come to.
double ElasticScrollView::destination() const {
  const bool slides = sliding_->state() == QAbstractAnimation::Running;
  return slides ? sliding_->endValue().toDouble() : offset() + rest_;
}

void ElasticScrollView::slideTo(double offset, int milliseconds) {
  const auto* bar = verticalScrollBar();
  const double goal = std::clamp<double>(offset, bar->minimum(), bar->maximum());
  if (accessibility_.reduceMotion() || goal == this->offset()) return scrollTo(goal);
  sliding_->stop();
  rest_ = 0;
  sliding_->setStartValue(this->offset());
  sliding_->setEndValue(goal);
  sliding_->setDuration(milliseconds);
  sliding_->start();
}

void ElasticScrollView::applyRubberBand(double offset) {
  rubberBandOffset_ = offset;
  animateTo(offset, pushMilliseconds);
  letGoLater();
}

/// Each push holds the list a little longer.
void ElasticScrollView::letGoLater() {
  resetWork_ = dispatch_.after(heldFor, [this] { reset(); });
}

void ElasticScrollView::reset() {
  rubberBandOffset_ = 0;
  showDedication(false);
  animateTo(0, returnMilliseconds);
  if (widget() != nullptr && fits()) slideTo(0, returnMilliseconds);
}

void ElasticScrollView::showDedication(bool shown) {
  using Motion = DedicationLabel::Motion;
  dedication_->setShown(shown, accessibility_.reduceMotion() ? Motion::none : Motion::fading);
}

void ElasticScrollView::settle() {
  resetWork_.reset();
  movement_->stop();
  sliding_->stop();
  rest_ = 0;
  rubberBandOffset_ = 0;
  dedication_->setShown(false, DedicationLabel::Motion::none);
  paintDisplaced(0);
}

void ElasticScrollView::animateTo(double offset, int milliseconds) {
  movement_->stop();
  if (accessibility_.reduceMotion()) return paintDisplaced(offset);
  movement_->setStartValue(painted_);
  movement_->setEndValue(offset);
  movement_->setDuration(milliseconds);
  movement_->start();
}

/// Moves the document beside where scrolling has put it.
void ElasticScrollView::paintDisplaced(double offset) {
  painted_ = offset;
  if (widget() == nullptr) return;
  const int top = -verticalScrollBar()->value() + static_cast<int>(std::lround(offset));
  widget()->move(widget()->x(), top);
}

void ElasticScrollView::scrollContentsBy(int dx, int dy) {
  QScrollArea::scrollContentsBy(dx, dy);
  if (painted_ != 0) paintDisplaced(painted_);
  placeDedication();
}

void ElasticScrollView::placeDedication() {
  dedication_->setGeometry(viewport()->width() / 2 - DedicationLabel::labelWidth / 2,
                           viewport()->height() - dedicationBottom - DedicationLabel::labelHeight,
                           DedicationLabel::labelWidth, DedicationLabel::labelHeight);
}

void ElasticScrollView::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  if (painted_ != 0) paintDisplaced(painted_);
  placeDedication();
}

void ElasticScrollView::hideEvent(QHideEvent* event) {
  QScrollArea::hideEvent(event);
  settle();
}

}  // namespace vantorel
