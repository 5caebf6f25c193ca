#include "app/PrivacyPolicyPanel.h"

#include <QFile>
#include <QKeyEvent>

#include "app/BundledResources.h"
#include "app/PolicyTextView.h"
#include "app/TextBlock.h"
#include "chrome/PushButton.h"

namespace vantorel {
namespace {

constexpr QSize panelSize(520, 590);
constexpr double cornerRadius = 22;
constexpr int margin = 24;
constexpr int titleTop = 22;
constexpr int subtitleGap = 6;
constexpr int textGap = 14;
constexpr int closeWidth = 90;
constexpr int closeBottom = 18;

constexpr const char* title = "מדיניות הפרטיות";
constexpr const char* fallback =
    "Vantorel שומרת את היסטוריית הלוח באופן מקומי ומוצפן ואינה מעבירה מידע לצד שלישי.";

bool closes(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

}  // namespace

std::string bundledPrivacyPolicy() {
  QFile file(bundledResource("PrivacyPolicy", "txt"));
  if (!file.open(QIODevice::ReadOnly)) return fallback;
  return file.readAll().toStdString();
}

PrivacyPolicyPanel::PrivacyPolicyPanel(const ChromeServices& services, const std::string& policy)
    : VantorelPanel(QString::fromUtf8(title), panelSize, cornerRadius, services.accessibility,
                    services.backdrops) {
  setFixedSize(panelSize);
  setLayoutDirection(Qt::RightToLeft);
  build(policy);
  onKeyPress = [this](const QKeyEvent& event) {
    if (!closes(event)) return false;
    if (onClose) onClose();
    return true;
  };
  onCloseRequested = [this] {
    if (onClose) onClose();
  };
}

void PrivacyPolicyPanel::build(const std::string& policy) {
  const int across = width() - 2 * margin;
  TextBlock::Style titleStyle;
  titleStyle.points = 20;
  titleStyle.weight = QFont::Bold;
  auto* heading = new TextBlock(QString::fromUtf8(title), titleStyle, &glass());
  heading->setGeometry(margin, titleTop, across, heading->sizeHint().height());

  TextBlock::Style subtitleStyle;
  subtitleStyle.points = 12.5;
  subtitleStyle.importance = TextBlock::Importance::secondary;
  auto* subtitle =
      new TextBlock(QStringLiteral("מקומי  ·  מוצפן  ·  ללא מעקב"), subtitleStyle, &glass());
  subtitle->setGeometry(margin, heading->geometry().bottom() + 1 + subtitleGap, across,
                        subtitle->sizeHint().height());

  auto* close = new PushButton(QStringLiteral("סגור"), &glass(), PushButton::Prominence::primary);
  QFont font = close->font();
  font.setFamilies(documentFont(1).families());
  close->setFont(font);
  const int closeHeight = close->sizeHint().height();
  close->setGeometry((width() - closeWidth) / 2, height() - closeBottom - closeHeight, closeWidth,
                     closeHeight);
  connect(close, &PushButton::clicked, this, [this] {
    if (onClose) onClose();
  });

  auto* text = new PolicyTextView(QString::fromStdString(policy), &glass());
  const int textTop = subtitle->geometry().bottom() + 1 + textGap;
  text->setGeometry(margin, textTop, across, close->y() - textGap - textTop);
  setTabOrder(text, close);
  text->setFocus();
}

}  // namespace vantorel
