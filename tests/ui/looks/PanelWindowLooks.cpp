// SPDX-License-Identifier: MIT
// The panel with what belongs to it: menus, the sheet for a name, previews.

#include <QLineEdit>
#include <QWidget>
#include <memory>
#include <string>
#include <utility>

#include "ui/looks/Look.h"
#include "ui/looks/LookPainter.h"
#include "ui/looks/PanelScene.h"
#include "ui/looks/SamplePictures.h"

namespace vantorel {
namespace {

Look look(const char* name, std::function<void(PanelScene&)> prepare) {
  return {name, [prepare = std::move(prepare)]() -> std::shared_ptr<void> {
            auto scene = std::make_shared<PanelScene>();
            prepare(*scene);
            return scene;
          }};
}

void openSearch(PanelScene& scene) {
  scene.addMixed();
  scene.addPins();
  scene.open();
  scene.press(Qt::Key_F, Qt::ControlModifier);
}

void rename(PanelScene& scene, const char* name) {
  scene.openKinds();
  scene.press(Qt::Key_R, Qt::ControlModifier);
  auto* field = shownWindow("Name Pinned Clip")->findChild<QLineEdit*>();
  field->setText(QString::fromUtf8(name));
}

Look preview(const char* name, ClipItem item, SharedBitmap bitmap = nullptr) {
  return look(name, [item = std::move(item), bitmap = std::move(bitmap)](PanelScene& scene) {
    scene.addKinds();
    scene.add(item, "Notes", 1);
    scene.open();
    scene.showPreview(0, bitmap);
  });
}

std::string longText() {
  std::string text =
      "Dear Ms Aldington,\n\nthank you for your letter of the 3rd. We are pleased to confirm the "
      "meeting on Thursday at 10:00 in room 4.\n\n";
  for (int i = 1; i < 30; ++i) text += std::to_string(i) + ". Something to be discussed\n";
  return text;
}

constexpr auto hebrewText =
    "שלום לכולם,\n\nהפגישה נדחתה ליום רביעי בשעה 14:00 בחדר Blue. נא לאשר הגעה עד מחר "
    "בבוקר.\n\nבברכה,\nצוות התמיכה";

/// Where the panel stands at the right, its previews come up on its left.
void previewOnTheLeft(PanelScene& scene) {
  scene.addKinds();
  scene.open();
  PanelScene::panel()->move(860, 80);
  scene.showPreview(1);
}

std::vector<Look> previews() {
  return {
      preview("preview-text", textItem(longText())),
      preview("preview-line", textItem("https://www.example.org/articles")),
      preview("preview-hebrew", textItem(hebrewText)),
      look("preview-on-the-left", previewOnTheLeft),
      preview("preview-picture", pictureItem("3840 × 2160 px"), screenshot({0xfa, 0xfa, 0xfa})),
      preview("preview-drawing", pictureItem("320 × 240 px"), logo()),
      preview("preview-lost-file", filesItem({"/nonexistent/A rather long name of a document that "
                                              "somebody wrote in March 2025.odt"})),
  };
}

}  // namespace

std::vector<Look> panelWindowLooks() {
  std::vector<Look> looks = {
      look("menu-of-a-pin",
           [](PanelScene& scene) {
             scene.openKinds();
             scene.openMenu(1);
           }),
      look("menu-of-a-row",
           [](PanelScene& scene) {
             scene.openKinds();
             scene.openMenu(3);
           }),
      look("menu-of-types",
           [](PanelScene& scene) {
             openSearch(scene);
             scene.clickButton("Filter by type");
           }),
      look("menu-of-applications",
           [](PanelScene& scene) {
             openSearch(scene);
             scene.clickButton("Filter by app");
           }),
      look("tool-tip",
           [](PanelScene& scene) {
             openSearch(scene);
             scene.askForToolTip("Filter by type");
           }),
      look("rename", [](PanelScene& scene) { rename(scene, "Home address"); }),
      look("rename-hebrew", [](PanelScene& scene) { rename(scene, "כתובת הבית"); }),
  };
  for (auto& each : previews()) looks.push_back(std::move(each));
  return looks;
}

}  // namespace vantorel
