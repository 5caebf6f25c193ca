#include "app/HelpPanel.h"

#include <QHBoxLayout>
#include <algorithm>

#include "app/AppIconFactory.h"
#include "app/EditSymbolButton.h"
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

// The desktop's own green is not to be had; this one is seen on light and dark.
const QColor green(0x2f, 0xa8, 0x4f);

QSize sizeFor(HelpPanel::Occasion occasion) {
  return {panelWidth,
          occasion == HelpPanel::Occasion::firstLaunch ? firstLaunchHeight : aboutHeight};
}

}  // namespace

HelpPanel::HelpPanel(const ChromeServices& services, Occasion occasion, const Facts& facts)
    : DocumentPanel(QStringLiteral("About Vantorel"), sizeFor(occasion), services) {
  // No control is marked before the user asks for one with Tab.
  setFocusPolicy(Qt::ClickFocus);
  setFocus();
  build(occasion, facts);
  layOut(occasion);
}

void HelpPanel::build(Occasion occasion, const Facts& facts) {
  const bool welcomes = occasion == Occasion::firstLaunch;
  addIcon();
  add(new TextBlock(
      welcomes ? QStringLiteral("ברוכים הבאים ל־Vantorel") : QStringLiteral("Vantorel"),
      {.points = 19, .weight = QFont::Bold}, &glass()));
  addText(QStringLiteral(
      "היסטוריית ההעתקות נשמרת מקומית במק שלך.\nטקסטים, תמונות וקבצים זמינים עד שבוע."));
  addHeading(QStringLiteral("פתיחת החלון"));
  addShortcut(facts.shortcut);
  addText(
      QStringLiteral("אפשר להקליד כדי לחפש, לסנן לפי סוג או אפליקציה, ולהשתמש בחצים וב־Enter "
                     "להדבקה.\nOption + Enter מדביק טקסט ללא עיצוב."));
  addHeading(QStringLiteral("הדבקה אוטומטית"));
  accessibility_ = addButton(new PushButton({}, &glass(), PushButton::Prominence::standard,
                                            PushButton::ControlSize::large),
                             &HelpPanel::onAccessibilitySettings);
  setAutomaticPaste(facts.automaticPaste);
  launchAtLogin_ = new CheckBox(QStringLiteral("הפעל את Vantorel בעת הכניסה למק"), &glass());
  launchAtLogin_->setFont(documentFont(12.5));
  connect(launchAtLogin_, &CheckBox::clicked, this, [this] {
    if (onLaunchAtLoginChanged) onLaunchAtLoginChanged();
  });
  setLaunchAtLogin(facts.launchAtLogin);
  add(launchAtLogin_);
  if (!welcomes) {
    addHeading(QStringLiteral("פרטיות ואבטחה"));
    addText(QStringLiteral(
        "ההיסטוריה מוצפנת ונשארת במק בלבד.\nאין רשת, ענן, מעקב, אנליטיקה או שיתוף עם צד שלישי."));
    addButton(new PushButton(QStringLiteral("מדיניות הפרטיות המלאה"), &glass()),
              &HelpPanel::onPrivacyPolicy);
  }
  addVersion(facts.version);
  addButton(new PushButton(welcomes ? QStringLiteral("מתחילים") : QStringLiteral("סגור"), &glass(),
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

void HelpPanel::addHeading(const QString& heading) {
  add(new TextBlock(heading,
                    {.points = 12.5,
                     .weight = QFont::DemiBold,
                     .importance = TextBlock::Importance::secondary},
                    &glass()),
      true);
}

void HelpPanel::addText(const QString& text) {
  add(new TextBlock(text, {.alignment = Qt::AlignRight, .lines = 3, .width = textWidth}, &glass()));
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

void HelpPanel::addVersion(const std::string& version) {
  const auto line = QStringLiteral("Version %1  ·  Made by the Vantorel authors")
                        .arg(QString::fromStdString(version));
  add(new TextBlock(line,
                    {.points = 11.5,
                     .importance = TextBlock::Importance::secondary,
                     .direction = Qt::LeftToRight},
                    &glass()),
      true);
}

PushButton* HelpPanel::addButton(PushButton* button, std::function<void()> HelpPanel::*action) {
  setUp(*button, [this, action] {
    if (this->*action) (this->*action)();
  });
  add(button);
  return button;
}

void HelpPanel::add(QWidget* row, bool opensSection) {
  rows_.push_back(row);
  column_.push_back({0, opensSection});
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
  accessibility_->setText(possible ? QStringLiteral("הרשאת הנגישות פעילה")
                                   : QStringLiteral("נדרשת הרשאת נגישות"));
  accessibility_->setTint(possible ? green : VantorelTheme::gold(),
                          possible ? "checkmark.circle.fill" : "exclamationmark.circle.fill");
  accessibility_->setToolTip(
      possible ? QStringLiteral("שרת התצוגה מאפשר הקשת מקשים (XTEST), ולכן ההדבקה אוטומטית.")
               : QStringLiteral("שרת התצוגה אינו מאפשר הקשת מקשים (XTEST). אפשר להדביק ידנית."));
  accessibility_->setAccessibleDescription(accessibility_->toolTip());
}

void HelpPanel::setLaunchAtLogin(std::optional<bool> enabled) {
  launchAtLogin_->setEnabled(enabled.has_value());
  launchAtLogin_->setChecked(enabled.value_or(false));
}

}  // namespace vantorel
