// SPDX-License-Identifier: MIT
#include "app/AppIconFactory.h"

#include <QFile>

#include "app/BundledResources.h"

namespace vantorel::AppIconFactory {

// Kept as drawings, so that they are sharp at every size that is asked for.
QIcon bundledPNG(std::string_view name) {
  const auto path = bundledResource(name, "svg");
  return QFile::exists(path) ? QIcon(path) : QIcon();
}

}  // namespace vantorel::AppIconFactory
