// SPDX-License-Identifier: MIT
#include "platform/qt/QtScreens.h"

#include <gtest/gtest.h>

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace vantorel {
namespace {

TEST(QtScreens, AnswerWhatTheToolkitKnows) {
  const QtScreens screens;
  const auto all = screens.screens();
  ASSERT_EQ(all.size(), static_cast<std::size_t>(QGuiApplication::screens().size()));
  const auto frame = QGuiApplication::primaryScreen()->geometry();
  const auto main = screens.mainScreen();
  ASSERT_TRUE(main);
  EXPECT_EQ(main->frame,
            (Rect{static_cast<double>(frame.x()), static_cast<double>(frame.y()),
                  static_cast<double>(frame.width()), static_cast<double>(frame.height())}));
  EXPECT_GT(main->scale, 0);
  EXPECT_LE(main->visibleFrame.height, main->frame.height);
}

TEST(QtScreens, FollowThePointer) {
  const QtScreens screens;
  QCursor::setPos(123, 45);
  EXPECT_EQ(screens.mouseLocation(), (Point{123, 45}));
  ASSERT_TRUE(screenUnderMouse(screens));
  EXPECT_TRUE(screenUnderMouse(screens)->frame.contains({123, 45}));
}

}  // namespace
}  // namespace vantorel
