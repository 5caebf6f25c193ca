// Shows the history panel and toasts with sample clips, for looking at them.
//
//   ui_gallery --list                     the names of the states
//   ui_gallery --save DIRECTORY           a picture of each state, over a busy background
//   ui_gallery --show STATE               one state on this desktop, until the program is ended
//   --dark                                with dark colours
//   --opaque                              as without a compositor

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QEnterEvent>
#include <QPainter>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <iostream>

#include "chrome/ToastPanel.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeEventMonitors.h"
#include "fakes/FakeFileThumbnails.h"
#include "fakes/FakeIcons.h"
#include "fakes/FakeImageDecoder.h"
#include "fakes/FakePasteboard.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeSyntheticInput.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/TestStore.h"
#include "panel/ClipListView.h"
#include "panel/ClipRowView.h"
#include "panel/HistoryPanelController.h"
#include "ui/GalleryPictures.h"

namespace {

using namespace vantorel;

/// A panel with a store of its own.
struct Stage {
  Stage() {
    screens.setScreens({{{0, 0, 1280, 640}, {0, 0, 1280, 640}, 1}});
    screens.setMouseLocation({1, 1});
  }

  Uuid add(ClipItem item, const char* app, Seconds ago = Seconds(0)) {
    item.createdAt = advanced(dispatch.now(), -ago);
    if (app != nullptr) item.sourceAppName = app;
    store->insert(item);
    return item.id;
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
    QTest::keyClick(panel()->windowHandle(), key, modifiers);
  }
  void type(const char* text) const {
    for (; *text != 0; ++text) QTest::keyClick(panel()->windowHandle(), *text);
  }
  static QWidget* panel() {
    const auto widgets = QApplication::topLevelWidgets();
    for (auto* widget : widgets) {
      if (widget->windowTitle() == QStringLiteral("Vantorel")) return widget;
    }
    return nullptr;
  }

