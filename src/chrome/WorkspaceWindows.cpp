// SPDX-License-Identifier: MIT
#include "chrome/WorkspaceWindows.h"

#include <QApplication>
#include <QPointer>
#include <QVariant>
#include <QWidget>

#include "platform/WindowSpaces.h"

namespace vantorel {
namespace {

constexpr auto predecessorKey = "predecessor";
using Predecessor = QPointer<QWidget>;

}  // namespace

void showOnAllWorkspaces(QWidget& window, const WindowSpaces* spaces) {
  if (!window.isVisible()) {
    window.setProperty(predecessorKey,
                       QVariant::fromValue(Predecessor(QApplication::activeWindow())));
  }
  if (spaces != nullptr) spaces->joinAll(window.winId());
}

// Some window managers pass over windows that are on every desktop when the keyboard falls free.
void dismiss(QWidget& window) {
  const bool hadKeyboard = window.isActiveWindow();
  window.hide();
  const auto predecessor = window.property(predecessorKey).value<Predecessor>();
  if (hadKeyboard && predecessor && predecessor->isVisible()) predecessor->activateWindow();
}

void forgetPredecessor(QWidget& window) { window.setProperty(predecessorKey, QVariant()); }

}  // namespace vantorel
