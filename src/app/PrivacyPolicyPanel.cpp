#include "app/PrivacyPolicyPanel.h"

#include <QFile>

#include "app/BundledResources.h"
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

constexpr const char* title = "מדיניות הפרטיות";
constexpr const char* fallback =
    "Vantorel שומרת את היסטוריית הלוח באופן מקומי ומוצפן ואינה מעבירה מידע לצד שלישי.";

}  // namespace

std::string bundledPrivacyPolicy() {
  QFile file(bundledResource("PrivacyPolicy", "txt"));
  if (!file.open(QIODevice::ReadOnly)) return fallback;
  return file.readAll().toStdString();
}

PrivacyPolicyPanel::PrivacyPolicyPanel(const ChromeServices& services, const std::string& policy)
    : DocumentPanel(QString::fromUtf8(title), panelSize, services) {
  setFixedSize(panelSize);
  build(policy);
}

void PrivacyPolicyPanel::build(const std::string& policy) {
  const int across = width() - 2 * margin;
  auto* heading =
      new TextBlock(QString::fromUtf8(title), {.points = 20, .weight = QFont::Bold}, &glass());
  heading->setGeometry(margin, titleTop, across, heading->sizeHint().height());

  auto* subtitle =
      new TextBlock(QStringLiteral("מקומי  ·  מוצפן  ·  ללא מעקב"),
                    {.points = 12.5, .importance = TextBlock::Importance::secondary}, &glass());
  subtitle->setGeometry(margin, heading->geometry().bottom() + 1 + subtitleGap, across,
                        subtitle->sizeHint().height());

  auto* close = new PushButton(QStringLiteral("סגור"), &glass(), PushButton::Prominence::primary);
  setUp(*close, [this] { askToClose(); });
  const int closeHeight = close->sizeHint().height();
  close->setGeometry((width() - closeWidth) / 2, height() - closeBottom - closeHeight, closeWidth,
                     closeHeight);

  auto* text = new PolicyTextView(QString::fromStdString(policy), &glass());
  const int textTop = subtitle->geometry().bottom() + 1 + textGap;
  text->setGeometry(margin, textTop, across, close->y() - textGap - textTop);
  setTabOrder(text, close);
  text->setFocus();
}

}  // namespace vantorel
