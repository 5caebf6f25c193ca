// SPDX-License-Identifier: MIT
#include "ui/looks/PanelScene.h"

#include <QApplication>
#include <QEnterEvent>
#include <QHelpEvent>
#include <QTest>
#include <QWindow>
#include <fstream>
#include <stdexcept>

#include "chrome/VantorelMenu.h"
#include "panel/ClipListView.h"
#include "panel/ClipRowView.h"
#include "panel/FilterButton.h"
#include "ui/looks/LookPainter.h"
#include "ui/looks/SamplePictures.h"

namespace vantorel {
namespace {

constexpr double hour = 3600;
constexpr double day = 24 * hour;
/// What rests, fades or waits has come to its end by then.
constexpr Seconds rest{0.2};

ClipItem videoItem(const std::string& path) {
  ClipItem item = filesItem({path});
  item.title = "Video";
  item.preview = std::filesystem::path(path).filename().string();
  return item;
}

ClipItem from(ClipItem item, const char* app) {
  item.sourceBundleIdentifier = app;
  return item;
}

FilterButton& filter(const char* accessibleName) {
  const auto buttons = PanelScene::panel()->findChildren<FilterButton*>();
  for (auto* button : buttons) {
    if (button->accessibleName() == QString::fromUtf8(accessibleName)) return *button;
  }
  throw std::logic_error("no such button");
}

}  // namespace

ClipItem pictureItem(const char* size) {
  ClipItem item = imageItem("sample.asset", size);
  item.preview = size;
  return item;
}

PanelScene::PanelScene() {
  screens.setScreens({{{0, 0, 1280, 640}, {0, 0, 1280, 640}, 1}});
  screens.setMouseLocation({1, 1});
  accessibility.setReduceMotion(true);
}

Uuid PanelScene::add(ClipItem item, const char* app, double secondsAgo) {
  item.createdAt = advanced(dispatch.now(), Seconds(-secondsAgo));
  if (app != nullptr) item.sourceAppName = app;
  store->insert(item);
  return item.id;
}

std::string PanelScene::existingFile(const char* name) const {
  const auto path = directory_.path() / name;
  std::ofstream(path) << name;
  return path.string();
}

void PanelScene::addMixed() {
  add(textItem("ssh -L 8080:localhost:80 deploy@staging.example.org"), "Terminal", 4 * day);
  add(filesItem({"/nonexistent/Budget 2025.ods"}), "Files", 3 * day);
  add(textItem("Dear Ms Aldington,\n\nthank you for your letter of the 3rd. We are pleased to "
               "confirm the meeting on Thursday."),
      "Thunderbird", 1.3 * day);
  add(videoItem(existingFile("Harbour at dawn.mp4")), "Files", 1.2 * day);
  add(filesItem({existingFile("Minutes.odt"), existingFile("Agenda.odt"), existingFile("Map.pdf")}),
      "Files", 9 * hour);
  add(pictureItem("3840 × 2160 px"), "Spectacle", 3 * hour);
  add(textItem("שלום לכולם, הפגישה נדחתה ליום רביעי בשעה 14:00 בחדר Blue"), "Firefox", 2 * hour);
  add(textItem("https://www.example.org/articles/2025/03/how-to-keep-a-clipboard-history"),
      "Firefox", 0.4 * hour);
  add(textItem("int main() { return 0; }"), nullptr, 60);
}

void PanelScene::addPins() {
  const auto address = add(textItem("12 Harbour Street, Galway"), "Contacts", 4.6 * day);
  const auto signature = add(textItem("בברכה, צוות התמיכה"), "Thunderbird", 3.5 * day);
  (void)store->togglePinned(address);
  (void)store->togglePinned(signature);
  (void)store->renamePinned(address, "Home address");
}

void PanelScene::addKinds() {
  add(from(filesItem({"/nonexistent/Budget 2025.ods"}), "Files"), "Files", 25 * hour);
  add(from(videoItem(existingFile("Harbour at dawn.mp4")), "Files"), "Files", 22 * hour);
  add(from(filesItem({existingFile("Minutes.odt")}), "Files"), "Files", 2.5 * hour);
  add(from(pictureItem("320 × 240 px"), "Inkscape"), "Inkscape", 4000);
  add(from(pictureItem("1920 × 1080 px"), "Spectacle"), "Spectacle", 3000);
  add(from(pictureItem("3840 × 2160 px"), "Spectacle"), "Spectacle", 2000);
  add(from(textItem("שלום לכולם, הפגישה נדחתה ליום רביעי"), "Firefox"), "Firefox", 500);
  add(textItem("Nobody knows where this one came from"), nullptr, 60);
}

void PanelScene::open() {
  controller_.toggle(std::nullopt);
  dispatch.runQueued();  // what is asked about files is answered
}

void PanelScene::openKinds() {
  addKinds();
  addPins();
  open();
  giveThumbnail("3840", screenshot(QColor(0xfa, 0xfa, 0xfa)));
  giveThumbnail("1920", screenshot(QColor(0x22, 0x24, 0x28)));
  giveThumbnail("320", logo());
  giveThumbnail("Minutes", icon(QColor(0x6f, 0x8f, 0xb5), "T", 128));
  list().setSourceIcon("Firefox", icon(QColor(0xe0, 0x6a, 0x2b), "F"));
  list().setSourceIcon("Files", icon(QColor(0x2d, 0x7d, 0xd2), "D"));
  list().setSourceIcon("Spectacle", icon(QColor(0x3f, 0xa3, 0x6b), "S"));
  list().setSourceIcon("Inkscape", nullptr);
}

void PanelScene::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
  QTest::keyClick(panel()->windowHandle(), key, modifiers);
}

