// SPDX-License-Identifier: MIT
#include "app/BundledResources.h"

#include <QDir>

// Resources of a static library have to be asked for, outside every namespace.
static void loadApplicationResources() { Q_INIT_RESOURCE(application); }

namespace vantorel {

QString bundledResource(std::string_view name, std::string_view extension) {
  loadApplicationResources();
  const auto text = [](std::string_view part) {
    return QString::fromUtf8(part.data(), static_cast<qsizetype>(part.size()));
  };
  return QStringLiteral(":/vantorel/%1.%2").arg(text(name), text(extension));
}

}  // namespace vantorel
