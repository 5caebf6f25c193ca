// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>

#include "ui/QtWarnings.h"

namespace {

/// A test that leaves a window behind would disturb the next one.
class NoWindowIsLeft : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo& /*info*/) override {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const auto widgets = QApplication::topLevelWidgets();
    for (const auto* widget : widgets) {
      // The toolkit keeps its one tool tip for the next time.
      if (widget->inherits("QTipLabel")) continue;
      ADD_FAILURE() << "A window is left: " << widget->metaObject()->className() << " "
                    << widget->windowTitle().toStdString();
    }
  }
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  vantorel::failTestsOnQtWarnings();
  testing::UnitTest::GetInstance()->listeners().Append(new NoWindowIsLeft);
  return RUN_ALL_TESTS();
}
