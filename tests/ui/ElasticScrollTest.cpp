// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>
#include <QPointingDevice>
#include <QTest>
#include <QVariantAnimation>
#include <QWheelEvent>

#include "chrome/DedicationLabel.h"
#include "chrome/ElasticScrollView.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

constexpr int pageHeight = 400;

/// A view without motion, so that what is painted is where it will be.
class ElasticScroll : public testing::Test {
 protected:
  ElasticScroll() {
    accessibility_.setReduceMotion(true);
    view_.resize(300, pageHeight);
    setDocument(1000);
    view_.show();
  }
  void setDocument(int height) {
    auto* document = new QWidget;
    document->resize(300, height);
    view_.setWidget(document);
  }
  /// Moves a finger on a touchpad; positive towards the top.
  void push(int points) { report({0, points}, {0, 8 * points}, Qt::ScrollUpdate); }
  /// Turns a wheel that has notches.
  void turn(int notches) { turnBy(notches * 120); }
  void turnBy(int eighthsOfDegree) { report({}, {0, eighthsOfDegree}, Qt::NoScrollPhase); }
  void report(QPoint pixels, QPoint angle, Qt::ScrollPhase phase) {
    QWheelEvent event(QPointF(50, 50), view_.mapToGlobal(QPointF(50, 50)), pixels, angle,
                      Qt::NoButton, Qt::NoModifier, phase, false);
    QApplication::sendEvent(view_.viewport(), &event);
  }
  [[nodiscard]] int top() const { return view_.widget()->y(); }
  /// The motion that is under way: of the list itself, or of the dedication.
  [[nodiscard]] QVariantAnimation* motion() const { return motionOf(view_); }
  [[nodiscard]] QVariantAnimation* fading() const {
    return motionOf(*view_.findChild<DedicationLabel*>());
  }
  [[nodiscard]] static QVariantAnimation* motionOf(const QWidget& widget) {
    QVariantAnimation* found = nullptr;
    const auto all = widget.findChildren<QVariantAnimation*>(Qt::FindDirectChildrenOnly);
    for (auto* one : all) {
      if (one->state() != QAbstractAnimation::Running) continue;
      EXPECT_EQ(found, nullptr) << "Two motions at once";
      found = one;
    }
    return found;
  }
  static void finish(QVariantAnimation* motion) { motion->setCurrentTime(motion->duration()); }
  [[nodiscard]] double dedication() const { return view_.findChild<DedicationLabel*>()->alpha(); }

  ManualDispatch dispatch_;
  FakeAccessibilityPreferences accessibility_;
  ElasticScrollView view_{dispatch_, accessibility_, nullptr};
};

TEST_F(ElasticScroll, PushedAtTheTopIsDisplacedAndSpringsBack) {
  push(50);
  EXPECT_EQ(view_.offset(), 0);
  EXPECT_EQ(view_.rubberBandOffset(), 19);
  EXPECT_EQ(top(), 19);
  push(50);
  EXPECT_EQ(top(), 26);
  EXPECT_EQ(dedication(), 0);
  dispatch_.advance(Seconds(0.13));
  EXPECT_EQ(view_.rubberBandOffset(), 0);
  EXPECT_EQ(top(), 0);
}

TEST_F(ElasticScroll, EachPushHoldsItALittleLonger) {
  push(50);
  dispatch_.advance(Seconds(0.1));
  push(50);
  dispatch_.advance(Seconds(0.1));
  EXPECT_EQ(top(), 26);
  dispatch_.advance(Seconds(0.03));
  EXPECT_EQ(top(), 0);
}

TEST_F(ElasticScroll, PushedAtTheEndShowsTheDedicationUntilItSpringsBack) {
  view_.scrollTo(600);
  push(-50);
  EXPECT_EQ(view_.offset(), 600);
  EXPECT_EQ(top(), -600 - 19);
  EXPECT_EQ(dedication(), 1);
  dispatch_.advance(Seconds(0.13));
  EXPECT_EQ(top(), -600);
  EXPECT_EQ(dedication(), 0);
}

