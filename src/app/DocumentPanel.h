#pragma once

#include <functional>

#include "chrome/ChromeServices.h"
#include "chrome/VantorelPanel.h"

namespace vantorel {

class PushButton;

/// A window to read, from right to left. Return asks for its end, as the window manager may.
/// Main thread.
class DocumentPanel : public VantorelPanel {
  Q_OBJECT

 public:
  /// The receiver may hide the panel and let it go by `deleteLater`.
  std::function<void()> onClose;

 protected:
  DocumentPanel(const QString& title, QSize size, const ChromeServices& services);

  void askToClose();
  /// Gives a button the document's font, and something to do.
  void setUp(PushButton& button, std::function<void()> action);
};

}  // namespace vantorel
