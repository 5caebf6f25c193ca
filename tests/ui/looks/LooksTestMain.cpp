// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QApplication>

#include "ui/QtWarnings.h"
#include "ui/looks/FixedSurroundings.h"

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  vantorel::fixSurroundings();
  QApplication application(argc, argv);
  vantorel::fixApplication();
  vantorel::failTestsOnQtWarnings();
  return RUN_ALL_TESTS();
}
