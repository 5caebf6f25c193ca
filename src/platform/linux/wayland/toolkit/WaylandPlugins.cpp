// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/toolkit/WaylandPlugins.h"

#include <QCoreApplication>
#include <QDir>
#include <QStringList>
#include <algorithm>

namespace vantorel {
namespace {

bool holds(const QStringList& directories, const QString& kind, const QString& pattern) {
  return std::any_of(directories.begin(), directories.end(), [&](const QString& directory) {
    return !QDir(directory + u'/' + kind).entryList({pattern}, QDir::Files).isEmpty();
  });
}

}  // namespace

bool hasWaylandPlugins() {
  const auto directories = QCoreApplication::libraryPaths();
  return holds(directories, QStringLiteral("platforms"), QStringLiteral("libqwayland*.so")) &&
         holds(directories, QStringLiteral("wayland-shell-integration"),
               QStringLiteral("libxdg-shell.so"));
}

}  // namespace vantorel
