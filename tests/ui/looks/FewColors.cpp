// SPDX-License-Identifier: MIT
#include "ui/looks/FewColors.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <vector>

namespace vantorel {
namespace {

constexpr std::size_t mostColors = 255;

struct Used {
  QRgb color = 0;
  int distance = 0;  // to the nearest chosen colour
  int nearest = 0;   // the chosen colour's place
};

int distance(QRgb a, QRgb b) {
  return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                   std::abs(qBlue(a) - qBlue(b))});
}

std::map<QRgb, int> countColors(const QImage& image) {
  std::map<QRgb, int> counts;
  for (int y = 0; y < image.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x) ++counts[line[x]];
  }
  return counts;
}

void choose(std::vector<Used>& all, QRgb color, QList<QRgb>& chosen) {
  for (auto& used : all) {
    const int away = distance(used.color, color);
    if (!chosen.isEmpty() && away >= used.distance) continue;
    used.distance = away;
    used.nearest = static_cast<int>(chosen.size());
  }
  chosen.append(color);
}

}  // namespace

QImage inFewColors(const QImage& image) {
  const QImage source = image.convertToFormat(QImage::Format_RGB32);
  const auto counts = countColors(source);
  if (counts.empty()) return image;
  std::vector<Used> all;
  all.reserve(counts.size());
  for (const auto& [color, count] : counts) all.push_back({color});

  // The most frequent one first, then always the one that is worst served by those before it.
  QList<QRgb> chosen;
  const auto byCount = [](const auto& a, const auto& b) { return a.second < b.second; };
  choose(all, std::max_element(counts.begin(), counts.end(), byCount)->first, chosen);
  const auto byDistance = [](const Used& a, const Used& b) { return a.distance < b.distance; };
  while (static_cast<std::size_t>(chosen.size()) < std::min(mostColors, all.size())) {
    choose(all, std::max_element(all.begin(), all.end(), byDistance)->color, chosen);
  }

  std::map<QRgb, int> places;
  for (const auto& used : all) places[used.color] = used.nearest;
  QImage reduced(source.size(), QImage::Format_Indexed8);
  reduced.setColorTable(chosen);
  for (int y = 0; y < source.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(source.constScanLine(y));
    for (int x = 0; x < source.width(); ++x) {
      reduced.scanLine(y)[x] = static_cast<uchar>(places[line[x]]);
    }
  }
  return reduced;
}

}  // namespace vantorel
