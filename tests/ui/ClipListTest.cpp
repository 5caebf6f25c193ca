// SPDX-License-Identifier: MIT
#include "ui/ClipListTest.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QTest>
#include <QWindow>
#include <algorithm>

#include "chrome/PopoverWindow.h"
#include "panel/ClipRowView.h"
#include "panel/FileAvailability.h"
#include "panel/ListGeometry.h"
#include "platform/posix/PosixFileSystem.h"

namespace vantorel {

ClipListTest::ClipListTest()
    : list_(*new ClipListView({dispatch_, screens_, accessibility_, &backdrops_}, nullptr)) {
  window_.setGeometry(200, 100, 408, 468);
  moveAway();
  scrollView_.setGeometry(10, 10, 388, 448);
  scrollView_.setWidget(&list_);
  list_.onScroll = [this](double distance) {
    scrollView_.scrollTo(scrollView_.offset() + distance);
  };
  auto& commands = list_.commands;
  commands.entry = [this](Uuid id) -> std::optional<ClipItem> {
    const auto found = std::find_if(items_.begin(), items_.end(),
                                    [&](const ClipItem& item) { return item.id == id; });
    return found == items_.end() ? std::nullopt : std::optional(*found);
  };
  commands.onChoose = [this](Uuid id) { record("choose", id); };
  commands.onPastePlain = [this](Uuid id) { record("paste plain", id); };
  commands.onDelete = [this](Uuid id) { record("delete", id); };
  commands.onTogglePin = [this](Uuid id) { record("toggle pin", id); };
  commands.onRename = [this](Uuid id) { record("rename", id); };
  commands.onMovePin = [this](Uuid id, int step) {
    record(step < 0 ? "move up" : "move down", id);
  };
  commands.onDropPin = [this](Uuid dragged, Uuid onto, DropPlace place) {
    commands_.push_back("drop " + nameOf(dragged) +
                        (place == DropPlace::before ? " before " : " after ") + nameOf(onto));
  };
}

void ClipListTest::TearDown() {
  // A button held on would be held in the next test.
  if (held_ != Qt::NoButton) QTest::mouseRelease(window_.windowHandle(), held_);
}

Uuid ClipListTest::add(ClipItem item) {
  item.id = Uuid::random();
  items_.push_back(item);
  return item.id;
}

Uuid ClipListTest::addText(const std::string& text) {
  ClipItem item;
  item.title = "Text";
  item.preview = text.substr(0, 400);
  item.text = SharedText(text);
  return add(item);
}

Uuid ClipListTest::addPin(const std::string& text) {
  const Uuid id = addText(text);
  items_.back().isPinned = true;
  return id;
}

void ClipListTest::show() {
  std::stable_partition(items_.begin(), items_.end(),
                        [](const ClipItem& item) { return item.pinned(); });
  PosixFileSystem files;
  std::vector<RowContent> rows;
  for (const auto& item : items_) {
    rows.push_back(rowContent(item, availability(item, files), "Today, 9:26", canPinMore_));
  }
  list_.setRows(rows, ListGeometry::pinBoundary(items_));
  window_.show();
  QCoreApplication::processEvents();
}

ClipRowView& ClipListTest::rowOf(Uuid id) const { return *list_.row(indexOf(id)); }

std::size_t ClipListTest::indexOf(Uuid id) const {
  std::size_t index = 0;
  while (list_.row(index) != nullptr && list_.row(index)->content().id != id) ++index;
  return index;
}

QPoint ClipListTest::inWindow(Uuid id, QPoint point) const {
  return rowOf(id).mapTo(&window_, point);
}

void ClipListTest::moveTo(Uuid id, QPoint point) {
  // The cursor brings what hovering needs, but knows of no button that is held.
  if (held_ != Qt::NoButton) {
    QTest::mouseMove(window_.windowHandle(), inWindow(id, point));
  } else {
    QCursor::setPos(window_.mapToGlobal(inWindow(id, point)));
  }
  QCoreApplication::processEvents();
}

void ClipListTest::moveAway() {
  QCursor::setPos(5, 5);
  QCoreApplication::processEvents();
}

void ClipListTest::press(Uuid id, QPoint point, Qt::MouseButton button) {
  held_ = button;
  QTest::mousePress(window_.windowHandle(), button, {}, inWindow(id, point));
}

void ClipListTest::release(Uuid id, QPoint point, Qt::MouseButton button) {
  held_ = Qt::NoButton;
  QTest::mouseRelease(window_.windowHandle(), button, {}, inWindow(id, point));
}

void ClipListTest::click(Uuid id, QPoint point) {
  press(id, point);
  release(id, point);
}

void ClipListTest::pressKey(Qt::Key key) { QTest::keyClick(window_.windowHandle(), key); }

PopoverWindow* ClipListTest::preview() {
  PopoverWindow* found = nullptr;
  const auto widgets = QApplication::topLevelWidgets();
  for (auto* widget : widgets) {
    auto* popover = qobject_cast<PopoverWindow*>(widget);
    if (popover == nullptr || !popover->isVisible()) continue;
    EXPECT_EQ(found, nullptr) << "Two previews are shown";
    found = popover;
  }
  return found;
}

QMenu* ClipListTest::menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

std::vector<std::string> ClipListTest::menuTitles() {
  std::vector<std::string> titles;
  if (menu() == nullptr) return titles;
  for (const auto* action : menu()->actions()) {
    titles.push_back(action->isSeparator() ? "-" : action->text().toStdString());
  }
  return titles;
}

std::optional<std::pair<Uuid, DropPlace>> ClipListTest::dropMark() const {
  std::optional<std::pair<Uuid, DropPlace>> mark;
  for (std::size_t i = 0; i < list_.rowCount(); ++i) {
    const auto place = list_.row(i)->dropPlace();
    if (!place) continue;
    EXPECT_FALSE(mark) << "Two rows are marked";
    mark = {list_.row(i)->content().id, *place};
  }
  return mark;
}

QImage ClipListTest::pictureOf(QWidget& widget, double scale) {
  QImage image(widget.size() * scale, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::white);
  widget.render(&image, {}, {}, QWidget::DrawChildren);
  return image;
}

void ClipListTest::record(const char* command, Uuid id) {
  commands_.push_back(std::string(command) + " " + nameOf(id));
}

std::string ClipListTest::nameOf(Uuid id) const {
  const auto item = list_.commands.entry(id);
  return item ? item->preview : "nothing";
}

SharedBitmap bitmap(int width, int height, std::uint32_t argb) {
  Bitmap result;
  result.size = {static_cast<double>(width), static_cast<double>(height)};
  result.pixelSize = {width, height};
  result.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), argb);
  return std::make_shared<const Bitmap>(std::move(result));
}

}  // namespace vantorel
