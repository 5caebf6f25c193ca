// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <memory>

#include "chrome/CheckBox.h"
#include "chrome/PushButton.h"
#include "chrome/SheetWindow.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Answer = SheetWindow::Answer;

class SheetTest : public testing::Test {
 protected:
  SheetTest() {
    window_.setGeometry(700, 300, 408, 200);
    window_.show();
    make(&window_);
  }
  void make(QWidget* attachedTo) {
    sheet_ = std::make_unique<SheetWindow>(
        SheetWindow::Question{"Name it", "What it is called.", "Save", "Cancel"},
        ChromeServices{dispatch_, screens_, accessibility_, &backdrops_}, attachedTo);
    field_ = new QLineEdit;
    sheet_->setAccessory(field_);
    sheet_->onFinished = [this](Answer answer) { answers_.push_back(answer); };
  }
  [[nodiscard]] PushButton* button(const QString& title) const {
    const auto all = sheet_->findChildren<PushButton*>();
    for (auto* one : all) {
      if (one->text() == title) return one;
    }
    return nullptr;
  }

  ManualDispatch dispatch_;
  FakeScreens screens_;
  FakeAccessibilityPreferences accessibility_;
  FakeWindowBackdrops backdrops_;
  QWidget window_;
  std::unique_ptr<SheetWindow> sheet_;
  QLineEdit* field_ = nullptr;
  std::vector<Answer> answers_;
};

TEST_F(SheetTest, IsShownWithoutWaitingAndKeepsTheUserFromItsWindow) {
  sheet_->begin(field_);
  EXPECT_TRUE(sheet_->isVisible());
  EXPECT_EQ(sheet_->windowTitle(), "Name it");
  EXPECT_EQ(sheet_->windowModality(), Qt::WindowModal);
  EXPECT_EQ(sheet_->focusWidget(), field_);
  EXPECT_THAT(answers_, IsEmpty());
}

TEST_F(SheetTest, StandsOverItsWindow) {
  sheet_->begin();
  EXPECT_EQ(sheet_->geometry().center().x(), window_.geometry().center().x());
  EXPECT_GT(sheet_->y(), window_.y());
  EXPECT_LT(sheet_->y(), window_.y() + 60);
}

TEST_F(SheetTest, StaysOnTheScreen) {
  window_.move(1800, 1000);
  sheet_->begin();
  EXPECT_LE(sheet_->geometry().right(), 1920);
  EXPECT_LE(sheet_->geometry().bottom(), 1080);
}

TEST_F(SheetTest, WithoutAWindowItStandsInTheMiddleOfTheScreen) {
  make(nullptr);
  sheet_->begin();
  EXPECT_NEAR(sheet_->geometry().center().x(), 960, 1);
  EXPECT_NEAR(sheet_->geometry().center().y(), 555, 1);
}

TEST_F(SheetTest, ReturnAcceptsAlsoFromAField) {
  sheet_->begin(field_);
  QTest::keyClick(field_, Qt::Key_Return);
  EXPECT_THAT(answers_, ElementsAre(Answer::accepted));
  EXPECT_FALSE(sheet_->isVisible());
}

TEST_F(SheetTest, NoButtonHasTheKeyboardAtFirstSoReturnAccepts) {
  sheet_->begin();
  QCoreApplication::processEvents();
  EXPECT_EQ(sheet_->focusWidget(), sheet_.get());
  QTest::keyClick(sheet_.get(), Qt::Key_Return);
  EXPECT_THAT(answers_, ElementsAre(Answer::accepted));
}

TEST_F(SheetTest, ReturnOnTheButtonThatTabLedToMeansThatButton) {
  sheet_->begin(field_);
  QTest::keyClick(field_, Qt::Key_Tab);
  ASSERT_EQ(sheet_->focusWidget(), button("Save"));
  QTest::keyClick(button("Save"), Qt::Key_Tab);
  ASSERT_EQ(sheet_->focusWidget(), button("Cancel"));
  QTest::keyClick(button("Cancel"), Qt::Key_Return);
  EXPECT_THAT(answers_, ElementsAre(Answer::cancelled));
}

TEST_F(SheetTest, AWarningBeginsOnItsWayOutAndReturnAloneLosesNothing) {
  sheet_ = std::make_unique<SheetWindow>(
      SheetWindow::Question{"Sure?", "", "Clear", "Cancel", SheetWindow::Style::warning},
      ChromeServices{dispatch_, screens_, accessibility_, &backdrops_}, nullptr);
  auto* box = new CheckBox("Pins too", sheet_.get());
  sheet_->setAccessory(box);
  sheet_->onFinished = [this](Answer answer) { answers_.push_back(answer); };
  sheet_->begin();
  QCoreApplication::processEvents();
  EXPECT_EQ(sheet_->focusWidget(), button("Cancel"));
  box->setFocus();
  QTest::keyClick(box, Qt::Key_Return);
  EXPECT_THAT(answers_, IsEmpty());
  button("Cancel")->setFocus();
  QTest::keyClick(button("Cancel"), Qt::Key_Return);
  EXPECT_THAT(answers_, ElementsAre(Answer::cancelled));
}

TEST_F(SheetTest, EscapeCancels) {
  sheet_->begin(field_);
  QTest::keyClick(field_, Qt::Key_Escape);
  EXPECT_THAT(answers_, ElementsAre(Answer::cancelled));
}

TEST_F(SheetTest, ButtonsAnswer) {
  sheet_->begin();
  button("Save")->click();
  sheet_->begin();
  button("Cancel")->click();
  EXPECT_THAT(answers_, ElementsAre(Answer::accepted, Answer::cancelled));
}

TEST_F(SheetTest, AClosedWindowIsACancel) {
  sheet_->begin();
  sheet_->close();
  EXPECT_THAT(answers_, ElementsAre(Answer::cancelled));
}

TEST_F(SheetTest, GoesWithItsWindow) {
  sheet_->begin();
  window_.hide();
  EXPECT_THAT(answers_, ElementsAre(Answer::cancelled));
  EXPECT_FALSE(sheet_->isVisible());
}

TEST_F(SheetTest, MayBeDestroyedByTheAnswerThatItsWindowGives) {
  sheet_->begin();
  sheet_->onFinished = [this](Answer answer) {
    answers_.push_back(answer);
    sheet_.reset();
  };
  window_.hide();
  EXPECT_THAT(answers_, ElementsAre(Answer::cancelled));
}

TEST_F(SheetTest, MovesWithItsWindow) {
  sheet_->begin();
  const auto before = sheet_->pos() - window_.pos();
  window_.move(500, 200);
  QCoreApplication::processEvents();
  EXPECT_EQ(sheet_->pos() - window_.pos(), before);
}

TEST_F(SheetTest, AnswersOnceAndMayBeDestroyedByIt) {
  sheet_->begin();
  sheet_->onFinished = [this](Answer answer) {
    answers_.push_back(answer);
    sheet_.reset();
  };
  QTest::keyClick(sheet_.get(), Qt::Key_Return);
  EXPECT_THAT(answers_, ElementsAre(Answer::accepted));
}

TEST_F(SheetTest, EndingWhatIsNotOpenTellsNobody) {
  sheet_->end(Answer::cancelled);
  EXPECT_THAT(answers_, IsEmpty());
}

}  // namespace
}  // namespace vantorel
