#include "chrome/ElasticScrollView.h"

#include <cmath>

#include "chrome/InvisibleScroller.h"

namespace vantorel {
namespace {

constexpr int pointsPerWheelLine = 16;

}  // namespace

ElasticScrollView::ElasticScrollView(QWidget* parent) : QScrollArea(parent) {
  setVerticalScrollBar(new InvisibleScroller(this));
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameShape(QFrame::NoFrame);
  viewport()->setAutoFillBackground(false);
  verticalScrollBar()->setSingleStep(pointsPerWheelLine);
}

double ElasticScrollView::offset() const { return verticalScrollBar()->value(); }

void ElasticScrollView::scrollTo(double offset) {
  verticalScrollBar()->setValue(static_cast<int>(std::lround(offset)));
}

}  // namespace vantorel