void PanelScene::type(const char* text) const {
  for (; *text != 0; ++text) QTest::keyClick(panel()->windowHandle(), *text);
}

void PanelScene::hover(std::size_t row) {
  QEnterEvent enter({200, 20}, {200, 20}, {200, 20});
  QApplication::sendEvent(list().row(row), &enter);
  dispatch.advance(rest);
}

void PanelScene::openMenu(std::size_t row) {
  auto* target = list().row(row);
  target->onMenu(target->mapToGlobal(QPoint(120, 30)));
  dispatch.advance(rest);
}

void PanelScene::drag(std::size_t row, QPoint from, QPoint to) {
  auto* target = list().row(row);
  const auto send = [target](QEvent::Type type, QPoint point, Qt::MouseButton button) {
    QMouseEvent event(type, point, target->mapToGlobal(point), button, Qt::LeftButton, {});
    QApplication::sendEvent(target, &event);
  };
  send(QEvent::MouseButtonPress, from, Qt::LeftButton);
  send(QEvent::MouseMove, from + QPoint(6, 0), Qt::NoButton);
  send(QEvent::MouseMove, to, Qt::NoButton);
  dispatch.advance(rest);
}

void PanelScene::clickButton(const char* accessibleName) { filter(accessibleName).click(); }

/// Where the pointer rests on it.
void PanelScene::askForToolTip(const char* accessibleName) {
  auto& button = filter(accessibleName);
  const QPoint place = button.rect().center();
  QHelpEvent event(QEvent::ToolTip, place, button.mapToGlobal(place));
  QCoreApplication::sendEvent(&button, &event);
}

void PanelScene::choose(const char* title) {
  auto* menu = qobject_cast<VantorelMenu*>(QApplication::activePopupWidget());
  const auto actions = menu->actions();
  for (auto* action : actions) {
    if (action->text() != QString::fromUtf8(title)) continue;
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
    return;
  }
  throw std::logic_error("no such row");
}

void PanelScene::showPreview(std::size_t row, const SharedBitmap& bitmap) {
  list().showPreview(row);
  if (bitmap) list().setThumbnail(Uuid(list().row(row)->content().id), bitmap);
  dispatch.advance(rest);
}

QWidget* PanelScene::panel() { return shownWindow("Vantorel"); }

ClipListView& PanelScene::list() { return *panel()->findChild<ClipListView*>(); }

std::optional<std::size_t> PanelScene::rowTitled(const char* start) {
  for (std::size_t i = 0; i < list().rowCount(); ++i) {
    const auto& content = list().row(i)->content();
    if (content.title.starts_with(start) || content.metadata.starts_with(start)) return i;
  }
  return std::nullopt;
}

void PanelScene::giveThumbnail(const char* start, const SharedBitmap& bitmap) {
  if (const auto row = rowTitled(start)) {
    list().setThumbnail(Uuid(list().row(*row)->content().id), bitmap);
  }
}

}  // namespace vantorel
