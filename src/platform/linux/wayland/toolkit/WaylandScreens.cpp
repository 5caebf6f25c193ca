// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/toolkit/WaylandScreens.h"

#include <QGuiApplication>
#include <QScreen>
#include <chrono>

namespace vantorel {
namespace {

constexpr std::chrono::milliseconds patience{100};

}  // namespace

// The compositor tells where it puts what leaves that to it, and nothing else of which is in use.
std::optional<Screen> WaylandScreens::mainScreen() const {
  const auto all = QGuiApplication::screens();
  if (all.size() < 2) return QtScreens::mainScreen();
  const BareSurface probe(compositor_, nullptr, BareSurface::Extent::onePixel,
                          BareSurface::Pointer::passes);
  compositor_.waitUntil([&probe] { return probe.entered() != nullptr; },
                        std::chrono::steady_clock::now() + patience);
  for (qsizetype i = 0; i < all.size(); ++i) {
    if (ToolkitCompositor::outputOf(*all[i]) != probe.entered()) continue;
    return screens()[static_cast<std::size_t>(i)];
  }
  return QtScreens::mainScreen();
}

}  // namespace vantorel
