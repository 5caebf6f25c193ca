// SPDX-License-Identifier: MIT
// Shows the panel, the windows and what they are made of in their states, for looking at them.
//
//   ui_gallery --list                     the names of the states
//   ui_gallery --save DIRECTORY           a picture of each
//   ui_gallery --show STATE               one state on this desktop, until the program is ended
//   --dark                                with dark colours

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <algorithm>
#include <iostream>
#include <string_view>

#include "ui/looks/FixedSurroundings.h"
#include "ui/looks/Look.h"
#include "ui/looks/LookPainter.h"

namespace {

using namespace vantorel;

int save(const QDir& directory, const QString& appearance) {
  directory.mkpath(QStringLiteral("."));
  for (const auto& look : allLooks()) {
    const auto picture = pictureOf(look);
    const auto file = QStringLiteral("%1-%2-%3x.png")
                          .arg(QString::fromStdString(look.name), appearance)
                          .arg(picture.devicePixelRatio());
    if (picture.save(directory.filePath(file))) continue;
    std::cerr << "Cannot write " << file.toStdString() << '\n';
    return 1;
  }
  return 0;
}

int show(const std::string& name) {
  for (const auto& look : allLooks()) {
    if (look.name != name) continue;
    const auto shown = look.show();
    return QApplication::exec();
  }
  std::cerr << "No such state: " << name << '\n';
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  const bool onThisDesktop = std::any_of(
      argv, argv + argc, [](const char* each) { return std::string_view(each) == "--show"; });
  if (!onThisDesktop) fixSurroundings();
  const QApplication application(argc, argv);
  fixApplication();
  QCommandLineParser parser;
  parser.addOptions({{"list", "names"},
                     {"save", "pictures", "directory"},
                     {"show", "one state", "state"},
                     {"dark", "dark colours"}});
  parser.process(application);
  const bool dark = parser.isSet(QStringLiteral("dark"));
  setAppearance(dark ? Appearance::dark : Appearance::light);

  if (parser.isSet(QStringLiteral("list"))) {
    for (const auto& look : allLooks()) std::cout << look.name << '\n';
    return 0;
  }
  if (parser.isSet(QStringLiteral("save"))) {
    return save(QDir(parser.value(QStringLiteral("save"))),
                dark ? QStringLiteral("dark") : QStringLiteral("light"));
  }
  return show(parser.value(QStringLiteral("show")).toStdString());
}
