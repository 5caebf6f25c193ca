// SPDX-License-Identifier: MIT
#include "app/PrivacyPolicyPanel.h"

#include <QFile>

#include "app/BundledResources.h"
#include "app/HelpTexts.h"
#include "app/PolicyTextView.h"
#include "app/TextBlock.h"
#include "chrome/PushButton.h"

namespace vantorel {
namespace {

constexpr QSize panelSize(520, 590);
constexpr int margin = 24;
constexpr int titleTop = 22;
constexpr int subtitleGap = 6;
constexpr int textGap = 14;
constexpr int closeWidth = 90;
constexpr int closeBottom = 18;

}  // namespace

std::string bundledPrivacyPolicy(Language language) {
  const auto& texts = HelpTexts::in(language);
  QFile file(bundledResource(texts.policyResource, "txt"));
  if (!file.open(QIODevice::ReadOnly)) return std::string(texts.policyFallback);
  return file.readAll().toStdString();
}

PrivacyPolicyPanel::PrivacyPolicyPanel(const ChromeServices& services, Language language)
    : DocumentPanel(shownText(HelpTexts::in(language).policyTitle), panelSize,
                    directionOf(language), services) {
  setFixedSize(panelSize);
  build(language);
}

void PrivacyPolicyPanel::build(Language language) {
  const auto& texts = HelpTexts::in(language);
  const auto direction = directionOf(language);
  const int across = width() - 2 * margin;
  auto* heading = new TextBlock(
      windowTitle(), {.points = 20, .weight = QFont::Bold, .direction = direction}, &glass());
  heading->setGeometry(margin, titleTop, across, heading->sizeHint().height());

  auto* subtitle = new TextBlock(
      shownText(texts.policySubtitle),
      {.points = 12.5, .importance = TextBlock::Importance::secondary, .direction = direction},
      &glass());
  subtitle->setGeometry(margin, heading->geometry().bottom() + 1 + subtitleGap, across,
                        subtitle->sizeHint().height());

  auto* close = new PushButton(shownText(texts.close), &glass(), PushButton::Prominence::primary);
  setUp(*close, [this] { askToClose(); });
  const int closeHeight = close->sizeHint().height();
  close->setGeometry((width() - closeWidth) / 2, height() - closeBottom - closeHeight, closeWidth,
                     closeHeight);

  auto* text = new PolicyTextView(QString::fromStdString(bundledPrivacyPolicy(language)), direction,
                                  &glass());
  text->setAccessibleName(windowTitle());
  const int textTop = subtitle->geometry().bottom() + 1 + textGap;
  text->setGeometry(margin, textTop, across, close->y() - textGap - textTop);
  setTabOrder(text, close);
  text->setFocus();
}

}  // namespace vantorel
