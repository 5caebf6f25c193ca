#include "app/DocumentPanel.h"

#include <QKeyEvent>
#include <utility>

#include "app/TextBlock.h"
#include "chrome/PushButton.h"

namespace vantorel {
namespace {

constexpr double cornerRadius = 22;

}  // namespace

DocumentPanel::DocumentPanel(const QString& title, QSize size, const ChromeServices& services)
    : VantorelPanel(title, size, cornerRadius, services.accessibility, services.backdrops) {
  setLayoutDirection(Qt::RightToLeft);
  onKeyPress = [this](const QKeyEvent& event) {
    if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter) return false;
    askToClose();
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
