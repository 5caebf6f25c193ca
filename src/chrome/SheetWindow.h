// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>
#include <functional>

#include "chrome/ChromeServices.h"

class QLabel;
class QVBoxLayout;

namespace vantorel {

class ReadableGlassView;

/// A question on rounded glass with two answers. Attached to a window it stands over it and keeps
/// the user from it until it is answered; it never waits for the answer. Main thread.
class SheetWindow : public QWidget {
  Q_OBJECT

 public:
  /// A warning asks before something is lost: it begins on its way out, and Return presses nothing
  /// there but the button that has the keyboard.
  enum class Style { standard, warning };
  enum class Answer { accepted, cancelled };
  struct Question {
    QString message;          // also the window's title
    QString informativeText;  // may be empty
    QString acceptTitle;      // what Return does, unless a button has the keyboard
    QString cancelTitle;      // what Escape does
    Style style = Style::standard;
  };

  /// Of the text and the accessory, in points.
  static constexpr int contentWidth = 280;

  /// `attachedTo` may be null, then the sheet stands in the middle of the screen under the pointer.
  SheetWindow(const Question& question, const ChromeServices& services, QWidget* attachedTo);

  /// Called once, when the sheet has gone; it goes too when its window is hidden. It may destroy
  /// the sheet.
  std::function<void(Answer)> onFinished;

  /// Puts a control between the text and the buttons; the sheet owns it.
  void setAccessory(QWidget* accessory);

  /// Shows the sheet with the keyboard in `firstResponder`, a part of it; without one a warning has
  /// it in the button that cancels, and another sheet nowhere in particular.
  void begin(QWidget* firstResponder = nullptr);
  /// Takes the sheet away as if the user had answered so; nothing when it has gone already.
  void end(Answer answer);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void addText(const Question& question);
  void addButtons(const Question& question);
  void place();
  void tintText();

  ChromeServices services_;
  Style style_;
  QWidget* attachedTo_;
  ReadableGlassView* glass_;
  QVBoxLayout* column_;
  QWidget* cancel_ = nullptr;
  QLabel* message_ = nullptr;
  QLabel* informativeText_ = nullptr;
  bool open_ = false;
};

}  // namespace vantorel
