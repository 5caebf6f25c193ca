// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>
#include <memory>

#include "platform/AccessibilityPreferences.h"
#include "platform/Dispatch.h"

class QVariantAnimation;

namespace vantorel {

class DedicationLabel;

/// Scrolls one document vertically, without a frame, a background or a visible scroller: in strides
/// by a wheel with notches, in proportion by a finer one, along with the finger on a touchpad.
/// Pushed beyond an end, the document is painted displaced and springs back; what it is scrolled to
/// does not change. Below its end stands a dedication, seen only then.
class ElasticScrollView : public QScrollArea {
  Q_OBJECT

 public:
  ElasticScrollView(Dispatch& dispatch, const AccessibilityPreferences& accessibility,
                    QWidget* parent);
  ~ElasticScrollView() override;

  /// What a wheel scrolls past for each line that the user has it scroll, and how much of the
  /// document's end is only room: when nothing but that is out of sight, the list comes back to its
  /// top as soon as it is let go.
  struct Measures {
    double line = 16;
    double endSpace = 0;
  };
  void setMeasures(const Measures& measures) { measures_ = measures; }

  /// The distance from the top of the document to what is seen of it, and the way to change it;
  /// kept within the document.
  [[nodiscard]] double offset() const;
  void scrollTo(double offset);

  /// How far the document is pushed down (or, negative, up) beyond its end.
  [[nodiscard]] double rubberBandOffset() const { return rubberBandOffset_; }
  /// Brings everything to rest at once.
  void settle();

 protected:
  /// Leaving by Tab does not scroll: the base class would show the middle of the document.
  bool focusNextPrevChild(bool next) override {
    return QWidget::focusNextPrevChild(next);  // NOLINT(bugprone-parent-virtual-call): that one
  }
  void wheelEvent(QWheelEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void resizeEvent(QResizeEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  [[nodiscard]] bool fits() const;
  [[nodiscard]] double destination() const;
  void follow(double distance);
  void slideTo(double offset, int milliseconds);
  void applyRubberBand(double offset);
  void letGoLater();
  void reset();
  void animateTo(double offset, int milliseconds);
  void paintDisplaced(double offset);
  void placeDedication();
  void showDedication(bool shown);

  Dispatch& dispatch_;
  const AccessibilityPreferences& accessibility_;
  DedicationLabel* dedication_;
  QVariantAnimation* movement_;  // beside where it is scrolled to
  QVariantAnimation* sliding_;   // of that
  Measures measures_;
  double rest_ = 0;  // of what was followed, less than a point
  std::unique_ptr<Timer> resetWork_;
  double rubberBandOffset_ = 0;
  double painted_ = 0;  // of that, while it is on its way
};

}  // namespace vantorel
