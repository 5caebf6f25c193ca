// SPDX-License-Identifier: MIT
// The panel by itself.

#include <QByteArray>
#include <QPoint>
#include <memory>
#include <string>

#include "ui/looks/Look.h"
#include "ui/looks/PanelScene.h"

namespace vantorel {
namespace {

Look look(const char* name, void (*prepare)(PanelScene&), Ground ground = Ground::plain) {
  return {std::string("panel-") + name,
          [prepare]() -> std::shared_ptr<void> {
            auto scene = std::make_shared<PanelScene>();
            prepare(*scene);
            return scene;
          },
          ground};
}

void openMixed(PanelScene& scene) {
  scene.addMixed();
  scene.open();
}

void openPinned(PanelScene& scene) {
  scene.addMixed();
  scene.addPins();
  scene.open();
}

void selectSecond(PanelScene& scene) {
  openPinned(scene);
  scene.press(Qt::Key_Down);
}

void scrollThroughTwenty(PanelScene& scene) {
  scene.addPins();
  for (int i = 20; i > 0; --i) {
    scene.add(textItem("Entry number " + std::to_string(i)), "Notes", i * 3000);
  }
  scene.open();
  for (int i = 0; i < 12; ++i) scene.press(Qt::Key_Down);
}

/// Every entry of the mixed ones that can be, so that no other may be pinned.
void pinAllThatMayBe(PanelScene& scene) {
  scene.addMixed();
  for (int i = 0; i < 5; ++i) (void)scene.store->togglePinned(scene.store->items()[5].id);
  scene.open();
}

void nameOfAPinInHebrew(PanelScene& scene) {
  scene.addKinds();
  scene.addPins();
  (void)scene.store->renamePinned(scene.store->items().front().id, "כתובת הבית");
  scene.open();
}

/// On a desktop that speaks Hebrew, dates do too.
std::shared_ptr<void> hebrewDates() {
  qputenv("LC_ALL", "he_IL.UTF-8");
  auto scene = std::make_shared<PanelScene>();
  qputenv("LC_ALL", "C.UTF-8");
  openPinned(*scene);
  return scene;
}

}  // namespace

std::vector<Look> panelLooks() {
  return {
      look("empty", [](PanelScene& scene) { scene.open(); }),
      look("one",
           [](PanelScene& scene) {
             scene.add(textItem("A single clip"), "Notes");
             scene.open();
           }),
      look("mixed", openMixed),
      look("pinned", selectSecond),
      look("full-pins", pinAllThatMayBe),
      look("hebrew-pin", nameOfAPinInHebrew),
      look("scrolled", scrollThroughTwenty),
      look("kinds", [](PanelScene& scene) { scene.openKinds(); }),
      look("hovered",
           [](PanelScene& scene) {
             scene.openKinds();
             scene.hover(3);
           }),
      look("dragged",
           [](PanelScene& scene) {
             scene.openKinds();
             scene.drag(0, {100, 20}, {110, 78});
           }),
      look("search",
           [](PanelScene& scene) {
             openPinned(scene);
             scene.press(Qt::Key_F, Qt::ControlModifier);
           }),
      look("found",
           [](PanelScene& scene) {
             openPinned(scene);
             scene.type("fire");
           }),
      look("list-with-the-keyboard",
           [](PanelScene& scene) {
             openPinned(scene);
             scene.press(Qt::Key_F, Qt::ControlModifier);
             scene.press(Qt::Key_Tab);
           }),
      look("filter-with-the-keyboard",
           [](PanelScene& scene) {
             openPinned(scene);
             scene.press(Qt::Key_F, Qt::ControlModifier);
             scene.press(Qt::Key_Tab);
             scene.press(Qt::Key_Tab);
           }),
      look("nothing-found",
           [](PanelScene& scene) {
             openMixed(scene);
             scene.type("xyzzy");
           }),
      look("filtered",
           [](PanelScene& scene) {
             openPinned(scene);
             scene.press(Qt::Key_F, Qt::ControlModifier);
             scene.clickButton("Filter by type");
             PanelScene::choose("Files");
           }),
      look("filtered-by-app",
           [](PanelScene& scene) {
             openPinned(scene);
             scene.press(Qt::Key_F, Qt::ControlModifier);
             scene.clickButton("Filter by app");
             PanelScene::choose("Firefox");
           }),
      look(
          "on-blur",
          [](PanelScene& scene) {
            scene.backdrops.setAvailable(Backdrop::blurrable);
            scene.openKinds();
          },
          Ground::blurred),
      look(
          "on-a-white-page",
          [](PanelScene& scene) {
            scene.backdrops.setAvailable(Backdrop::blurrable);
            scene.openKinds();
          },
          Ground::white),
      look("without-compositor",
           [](PanelScene& scene) {
             scene.backdrops.setAvailable(Backdrop::none);
             scene.openKinds();
           }),
      {"panel-hebrew-dates", hebrewDates},
  };
}

}  // namespace vantorel