  TestStore store;
  ManualDispatch& dispatch = store.dispatch();
  FakePasteboard pasteboard{dispatch};
  FakeWorkspace workspace{dispatch};
  FakeSyntheticInput input;
  FakeImageDecoder images;
  FakeFileThumbnails thumbnails;
  FakeIcons icons;
  FakeScreens screens;
  FakeEventMonitors monitors;
  FakeAccessibilityPreferences accessibility;
  FakeWindowBackdrops backdrops;
  PasteController paste{
      *store, PasteServices{pasteboard, workspace, input, dispatch, store.files(), images}};
  HistoryPanelController controller{
      *store, paste,
      PanelServices{dispatch, screens, monitors, accessibility, store.files(), images, thumbnails,
                    icons, &backdrops}};
  ToastPresenter toast{ChromeServices{dispatch, screens, accessibility, &backdrops}};
};

ClipItem picture(const char* size) {
  ClipItem item = imageItem("sample.asset", size);
  item.preview = size;
  return item;
}

ClipItem video(const char* path) {
  ClipItem item = filesItem({path});
  item.title = "Video";
  item.preview = std::filesystem::path(path).filename().string();
  return item;
}

void addMixed(Stage& stage) {
  constexpr double hour = 3600;
  constexpr double day = 24 * hour;
  stage.add(textItem("ssh -L 8080:localhost:80 deploy@staging.example.org"), "Terminal",
            Seconds(4 * day));
  stage.add(filesItem({"/nonexistent/Budget 2025.ods"}), "Files", Seconds(3 * day));
  stage.add(textItem("Dear Ms Aldington,\n\nthank you for your letter of the 3rd. We are pleased "
                     "to confirm the meeting on Thursday."),
            "Thunderbird", Seconds(1.3 * day));
  stage.add(video("/etc/hostname"), "Files", Seconds(1.2 * day));
  stage.add(filesItem({"/etc/passwd", "/etc/hostname", "/etc/hosts"}), "Files", Seconds(9 * hour));
  stage.add(picture("3840 × 2160 px"), "Spectacle", Seconds(3 * hour));
  stage.add(textItem("שלום לכולם, הפגישה נדחתה ליום רביעי בשעה 14:00 בחדר Blue"), "Firefox",
            Seconds(2 * hour));
  stage.add(textItem("https://www.example.org/articles/2025/03/how-to-keep-a-clipboard-history"),
            "Firefox", Seconds(0.4 * hour));
  stage.add(textItem("int main() { return 0; }"), nullptr, Seconds(60));
}

void addPins(Stage& stage) {
  const auto address =
      stage.add(textItem("12 Harbour Street, Galway"), "Contacts", Seconds(400000));
  const auto signature = stage.add(textItem("בברכה, צוות התמיכה"), "Thunderbird", Seconds(300000));
  (void)stage.store->togglePinned(address);
  (void)stage.store->togglePinned(signature);
  (void)stage.store->renamePinned(address, "Home address");
}

struct State {
  const char* name;
  std::function<void(Stage&)> prepare;
};

void open(Stage& stage) { stage.controller.toggle(std::nullopt); }

void addPicture(Stage& stage, const char* size, const char* app, double ago) {
  ClipItem item = picture(size);
  item.sourceBundleIdentifier = app;
  stage.add(item, app, Seconds(ago));
}

/// One entry of every kind, from applications with and without icons.
void addKinds(Stage& stage) {
  const auto from = [](ClipItem item, const char* app) {
    item.sourceBundleIdentifier = app;
    return item;
  };
  stage.add(from(filesItem({"/nonexistent/Budget 2025.ods"}), "Files"), "Files", Seconds(90000));
  stage.add(from(video("/etc/hostname"), "Files"), "Files", Seconds(80000));
  stage.add(from(filesItem({"/etc/passwd"}), "Files"), "Files", Seconds(9000));
  addPicture(stage, "320 × 240 px", "Inkscape", 4000);
  addPicture(stage, "1920 × 1080 px", "Spectacle", 3000);
  addPicture(stage, "3840 × 2160 px", "Spectacle", 2000);
  stage.add(from(textItem("שלום לכולם, הפגישה נדחתה ליום רביעי"), "Firefox"), "Firefox",
            Seconds(500));
  stage.add(textItem("Nobody knows where this one came from"), nullptr, Seconds(60));
}

ClipListView& list() { return *Stage::panel()->findChild<ClipListView*>(); }

std::optional<std::size_t> rowTitled(const char* start) {
  for (std::size_t i = 0; i < list().rowCount(); ++i) {
    if (list().row(i)->content().title.starts_with(start) ||
        list().row(i)->content().metadata.starts_with(start)) {
      return i;
    }
  }
  return std::nullopt;
}

void giveThumbnail(const char* start, const SharedBitmap& bitmap) {
  if (const auto row = rowTitled(start)) {
    list().setThumbnail(Uuid(list().row(*row)->content().id), bitmap);
  }
}

void openKinds(Stage& stage) {
  addKinds(stage);
  addPins(stage);
  open(stage);
  giveThumbnail("3840", screenshot(QColor(0xfa, 0xfa, 0xfa)));
  giveThumbnail("1920", screenshot(QColor(0x22, 0x24, 0x28)));
  giveThumbnail("320", logo());
  giveThumbnail("passwd", icon(QColor(0x6f, 0x8f, 0xb5), "T", 128));
  list().setSourceIcon("Firefox", icon(QColor(0xe0, 0x6a, 0x2b), "F"));
  list().setSourceIcon("Files", icon(QColor(0x2d, 0x7d, 0xd2), "D"));
  list().setSourceIcon("Spectacle", icon(QColor(0x3f, 0xa3, 0x6b), "S"));
  list().setSourceIcon("Inkscape", nullptr);
}

void hover(std::size_t row, Stage& stage) {
  QEnterEvent enter({200, 20}, {200, 20}, {200, 20});
  QApplication::sendEvent(list().row(row), &enter);
  stage.dispatch.advance(Seconds(0.2));
}

void drag(std::size_t row, QPoint from, QPoint to) {
  auto* target = list().row(row);
  const auto send = [target](QEvent::Type type, QPoint point, Qt::MouseButton button) {
    QMouseEvent event(type, point, target->mapToGlobal(point), button, Qt::LeftButton, {});
    QApplication::sendEvent(target, &event);
  };
  send(QEvent::MouseButtonPress, from, Qt::LeftButton);
  send(QEvent::MouseMove, from + QPoint(6, 0), Qt::NoButton);
  send(QEvent::MouseMove, to, Qt::NoButton);
}

void showPreviewOf(Stage& stage, ClipItem item, const SharedBitmap& bitmap = nullptr) {
  stage.add(std::move(item), "Notes", Seconds(1));
  open(stage);
  list().showPreview(0);
  if (bitmap) list().setThumbnail(Uuid(list().row(0)->content().id), bitmap);
  stage.dispatch.advance(Seconds(0.2));
}

const std::vector<State>& states() {
  static const std::vector<State> all = {
      {"empty", open},
      {"one",
       [](Stage& stage) {
         stage.add(textItem("A single clip"), "Notes");
         open(stage);
       }},
      {"three",
       [](Stage& stage) {
         stage.add(picture("800 × 600 px"), "GIMP", Seconds(90000));
         stage.add(textItem("Second"), "Notes", Seconds(60));
         stage.add(textItem("First"), "Notes");
         open(stage);
       }},
      {"mixed",
       [](Stage& stage) {
         addMixed(stage);
         open(stage);
       }},
      {"pinned",
       [](Stage& stage) {
         addMixed(stage);
         addPins(stage);
         open(stage);
         stage.press(Qt::Key_Down);
       }},
      {"twenty",
       [](Stage& stage) {
         addPins(stage);
         for (int i = 20; i > 0; --i) {
           stage.add(textItem("Entry number " + std::to_string(i)), "Notes", Seconds(i * 3000));
         }
         open(stage);
         for (int i = 0; i < 12; ++i) stage.press(Qt::Key_Down);
       }},
      {"search",
       [](Stage& stage) {
         addMixed(stage);
         addPins(stage);
         open(stage);
         stage.press(Qt::Key_F, Qt::ControlModifier);
       }},
      {"typed",
       [](Stage& stage) {
         addMixed(stage);
         addPins(stage);
         open(stage);
         stage.type("fire");
       }},
      {"nomatch",
       [](Stage& stage) {
         addMixed(stage);
         open(stage);
         stage.type("xyzzy");
       }},
      {"fullpins",
       [](Stage& stage) {
         addMixed(stage);
         for (int i = 0; i < 5; ++i) (void)stage.store->togglePinned(stage.store->items()[5].id);
         const auto items = stage.store->items();
         for (const auto& item : items) (void)stage.store->togglePinned(item.id);
         open(stage);
       }},
      {"kinds", openKinds},
      {"hovered",
       [](Stage& stage) {
         openKinds(stage);
         hover(3, stage);
       }},
      {"dragged",
       [](Stage& stage) {
         openKinds(stage);
         drag(0, {100, 20}, {110, 78});
         stage.dispatch.advance(Seconds(0.2));
       }},
      {"menu",
       [](Stage& stage) {
         openKinds(stage);
         list().row(1)->onMenu(list().row(1)->mapToGlobal(QPoint(120, 30)));
         stage.dispatch.advance(Seconds(0.2));
       }},
      {"previewtext",
       [](Stage& stage) {
         std::string text =
             "Dear Ms Aldington,\n\nthank you for your letter of the 3rd. We are "
             "pleased to confirm the meeting on Thursday at 10:00 in room 4.\n\n";
         for (int i = 1; i < 30; ++i) text += std::to_string(i) + ". Something to be discussed\n";
         addKinds(stage);
         showPreviewOf(stage, textItem(text));
       }},
      {"previewline",
       [](Stage& stage) {
         addKinds(stage);
         showPreviewOf(stage, textItem("https://www.example.org/articles"));
       }},
      {"previewhebrew",
       [](Stage& stage) {
         addKinds(stage);
         showPreviewOf(stage, textItem("שלום לכולם,\n\nהפגישה נדחתה ליום רביעי בשעה 14:00 בחדר "
                                       "Blue. נא לאשר הגעה עד מחר בבוקר.\n\nבברכה,\nצוות התמיכה"));
       }},
      {"previewpicture",
       [](Stage& stage) {
         addKinds(stage);
         showPreviewOf(stage, picture("3840 × 2160 px"), screenshot(QColor(0xfa, 0xfa, 0xfa)));
       }},
      {"previewlogo",
       [](Stage& stage) {
         addKinds(stage);
         showPreviewOf(stage, picture("320 × 240 px"), logo());
       }},
      {"previewsymbol",
       [](Stage& stage) {
         addKinds(stage);
         showPreviewOf(stage, filesItem({"/nonexistent/A rather long name of a document that "
                                         "somebody wrote in March 2025.odt"}));
       }},
      {"toast", [](Stage& stage) { stage.toast.show("Copied to clipboard. Press ⌘V to paste."); }},
      {"longtoast",
       [](Stage& stage) {
         stage.toast.show("Secure storage is unavailable. Clipboard monitoring is paused.");
       }},
  };
  return all;
}

/// Windows on screen, those in front last.
std::vector<QWidget*> shownWindows() {
  std::vector<QWidget*> shown;
  const auto widgets = QApplication::topLevelWidgets();
  for (auto* widget : widgets) {
    if (widget->isVisible()) shown.push_back(widget);
  }
  std::stable_partition(shown.begin(), shown.end(),
                        [](const QWidget* window) { return window == Stage::panel(); });
  return shown;
}

void paintBackground(QPainter& painter, const QRect& area) {
  painter.fillRect(area, QColor(0x3b, 0x5b, 0x7a));
  for (int y = area.top(); y < area.bottom(); y += 22) {
    painter.fillRect(0, y, area.width(), 11, QColor::fromHsv((y * 5) % 360, 120, 220));
    painter.drawText(4, y + 10,
                     QStringLiteral("The quick brown fox jumps over the lazy dog. ").repeated(4));
  }
}

void save(const State& state, const QDir& directory, const QString& suffix, bool opaque) {
  Stage stage;
  if (opaque) stage.backdrops.setAvailable(Backdrop::none);
  state.prepare(stage);
  QCoreApplication::processEvents();
  const auto windows = shownWindows();
  QRect place;
  for (const auto* window : windows) place |= window->geometry();
  constexpr int margin = 24;
  const double scale = windows.front()->devicePixelRatioF();
  const QSize size = place.size() + QSize(2 * margin, 2 * margin);
  QImage image(size * scale, QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  QPainter painter(&image);
  paintBackground(painter, QRect({}, size));
  for (auto* window : windows) {
    const QPoint corner = window->pos() - place.topLeft() + QPoint(margin, margin);
    if (!window->mask().isEmpty()) painter.setClipRegion(window->mask().translated(corner));
    window->render(&painter, corner, {}, QWidget::DrawChildren);
    painter.setClipping(false);
  }
  painter.end();
  image.save(directory.filePath(QString::fromUtf8(state.name) + suffix + QStringLiteral(".png")));
}

QPalette darkPalette() {
  QPalette palette;
  palette.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2e));
  palette.setColor(QPalette::WindowText, QColor(0xf2, 0xf2, 0xf2));
  palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
  palette.setColor(QPalette::Text, QColor(0xf2, 0xf2, 0xf2));
  palette.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3d));
  palette.setColor(QPalette::ButtonText, QColor(0xf2, 0xf2, 0xf2));
  palette.setColor(QPalette::Highlight, QColor(0x3d, 0x6f, 0xb8));
  return palette;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QCommandLineParser parser;
  parser.addOptions({{"list", "names"},
                     {"save", "pictures", "directory"},
                     {"show", "one state", "state"},
                     {"dark", "dark colours"},
                     {"opaque", "no compositor"}});
  parser.process(application);
  const bool dark = parser.isSet(QStringLiteral("dark"));
  const bool opaque = parser.isSet(QStringLiteral("opaque"));
  if (dark) QApplication::setPalette(darkPalette());

  if (parser.isSet(QStringLiteral("list"))) {
    for (const auto& state : states()) std::cout << state.name << '\n';
    return 0;
  }
  if (parser.isSet(QStringLiteral("save"))) {
    const QDir directory(parser.value(QStringLiteral("save")));
    const auto suffix = QStringLiteral("%1%2-%3x")
                            .arg(dark ? QStringLiteral("-dark") : QString(),
                                 opaque ? QStringLiteral("-opaque") : QString())
                            .arg(application.devicePixelRatio());
    for (const auto& state : states()) save(state, directory, suffix, opaque);
    return 0;
  }
  const auto wanted = parser.value(QStringLiteral("show")).toStdString();
  for (const auto& state : states()) {
    if (wanted != state.name) continue;
    Stage stage;
    if (opaque) stage.backdrops.setAvailable(Backdrop::none);
    state.prepare(stage);
    return QApplication::exec();
  }
  std::cerr << "No such state: " << wanted << '\n';
  return 2;
}
