#include "chrome/ElasticScrollView.h"

#include <QApplication>
#include <QVariantAnimation>
#include <QWheelEvent>
#include <cmath>

#include "chrome/DedicationLabel.h"
#include "chrome/InvisibleScroller.h"
#include "chrome/RubberBand.h"

namespace vantorel {
namespace {

constexpr int pointsPerWheelLine = 16;
constexpr int pushMilliseconds = 70;
constexpr int returnMilliseconds = 280;
constexpr Seconds heldFor{0.12};
constexpr int dedicationBottom = 7;

/// How far a turn of the wheel would scroll, in points; positive towards the top. Wheels with
/// notches and those without report angles; what they report as pixels depends on the driver.
double scrollingDelta(const QWheelEvent& event, int linesPerNotch) {
  constexpr double notch = 120;
  return event.angleDelta().y() / notch * linesPerNotch * pointsPerWheelLine;
}

}  // namespace

ElasticScrollView::ElasticScrollView(Dispatch& dispatch,
                                     const AccessibilityPreferences& accessibility, QWidget* parent)
    : QScrollArea(parent),
      dispatch_(dispatch),
      accessibility_(accessibility),
      dedication_(new DedicationLabel(viewport())),
      movement_(new QVariantAnimation(this)) {
  setVerticalScrollBar(new InvisibleScroller(this));
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameShape(QFrame::NoFrame);
  viewport()->setAutoFillBackground(false);
  verticalScrollBar()->setSingleStep(pointsPerWheelLine);
  movement_->setEasingCurve(QEasingCurve::OutQuad);
  connect(movement_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { paintDisplaced(value.toDouble()); });
}

ElasticScrollView::~ElasticScrollView() = default;

double ElasticScrollView::offset() const { return verticalScrollBar()->value(); }

void ElasticScrollView::scrollTo(double offset) {
  verticalScrollBar()->setValue(static_cast<int>(std::lround(offset)));
}

void ElasticScrollView::wheelEvent(QWheelEvent* event) {
  RubberBand::Push push;
  push.delta = scrollingDelta(*event, QApplication::wheelScrollLines());
  push.before = offset();
  QScrollArea::wheelEvent(event);
  event->accept();  // the turn was meant for the list, even at its end
  push.after = offset();
  if (widget() == nullptr) return;
  push.viewHeight = viewport()->height();
  push.documentHeight = widget()->height();
  const auto bounce = RubberBand::bounce(push);
  if (!bounce) return;
  applyRubberBand(RubberBand::displaced(rubberBandOffset_, *bounce));
  placeDedication();
  if (bounce->atEnd) dedication_->raise();
  showDedication(bounce->atEnd);
}

void ElasticScrollView::applyRubberBand(double offset) {
  rubberBandOffset_ = offset;
  animateTo(offset, pushMilliseconds);
  // Each push holds the list a little longer.
  resetWork_ = dispatch_.after(heldFor, [this] { reset(); });
}

void ElasticScrollView::reset() {
  rubberBandOffset_ = 0;
  showDedication(false);
  animateTo(0, returnMilliseconds);
}

void ElasticScrollView::showDedication(bool shown) {
  using Motion = DedicationLabel::Motion;
  dedication_->setShown(shown, accessibility_.reduceMotion() ? Motion::none : Motion::fading);
}

void ElasticScrollView::settle() {
  resetWork_.reset();
  movement_->stop();
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
