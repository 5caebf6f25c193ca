// SPDX-License-Identifier: MIT
#include "platform/linux/x11/toolkit/ToolkitConnection.h"

#include <QGuiApplication>

namespace vantorel {

xcb_connection_t* toolkitConnection() {
  const auto* application = qGuiApp;
  if (application == nullptr) return nullptr;
  const auto* native = application->nativeInterface<QNativeInterface::QX11Application>();
  return native != nullptr ? native->connection() : nullptr;
}

}  // namespace vantorel
