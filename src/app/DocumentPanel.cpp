// SPDX-License-Identifier: MIT
#include "app/DocumentPanel.h"

#include <QKeyEvent>
#include <utility>

#include "app/TextBlock.h"
#include "chrome/FocusedButton.h"
#include "chrome/KeySymbols.h"
#include "chrome/PushButton.h"

namespace vantorel {
namespace {

constexpr double cornerRadius = 22;

}  // namespace

QString shownText(std::string_view text) { return QString::fromStdString(spelledWords(text)); }

DocumentPanel::DocumentPanel(const QString& title, QSize size, Qt::LayoutDirection direction,
                             const ChromeServices& services)
    : VantorelPanel(title, size, cornerRadius, services.accessibility, services.backdrops) {
  setLayoutDirection(direction);
  onKeyPress = [this](const QKeyEvent& event) {
    const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (!isReturn && event.key() != Qt::Key_Escape) return false;
    if (auto* button = isReturn ? focusedButton(*this) : nullptr) {
      button->click();
    } else {
      askToClose();
    }
    return true;
  };
  onCloseRequested = [this] { askToClose(); };
}

void DocumentPanel::askToClose() {
  if (onClose) onClose();
}

void DocumentPanel::setUp(PushButton& button, std::function<void()> action) {
  QFont font = button.font();
  font.setFamilies(documentFont(1).families());
  button.setFont(font);
  connect(&button, &PushButton::clicked, this, std::move(action));
}

}  // namespace vantorel
