#include "app/ShortcutPanel.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <utility>

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
                             KeyCodeForScanCode keyCodeForScanCode, std::string_view display)
    : VantorelPanel(title, panelSize, cornerRadius, services.accessibility, services.backdrops),
      dispatch_(services.dispatch),
      grabs_(grabs),
      keyCodeForScanCode_(std::move(keyCodeForScanCode)) {
  setFixedSize(panelSize);
  // A reader goes where the keyboard is, and reads the window out.
  setFocusPolicy(Qt::ClickFocus);
  setFocus();
  // An input method would keep the very keys that switch it.
  setAttribute(Qt::WA_InputMethodEnabled, false);
  build(display);
  onKeyPress = [this](const QKeyEvent& event) { return handle(event); };
  onCloseRequested = [this] {
    if (onCancel) onCancel();
  };
}

ShortcutPanel::~ShortcutPanel() = default;

void ShortcutPanel::build(std::string_view display) {
  spoken_ = new SpokenNotice(&glass());
  constexpr double titlePoints = 16;
  constexpr double promptPoints = 12.5;
  auto* heading =
      text(title, titlePoints, QFont::DemiBold, TextBlock::Importance::primary, &glass());
  prompt_ = text({}, promptPoints, QFont::Normal, TextBlock::Importance::secondary, &glass());
  prompt_->setFixedWidth(promptWidth);
  setPrompt(pressPrompt);
  auto* reset = new PushButton(QStringLiteral("Reset"), &glass());
  auto* cancel = new PushButton(QStringLiteral("Cancel"), &glass());
  // All keys belong to the shortcut.
  reset->setFocusPolicy(Qt::NoFocus);
  cancel->setFocusPolicy(Qt::NoFocus);
  connect(reset, &PushButton::clicked, this, [this] {
    if (onReset) onReset();
  });
  connect(cancel, &PushButton::clicked, this, [this] {
    if (onCancel) onCancel();
  });

  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(spacing);
  buttons->addStretch();
  buttons->addWidget(reset);
  buttons->addWidget(cancel);
  buttons->addStretch();
  auto* column = new QVBoxLayout(&glass());
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(spacing);
  column->addStretch();
  column->addWidget(heading, 0, Qt::AlignHCenter);
  column->addWidget(prompt_, 0, Qt::AlignHCenter);
  column->addWidget(new ShortcutPill(display, &glass()), 0, Qt::AlignHCenter);
  column->addLayout(buttons);
  column->addStretch();
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
