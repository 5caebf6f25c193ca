// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QWidget>
#include <map>
#include <string>
#include <vector>

#include "chrome/ElasticScrollView.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/ManualDispatch.h"
#include "panel/ClipListView.h"

class QMenu;

namespace vantorel {

class ClipRowView;
class PopoverWindow;

/// A list in a scrolling window, used with the pointer as the window system delivers it, and the
/// commands that it gives.
class ClipListTest : public testing::Test {
 protected:
  ClipListTest();
  void TearDown() override;

  /// Adds an entry to those shown from the next `show` on.
  Uuid add(ClipItem item);
  Uuid addText(const std::string& text);
  Uuid addPin(const std::string& text);
  /// Shows all entries that were added, pins first.
  void show();

  [[nodiscard]] ClipRowView& rowOf(Uuid id) const;
  [[nodiscard]] std::size_t indexOf(Uuid id) const;

  // The pointer; points are within the row.
  void moveTo(Uuid id, QPoint point);
  void moveTo(Uuid id) { moveTo(id, {200, 20}); }
  /// Away from every window.
  static void moveAway();
  void press(Uuid id, QPoint point, Qt::MouseButton button = Qt::LeftButton);
  void release(Uuid id, QPoint point, Qt::MouseButton button = Qt::LeftButton);
  void click(Uuid id, QPoint point);
  void pressKey(Qt::Key key);
  void wait(double seconds) { dispatch_.advance(Seconds(seconds)); }

  [[nodiscard]] static PopoverWindow* preview();
  [[nodiscard]] static QMenu* menu();
  [[nodiscard]] static std::vector<std::string> menuTitles();
  /// A row that says where a pin would be dropped, and where.
  [[nodiscard]] std::optional<std::pair<Uuid, DropPlace>> dropMark() const;

  /// The row as it is drawn, on white.
  [[nodiscard]] static QImage pictureOf(QWidget& widget, double scale = 1);

  ManualDispatch dispatch_;
  FakeScreens screens_;
  FakeAccessibilityPreferences accessibility_;
  FakeWindowBackdrops backdrops_;
  QWidget window_;
  ElasticScrollView scrollView_{dispatch_, accessibility_, &window_};
  ClipListView& list_;
  std::vector<ClipItem> items_;
  std::vector<std::string> commands_;  // as they came, with the texts of their entries
  bool canPinMore_ = true;

 private:
  [[nodiscard]] QPoint inWindow(Uuid id, QPoint point) const;
  void record(const char* command, Uuid id);
  [[nodiscard]] std::string nameOf(Uuid id) const;

  Qt::MouseButton held_ = Qt::NoButton;
};

/// A picture of one colour.
[[nodiscard]] SharedBitmap bitmap(int width, int height, std::uint32_t argb);

}  // namespace vantorel
