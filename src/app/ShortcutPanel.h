// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/HotKeyShortcut.h"
#include "app/ShortcutAdvice.h"
#include "chrome/ChromeServices.h"
#include "chrome/VantorelPanel.h"
#include "platform/KeyEvent.h"
#include "platform/KeyboardGrabs.h"

class QHBoxLayout;

namespace vantorel {

class CodeBlock;
class PushButton;
class ShortcutPill;
class SpokenNotice;
class TextBlock;

/// Records a shortcut: every key that is pressed while it is in front comes here, also those that
/// the window manager or the registered shortcut itself would have taken. Main thread.
class ShortcutPanel : public VantorelPanel {
  Q_OBJECT

 public:
  /// While another program has the keyboard, it is asked for again after this interval, so many
  /// times.
  static constexpr Seconds grabRetryInterval{0.05};
  static constexpr int grabAttempts = 40;
  /// A panel that is forgotten gives the keyboard back, or the screen could not be locked.
  static constexpr Seconds grabIdleLimit{60};

  /// `display` is the shortcut in force; `advice` is there where the user has to give the program
  /// its keys. All services outlive this.
  ShortcutPanel(const ChromeServices& services, KeyboardGrabs& grabs,
                KeyCodeForScanCode keyCodeForScanCode, std::string_view display,
                const std::optional<ShortcutAdvice>& advice = std::nullopt);
  ~ShortcutPanel() override;
  ShortcutPanel(const ShortcutPanel&) = delete;
  ShortcutPanel& operator=(const ShortcutPanel&) = delete;

  /// A key that may be a shortcut. The receiver may hide the panel and let it go by `deleteLater`.
  std::function<void(const HotKeyShortcut&)> onRecorded;
  std::function<void()> onReset;
  std::function<void()> onCancel;
  /// The line of the advice is wanted on the clipboard.
  std::function<void(const std::string&)> onCopy;
  /// What the advice offers to do is wanted.
  std::function<void()> onAction;

  void setPrompt(std::string_view prompt);
  [[nodiscard]] bool isAdvising() const { return line_ != nullptr; }
  /// Other keys, in a panel that was built with an advice.
  void setAdvice(std::string_view display, const ShortcutAdvice& advice);
  [[nodiscard]] QString prompt() const;

 protected:
  bool event(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void build(std::string_view display, const std::optional<ShortcutAdvice>& advice);
  PushButton* addButton(QHBoxLayout& row, const char* name, std::function<void()> pressed);
  [[nodiscard]] bool handle(const QKeyEvent& event);
  void takeKeyboard(int attemptsLeft);
  void giveKeyboardBack();
  void watchForIdleness();

  Dispatch& dispatch_;
  KeyboardGrabs& grabs_;
  KeyCodeForScanCode keyCodeForScanCode_;
  TextBlock* prompt_ = nullptr;
  ShortcutPill* pill_ = nullptr;
  CodeBlock* line_ = nullptr;     // of the advice
  PushButton* action_ = nullptr;  // likewise
  SpokenNotice* spoken_ = nullptr;
  std::unique_ptr<Observation> grab_;
  std::unique_ptr<Timer> retry_;
  std::unique_ptr<Timer> idle_;
};

}  // namespace vantorel
