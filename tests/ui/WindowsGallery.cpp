// Shows the recorder, the help and the privacy policy, for looking at them.
//
//   windows_gallery --save DIRECTORY      a picture of each, over a busy background
//   --dark                                with dark colours
//   --opaque                              as without a compositor

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QPainter>
#include <QScrollBar>
#include <QStyleFactory>
#include <functional>
#include <memory>
#include <vector>

#include "app/HelpPanel.h"
#include "app/PolicyTextView.h"
#include "app/PrivacyPolicyPanel.h"
#include "app/ShortcutPanel.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeKeyboardGrabs.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/ManualDispatch.h"

namespace {

using namespace vantorel;

struct Stage {
  ManualDispatch dispatch;
  FakeScreens screens;
  FakeAccessibilityPreferences accessibility;
  FakeWindowBackdrops backdrops;
  FakeKeyboardGrabs grabs;
  ChromeServices services{dispatch, screens, accessibility, &backdrops};
};

using Built = std::unique_ptr<VantorelPanel>;

struct State {
  const char* name;
  std::function<Built(Stage&)> build;
};

Built help(Stage& stage, HelpPanel::Occasion occasion, bool automaticPaste, bool launchAtLogin) {
  return std::make_unique<HelpPanel>(
      stage.services, occasion, HelpPanel::Facts{"⌘⇧V", automaticPaste, launchAtLogin, "0.1.0"});
}

const std::vector<State>& states() {
  static const std::vector<State> all = {
      {"recorder",
       [](Stage& stage) -> Built {
         return std::make_unique<ShortcutPanel>(stage.services, stage.grabs, nullptr, "⌘⇧V");
       }},
      {"recorder-long",
       [](Stage& stage) -> Built {
         auto panel =
             std::make_unique<ShortcutPanel>(stage.services, stage.grabs, nullptr, "⌘⇧⌥⌃Space");
         panel->setPrompt("That shortcut is unavailable. Try another.");
         return panel;
       }},
      {"welcome",
       [](Stage& stage) { return help(stage, HelpPanel::Occasion::firstLaunch, true, false); }},
      {"about", [](Stage& stage) { return help(stage, HelpPanel::Occasion::about, true, true); }},
      {"about-untrusted",
       [](Stage& stage) { return help(stage, HelpPanel::Occasion::about, false, false); }},
      {"policy",
       [](Stage& stage) -> Built {
         return std::make_unique<PrivacyPolicyPanel>(stage.services, bundledPrivacyPolicy());
       }},
      {"policy-middle",
       [](Stage& stage) -> Built {
         auto panel = std::make_unique<PrivacyPolicyPanel>(stage.services, bundledPrivacyPolicy());
         panel->makeKeyAndOrderFront();
         QCoreApplication::processEvents();
         auto* scroller = panel->findChild<PolicyTextView*>()->verticalScrollBar();
         scroller->setValue(scroller->maximum() / 2);
         return panel;
       }},
  };
  return all;
}

/// What a window could stand on: stripes, text and colours.
void paintBackground(QPainter& painter, const QRect& area) {
  constexpr int stripe = 22;
  painter.fillRect(area, QColor(0x3b, 0x5b, 0x7a));
  for (int y = area.top(); y < area.bottom(); y += stripe) {
    painter.fillRect(0, y, area.width(), stripe / 2, QColor::fromHsv((y * 5) % 360, 120, 220));
    painter.drawText(4, y + stripe / 2 - 1,
                     QStringLiteral("The quick brown fox jumps over the lazy dog. ").repeated(4));
  }
}

void save(const State& state, const QDir& directory, const QString& suffix, bool opaque) {
  Stage stage;
  if (opaque) stage.backdrops.setAvailable(Backdrop::none);
  const auto window = state.build(stage);
  window->makeKeyAndOrderFront();
  QCoreApplication::processEvents();
  constexpr int margin = 24;
  const double scale = window->devicePixelRatioF();
  const QSize size = window->size() + QSize(2 * margin, 2 * margin);
  QImage image(size * scale, QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  QPainter painter(&image);
  paintBackground(painter, QRect({}, size));
  if (!window->mask().isEmpty()) painter.setClipRegion(window->mask().translated(margin, margin));
  window->render(&painter, {margin, margin}, {}, QWidget::DrawChildren);
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
  const QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QCommandLineParser parser;
  parser.addOptions(
      {{"save", "pictures", "directory"}, {"dark", "dark colours"}, {"opaque", "no compositor"}});
  parser.process(application);
  const bool dark = parser.isSet(QStringLiteral("dark"));
  const bool opaque = parser.isSet(QStringLiteral("opaque"));
  if (dark) QApplication::setPalette(darkPalette());
  const auto suffix = QStringLiteral("%1%2-%3x")
                          .arg(dark ? QStringLiteral("-dark") : QString(),
                               opaque ? QStringLiteral("-opaque") : QString())
                          .arg(application.devicePixelRatio());
  const QDir directory(parser.value(QStringLiteral("save")));
  for (const auto& state : states()) save(state, directory, suffix, opaque);
  return 0;
}
