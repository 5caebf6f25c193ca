// SPDX-License-Identifier: MIT
#include "app/HelpPanel.h"

#include <QHBoxLayout>
#include <algorithm>

#include "app/AppIconFactory.h"
#include "app/EditSymbolButton.h"
#include "app/HelpTexts.h"
#include "app/LinkButton.h"
#include "app/ShortcutPill.h"
#include "app/TextBlock.h"
#include "chrome/CheckBox.h"
#include "chrome/PushButton.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr int panelWidth = 470;
constexpr int firstLaunchHeight = 438;
constexpr int aboutHeight = 570;
constexpr int firstLaunchSpacing = 11;
constexpr int aboutSpacing = 8;
constexpr int topInset = 22;
constexpr int bottomInset = 20;
constexpr int textWidth = 390;
constexpr int iconSide = 62;
constexpr double versionPoints = 11.5;

// The desktop's own green is not to be had; this one is seen on light and dark.
const QColor green(0x2f, 0xa8, 0x4f);

QSize sizeFor(HelpPanel::Occasion occasion) {
  return {panelWidth,
          occasion == HelpPanel::Occasion::firstLaunch ? firstLaunchHeight : aboutHeight};
}

}  // namespace

HelpPanel::HelpPanel(const ChromeServices& services, Occasion occasion, const Facts& facts)
    : DocumentPanel(QStringLiteral("About Vantorel"), sizeFor(occasion),
                    directionOf(facts.language), services),
      texts_(HelpTexts::in(facts.language)) {
  // No control is marked before the user asks for one with Tab.
  setFocusPolicy(Qt::ClickFocus);
  setFocus();
  build(occasion, facts);
  layOut(occasion);
}

void HelpPanel::build(Occasion occasion, const Facts& facts) {
  const bool welcomes = occasion == Occasion::firstLaunch;
  addIcon();
  add(new TextBlock(shownText(welcomes ? texts_.welcomeTitle : texts_.aboutTitle),
                    {.points = 19, .weight = QFont::Bold, .direction = layoutDirection()},
                    &glass()));
  addText(texts_.summary);
  addHeading(texts_.openingHeading);
  addShortcut(facts.shortcut);
  addText(texts_.keys);
  addHeading(texts_.pasteHeading);
  accessibility_ = addButton(new PushButton({}, &glass(), PushButton::Prominence::standard,
                                            PushButton::ControlSize::large),
                             &HelpPanel::onAccessibilitySettings);
  setAutomaticPaste(facts.automaticPaste);
  launchAtLogin_ = new CheckBox(shownText(texts_.launchAtLogin), &glass());
  launchAtLogin_->setFont(documentFont(12.5));
  connect(launchAtLogin_, &CheckBox::clicked, this, [this] {
    if (onLaunchAtLoginChanged) onLaunchAtLoginChanged();
  });
  setLaunchAtLogin(facts.launchAtLogin);
  add(launchAtLogin_);
  if (!welcomes) {
    addHeading(texts_.privacyHeading);
    addText(texts_.privacy);
    addButton(new PushButton(shownText(texts_.wholePolicy), &glass()), &HelpPanel::onPrivacyPolicy);
  }
  addVersion(facts.version);
  addButton(new PushButton(shownText(welcomes ? texts_.begin : texts_.close), &glass(),
                           PushButton::Prominence::primary),
            &HelpPanel::onClose);
}

void HelpPanel::addIcon() {
  auto* icon = new QLabel(&glass());
  icon->setFixedSize(iconSide, iconSide);
  const auto picture = AppIconFactory::bundledPNG("vt");
  if (!picture.isNull()) {
    icon->setPixmap(picture.pixmap(QSize(iconSide, iconSide), devicePixelRatioF()));
  }
  icon->setAccessibleName(QStringLiteral("Vantorel"));
  add(icon);
}

void HelpPanel::addHeading(std::string_view heading) {
  add(new TextBlock(shownText(heading),
                    {.points = 12.5,
                     .weight = QFont::DemiBold,
                     .importance = TextBlock::Importance::secondary,
                     .direction = layoutDirection()},
                    &glass()),
      Place::heads);
}