TEST_F(ElasticScroll, TheDedicationFadesWhereMotionIsWelcome) {
  accessibility_.setReduceMotion(false);
  view_.scrollTo(600);
  push(-50);
  EXPECT_LT(dedication(), 1);
  EXPECT_TRUE(QTest::qWaitFor([this] { return dedication() == 1; }));
  dispatch_.advance(Seconds(0.13));
  EXPECT_GT(dedication(), 0);
  EXPECT_TRUE(QTest::qWaitFor([this] { return dedication() == 0; }));
}

TEST_F(ElasticScroll, TheDedicationStandsAboveTheLowerEdge) {
  view_.scrollTo(600);
  push(-50);
  EXPECT_EQ(view_.findChild<DedicationLabel*>()->geometry(),
            QRect(300 / 2 - 90, pageHeight - 7 - 20, 180, 20));
}

TEST_F(ElasticScroll, AShortListBouncesForAnyPushAndShowsTheDedication) {
  setDocument(100);
  push(-50);
  EXPECT_EQ(top(), 19);
  EXPECT_EQ(dedication(), 1);
}

TEST_F(ElasticScroll, ScrollingDoesNotBounce) {
  push(-50);
  EXPECT_EQ(view_.offset(), 50);
  EXPECT_EQ(view_.rubberBandOffset(), 0);
  EXPECT_EQ(top(), -50);
}

TEST_F(ElasticScroll, ANotchedWheelScrollsAndBouncesToo) {
  turn(1);
  EXPECT_GT(view_.rubberBandOffset(), 10);
  EXPECT_EQ(view_.offset(), 0);
  dispatch_.advance(Seconds(0.13));
  turn(-1);
  EXPECT_EQ(view_.offset(), QApplication::wheelScrollLines() * 16);
}

TEST_F(ElasticScroll, HidingBringsItToRest) {
  push(50);
  view_.hide();
  EXPECT_EQ(top(), 0);
  EXPECT_EQ(dispatch_.timerCount(), 0U);
}

TEST_F(ElasticScroll, MovesThereAndBackWhereMotionIsWelcome) {
  accessibility_.setReduceMotion(false);
  push(50);
  EXPECT_EQ(top(), 0);
  EXPECT_TRUE(QTest::qWaitFor([this] { return top() == 19; }));
  dispatch_.advance(Seconds(0.13));
  EXPECT_TRUE(QTest::qWaitFor([this] { return top() == 0; }));
}

TEST_F(ElasticScroll, GivesWayQuicklyAndComesBackCalmly) {
  accessibility_.setReduceMotion(false);
  push(50);
  ASSERT_NE(motion(), nullptr);
  EXPECT_EQ(motion()->duration(), 70);
  EXPECT_EQ(motion()->easingCurve().type(), QEasingCurve::OutQuad);
  finish(motion());
  EXPECT_EQ(top(), 19);
  dispatch_.advance(Seconds(0.11));
  EXPECT_EQ(motion(), nullptr) << "It is held for 0.12 seconds";
  dispatch_.advance(Seconds(0.01));
  ASSERT_NE(motion(), nullptr);
  EXPECT_EQ(motion()->duration(), 280);
  EXPECT_EQ(motion()->easingCurve().type(), QEasingCurve::OutQuad);
  finish(motion());
  EXPECT_EQ(top(), 0);
}

TEST_F(ElasticScroll, TheDedicationComesFasterThanItGoes) {
  accessibility_.setReduceMotion(false);
  view_.scrollTo(600);
  push(-50);
  ASSERT_NE(fading(), nullptr);
  EXPECT_EQ(fading()->duration(), 100);
  finish(fading());
  EXPECT_EQ(dedication(), 1);
  dispatch_.advance(Seconds(0.12));
  ASSERT_NE(fading(), nullptr);
  EXPECT_EQ(fading()->duration(), 220);
}

TEST_F(ElasticScroll, ANotchIsAStrideOfWholeLines) {
  accessibility_.setReduceMotion(false);
  view_.setMeasures({.line = 49, .endSpace = 0});
  const int stride = QApplication::wheelScrollLines() * 49;
  turn(-1);
  EXPECT_EQ(view_.offset(), 0);
  ASSERT_NE(motion(), nullptr);
  EXPECT_LE(motion()->duration(), 200);
  EXPECT_EQ(motion()->easingCurve().type(), QEasingCurve::OutQuad);
  turn(-1);
  finish(motion());
  EXPECT_EQ(view_.offset(), 2 * stride) << "Notches add up while it is under way";
  turn(1);
  EXPECT_EQ(view_.rubberBandOffset(), 0);
  finish(motion());
  EXPECT_EQ(view_.offset(), stride);
}

