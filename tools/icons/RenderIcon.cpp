// SPDX-License-Identifier: MIT
// Draws an SVG picture as PNGs of the sizes that icon themes ask for.
//
//   render_icon PICTURE SIZE:OUTPUT...

#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QStringList>
#include <QSvgRenderer>
#include <cstdio>

namespace {

bool save(QSvgRenderer& picture, int side, const QString& path) {
  QImage image(side, side, QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  picture.render(&painter);
  painter.end();
  return image.save(path, "PNG");
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() < 3) {
    std::fputs("usage: render_icon PICTURE SIZE:OUTPUT...\n", stderr);
    return 2;
  }
  QSvgRenderer picture(arguments[1]);
  if (!picture.isValid()) {
    std::fprintf(stderr, "render_icon: cannot read %s\n", qPrintable(arguments[1]));
    return 1;
  }
  for (qsizetype i = 2; i < arguments.size(); ++i) {
    const auto colon = arguments[i].indexOf(u':');
    const int side = arguments[i].left(colon).toInt();
    const QString path = arguments[i].mid(colon + 1);
    if (colon < 0 || side <= 0 || !save(picture, side, path)) {
      std::fprintf(stderr, "render_icon: cannot write %s\n", qPrintable(arguments[i]));
      return 1;
    }
  }
  return 0;
}
