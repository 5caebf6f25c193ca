// SPDX-License-Identifier: MIT
#include "app/ShortcutPanel.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <utility>

#include "app/CodeBlock.h"
#include "app/ShortcutPill.h"
#include "app/TextBlock.h"
#include "chrome/KeyTranslation.h"
#include "chrome/PushButton.h"
#include "chrome/SpokenNotice.h"

namespace vantorel {
namespace {

constexpr QSize panelSize(350, 164);
constexpr double cornerRadius = 18;
constexpr int spacing = 12;
constexpr int promptWidth = 310;
constexpr int adviceWidth = 460;
constexpr int lineWidth = 420;

constexpr auto title = "Keyboard Shortcut";
constexpr std::string_view pressPrompt = "Press a shortcut with two modifier keys";
constexpr std::string_view refusedPrompt = "Use two modifiers and a letter, number or Space";

TextBlock* text(const QString& words, double points, QFont::Weight weight,
                TextBlock::Importance importance, QWidget* parent) {
  return new TextBlock(
      words,
      {.points = points, .weight = weight, .importance = importance, .direction = Qt::LeftToRight},
      parent);
}

}  // namespace

ShortcutPanel::ShortcutPanel(const ChromeServices& services, KeyboardGrabs& grabs,
                             KeyCodeForScanCode keyCodeForScanCode, std::string_view display,
                             const std::optional<ShortcutAdvice>& advice)
    : VantorelPanel(title, panelSize, cornerRadius, services.accessibility, services.backdrops),
      dispatch_(services.dispatch),
      grabs_(grabs),
      keyCodeForScanCode_(std::move(keyCodeForScanCode)) {
  // A reader goes where the keyboard is, and reads the window out.
  setFocusPolicy(Qt::ClickFocus);
  setFocus();
  // An input method would keep the very keys that switch it.
  setAttribute(Qt::WA_InputMethodEnabled, false);
  setFixedSize(panelSize);
  build(display, advice);
  onKeyPress = [this](const QKeyEvent& event) { return handle(event); };
  onCloseRequested = [this] {
    if (onCancel) onCancel();
  };
}

ShortcutPanel::~ShortcutPanel() = default;

void ShortcutPanel::build(std::string_view display, const std::optional<ShortcutAdvice>& advice) {
  spoken_ = new SpokenNotice(&glass());
  constexpr double titlePoints = 16;
  constexpr double promptPoints = 12.5;
  auto* heading =
      text(title, titlePoints, QFont::DemiBold, TextBlock::Importance::primary, &glass());
  prompt_ = text({}, promptPoints, QFont::Normal, TextBlock::Importance::secondary, &glass());
  prompt_->setFixedWidth(advice ? lineWidth : promptWidth);
  setPrompt(pressPrompt);
  pill_ = new ShortcutPill(display, &glass());

  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(spacing);
  buttons->addStretch();
  if (advice) {
    line_ = new CodeBlock({}, lineWidth, &glass());
    action_ = addButton(*buttons, "", [this] {
      if (onAction) onAction();
    });
    addButton(*buttons, "Copy", [this] {
      if (onCopy) onCopy(line_->text().toStdString());
    });
  }
  addButton(*buttons, "Reset", [this] {
    if (onReset) onReset();
  });
  addButton(*buttons, advice ? "Close" : "Cancel", [this] {
    if (onCancel) onCancel();
  });
  buttons->addStretch();
  auto* column = new QVBoxLayout(&glass());
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(spacing);
  column->addStretch();
  column->addWidget(heading, 0, Qt::AlignHCenter);
  column->addWidget(prompt_, 0, Qt::AlignHCenter);
  column->addWidget(pill_, 0, Qt::AlignHCenter);
  if (advice) column->addWidget(line_, 0, Qt::AlignHCenter);
  column->addLayout(buttons);
  column->addStretch();
  if (advice) setAdvice(display, *advice);
}

PushButton* ShortcutPanel::addButton(QHBoxLayout& row, const char* name,
                                     std::function<void()> pressed) {
  auto* button = new PushButton(QString::fromLatin1(name), &glass());
  // All keys belong to the shortcut.
  button->setFocusPolicy(Qt::NoFocus);
  connect(button, &PushButton::clicked, this, std::move(pressed));
  row.addWidget(button);
  return button;
}

void ShortcutPanel::setAdvice(std::string_view display, const ShortcutAdvice& advice) {
  pill_->setShortcut(display);
  line_->setCode(QString::fromStdString(advice.line));
  action_->setText(QString::fromStdString(advice.action));
  action_->setVisible(!advice.action.empty());
  setFixedSize(adviceWidth, panelSize.height() + spacing + line_->height());
  setPrompt(advice.prompt);
}

void ShortcutPanel::setPrompt(std::string_view prompt) {
  prompt_->setText(QString::fromUtf8(prompt.data(), static_cast<qsizetype>(prompt.size())));
  prompt_->setAccessibleName(prompt_->text());
  if (isVisible()) spoken_->say(prompt_->text());
}

QString ShortcutPanel::prompt() const { return prompt_->text(); }

bool ShortcutPanel::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate) takeKeyboard(grabAttempts);
  if (event->type() == QEvent::WindowDeactivate) giveKeyboardBack();
  return VantorelPanel::event(event);
}

void ShortcutPanel::hideEvent(QHideEvent* event) {
  giveKeyboardBack();
  VantorelPanel::hideEvent(event);
}

bool ShortcutPanel::handle(const QKeyEvent& event) {
  // A key that is held, and those that are held with another, are not what is being recorded.
  if (event.isAutoRepeat() || isModifierKey(event)) return true;
  if (!grab_) takeKeyboard(grabAttempts);
  watchForIdleness();
  const auto key = translatedForShortcut(event, keyCodeForScanCode_);
  if (key.keyCode == keys::escape) {
    if (onCancel) onCancel();
  } else if (const auto shortcut = HotKeyShortcut::fromEvent(key)) {
    if (onRecorded) onRecorded(*shortcut);
  } else {
    setPrompt(refusedPrompt);
  }
  return true;
}

void ShortcutPanel::takeKeyboard(int attemptsLeft) {
  retry_.reset();
  if (!isVisible() || grab_) return;
  grab_ = grabs_.grabKeyboard(winId());
  if (grab_) return watchForIdleness();
  // Without it the panel still gets every key that nobody else has a use for.
  if (attemptsLeft <= 1) return;
  retry_ =
      dispatch_.after(grabRetryInterval, [this, attemptsLeft] { takeKeyboard(attemptsLeft - 1); });
}

void ShortcutPanel::giveKeyboardBack() {
  retry_.reset();
  idle_.reset();
  grab_.reset();
}

void ShortcutPanel::watchForIdleness() {
  if (grab_) idle_ = dispatch_.after(grabIdleLimit, [this] { giveKeyboardBack(); });
}

}  // namespace vantorel