void HelpPanel::addText(std::string_view text) {
  const auto direction = layoutDirection();
  add(new TextBlock(shownText(text),
                    {.direction = direction,
                     .alignment = direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft,
                     .lines = 3,
                     .width = textWidth},
                    &glass()));
}

void HelpPanel::addShortcut(const std::string& display) {
  constexpr int spacing = 8;
  constexpr int buttonSide = 28;
  auto* row = new QWidget(&glass());
  shortcut_ = new ShortcutPill(display, row);
  auto* change = new EditSymbolButton(buttonSide, row);
  connect(change, &EditSymbolButton::clicked, this, [this] {
    if (onChangeShortcut) onChangeShortcut();
  });
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(spacing);
  layout->addWidget(shortcut_);
  layout->addWidget(change);
  add(row);
}

/// The same in both languages, and so is its direction.
void HelpPanel::addVersion(const std::string& version) {
  auto* row = new QWidget(&glass());
  row->setLayoutDirection(Qt::LeftToRight);
  const auto line = QStringLiteral("Version %1  ·  Made by the Vantorel authors  ·  ")
                        .arg(QString::fromStdString(version));
  auto* credit = new TextBlock(line,
                               {.points = versionPoints,
                                .importance = TextBlock::Importance::secondary,
                                .direction = Qt::LeftToRight},
                               row);
  auto* language =
      new LinkButton(shownText(texts_.otherLanguage), documentFont(versionPoints), row);
  connect(language, &LinkButton::clicked, this, [this] {
    if (onOtherLanguage) onOtherLanguage();
  });
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(credit, 0, Qt::AlignVCenter);
  layout->addWidget(language, 0, Qt::AlignVCenter);
  add(row, Place::opensSection);
}

PushButton* HelpPanel::addButton(PushButton* button, std::function<void()> HelpPanel::*action) {
  setUp(*button, [this, action] {
    if (this->*action) (this->*action)();
  });
  add(button);
  return button;
}

void HelpPanel::add(QWidget* row, Place place) {
  rows_.push_back(row);
  column_.push_back({.opensSection = place != Place::within, .heads = place == Place::heads});
}

void HelpPanel::layOut(Occasion occasion) {
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    column_[i].height = std::max(rows_[i]->sizeHint().height(), rows_[i]->minimumHeight());
  }
  const int spacing = occasion == Occasion::firstLaunch ? firstLaunchSpacing : aboutSpacing;
  const auto tops = columnTops(column_, spacing, height() - topInset - bottomInset);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const int width = std::min(std::max(rows_[i]->sizeHint().width(), rows_[i]->minimumWidth()),
                               panelWidth - 2 * topInset);
    rows_[i]->setGeometry((panelWidth - width) / 2, topInset + tops[i], width, column_[i].height);
  }
  // Only a very large font makes it longer than it is meant to be.
  setFixedSize(panelWidth,
               std::max(height(), topInset + tops.back() + column_.back().height + bottomInset));
}

void HelpPanel::setShortcut(std::string_view display) {
  shortcut_->setShortcut(display);
  auto* row = shortcut_->parentWidget();
  const int width = row->sizeHint().width();
  row->setGeometry((panelWidth - width) / 2, row->y(), width, row->height());
}

void HelpPanel::setAutomaticPaste(bool possible) {
  accessibility_->setText(shownText(possible ? texts_.pasteAllowed : texts_.pasteNotAllowed));
  accessibility_->setTint(possible ? green : VantorelTheme::gold(),
                          possible ? "checkmark.circle.fill" : "exclamationmark.circle.fill");
  accessibility_->setToolTip(
      shownText(possible ? texts_.pasteAllowedWhy : texts_.pasteNotAllowedWhy));
  accessibility_->setAccessibleDescription(accessibility_->toolTip());
}

void HelpPanel::setLaunchAtLogin(std::optional<bool> enabled) {
  launchAtLogin_->setEnabled(enabled.has_value());
  launchAtLogin_->setChecked(enabled.value_or(false));
}

}  // namespace vantorel
