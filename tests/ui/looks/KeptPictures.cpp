// SPDX-License-Identifier: MIT
#include "ui/looks/KeptPictures.h"

#include <QDir>
#include <QFile>

#include "ui/looks/FewColors.h"
#include "ui/looks/PictureComparison.h"

namespace vantorel {
namespace {

QDir keptDirectory() { return {QStringLiteral(VANTOREL_LOOKS_KEPT)}; }

QString outputFile(const std::string& name, const char* what) {
  const QDir directory(QStringLiteral(VANTOREL_LOOKS_OUTPUT));
  directory.mkpath(QStringLiteral("."));
  return directory.filePath(QString::fromStdString(name) + QString::fromUtf8(what));
}

std::string described(const QSize& size) {
  return std::to_string(size.width()) + " × " + std::to_string(size.height());
}

std::string described(const PictureDifference& difference) {
  if (difference.actualSize != difference.expectedSize) {
    return "is " + described(difference.actualSize) + " pixels, not " +
           described(difference.expectedSize);
  }
  return "differs in " + std::to_string(difference.blocks.size()) + " places";
}

}  // namespace

testing::AssertionResult looksAsKept(const QImage& actual, const std::string& name) {
  const QString actualFile = outputFile(name, ".actual.png");
  const QString differenceFile = outputFile(name, ".difference.png");
  QFile::remove(actualFile);
  QFile::remove(differenceFile);
  const QImage kept(keptDirectory().filePath(QString::fromStdString(name) + ".png"));
  const auto difference = comparePictures(actual, kept);
  if (difference.none()) return testing::AssertionSuccess();

  auto failure = testing::AssertionFailure() << name;
  constexpr int smallest = 0;
  if (!inFewColors(actual).save(actualFile, nullptr, smallest))
    failure << " cannot be written to " << actualFile.toStdString();
  if (kept.isNull()) {
    failure << " is not kept yet";
  } else {
    failure << ' ' << described(difference);
    if (differencePicture(kept, difference).save(differenceFile)) {
      failure << "\n  difference: " << differenceFile.toStdString();
    }
  }
  return failure << "\n  actual: " << actualFile.toStdString()
                 << "\n  tools/reference-pictures keeps what is drawn now";
}

std::vector<std::string> keptPictures() {
  std::vector<std::string> names;
  const auto files = keptDirectory().entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name);
  for (const auto& file : files) names.push_back(file.chopped(4).toStdString());
  return names;
}

}  // namespace vantorel
