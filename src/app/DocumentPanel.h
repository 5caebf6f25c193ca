// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string_view>

#include "app/Language.h"
#include "chrome/ChromeServices.h"
#include "chrome/VantorelPanel.h"

namespace vantorel {

class PushButton;

[[nodiscard]] constexpr Qt::LayoutDirection directionOf(Language language) {
  return language == Language::hebrew ? Qt::RightToLeft : Qt::LeftToRight;
}

/// One of the documents' texts with this computer's words.
[[nodiscard]] QString shownText(std::string_view text);

/// A window to read. Escape asks for its end, and Return where no button has the keyboard, as the
/// window manager may. Main thread.
class DocumentPanel : public VantorelPanel {
  Q_OBJECT

 public:
  /// The receiver may hide the panel and let it go by `deleteLater`.
  std::function<void()> onClose;

 protected:
  DocumentPanel(const QString& title, QSize size, Qt::LayoutDirection direction,
                const ChromeServices& services);

  void askToClose();
  /// Gives a button the document's font, and something to do.
  void setUp(PushButton& button, std::function<void()> action);
};

}  // namespace vantorel