TEST_F(ElasticScroll, AStrideIsMadeAtOnceWhereMotionIsUnwelcome) {
  view_.setMeasures({.line = 49, .endSpace = 0});
  turn(-1);
  EXPECT_EQ(view_.offset(), QApplication::wheelScrollLines() * 49);
  EXPECT_EQ(motion(), nullptr);
}

TEST_F(ElasticScroll, AFingerIsFollowedAtOnceHoweverLongAStrideIs) {
  accessibility_.setReduceMotion(false);
  view_.setMeasures({.line = 49, .endSpace = 0});
  push(-50);
  EXPECT_EQ(view_.offset(), 50);
}

TEST_F(ElasticScroll, PartsOfANotchAddUpToAStrideWithoutBouncingOnTheWay) {
  view_.setMeasures({.line = 49, .endSpace = 0});
  view_.scrollTo(200);
  for (int part = 0; part < 120; ++part) turnBy(-1);
  EXPECT_EQ(view_.offset(), 200 + QApplication::wheelScrollLines() * 49);
  for (int part = 0; part < 8; ++part) turnBy(15);
  EXPECT_EQ(view_.offset(), 200);
  EXPECT_EQ(view_.rubberBandOffset(), 0);
}

TEST_F(ElasticScroll, ATouchpadThatOnlyItsNameTellsIsFollowed) {
  view_.setMeasures({.line = 49, .endSpace = 0});
  const QPointingDevice touchpad(
      QStringLiteral("ELAN0501:01 Touchpad"), 7, QInputDevice::DeviceType::Mouse,
      QPointingDevice::PointerType::Generic, QInputDevice::Capability::Scroll, 1, 3);
  QWheelEvent event(QPointF(50, 50), view_.mapToGlobal(QPointF(50, 50)), QPoint(), QPoint(0, -120),
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false,
                    Qt::MouseEventNotSynthesized, &touchpad);
  QApplication::sendEvent(view_.viewport(), &event);
  EXPECT_EQ(view_.offset(), QApplication::wheelScrollLines() * 16);
}

TEST_F(ElasticScroll, WhoeverScrollsElsewhereEndsAStride) {
  accessibility_.setReduceMotion(false);
  view_.setMeasures({.line = 49, .endSpace = 0});
  turn(-1);
  view_.scrollTo(10);
  EXPECT_EQ(motion(), nullptr);
  EXPECT_EQ(view_.offset(), 10);
}

TEST_F(ElasticScroll, AStrideThatMeetsTheEndBouncesOnlyThere) {
  accessibility_.setReduceMotion(false);
  view_.setMeasures({.line = 49, .endSpace = 0});
  view_.scrollTo(590);
  turn(-1);
  turn(-1);
  EXPECT_EQ(view_.rubberBandOffset(), 0);
  finish(motion());
  EXPECT_EQ(view_.offset(), 600);
  turn(-1);
  EXPECT_LT(view_.rubberBandOffset(), 0);
}

TEST_F(ElasticScroll, AListThatFitsComesBackToItsTopWhenItIsLetGo) {
  view_.setMeasures({.line = 49, .endSpace = 18});
  setDocument(pageHeight + 18);
  turn(-1);
  EXPECT_EQ(view_.offset(), 18);
  dispatch_.advance(Seconds(0.12));
  EXPECT_EQ(view_.offset(), 0);
  setDocument(pageHeight + 19);
  turn(-1);
  dispatch_.advance(Seconds(1));
  EXPECT_EQ(view_.offset(), 19);
}

TEST_F(ElasticScroll, WithoutADocumentNothingHappens) {
  delete view_.takeWidget();
  push(50);
  EXPECT_EQ(view_.rubberBandOffset(), 0);
}

}  // namespace
}  // namespace vantorel
