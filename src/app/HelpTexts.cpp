// SPDX-License-Identifier: MIT
#include "app/HelpTexts.h"

namespace vantorel {
namespace {

constexpr HelpTexts hebrew = {
    .welcomeTitle = "ברוכים הבאים ל־Vantorel",
    .aboutTitle = "Vantorel",
    .summary = "היסטוריית ההעתקות נשמרת מקומית במק שלך.\nטקסטים, תמונות וקבצים זמינים עד שבוע.",
    .openingHeading = "פתיחת החלון",
    .keys =
        "אפשר להקליד כדי לחפש, לסנן לפי סוג או אפליקציה, ולהשתמש בחצים וב־Enter להדבקה.\n"
        "Option + Enter מדביק טקסט ללא עיצוב.",
    .pasteHeading = "הדבקה אוטומטית",
    .pasteAllowed = "הרשאת הנגישות פעילה",
    .pasteNotAllowed = "נדרשת הרשאת נגישות",
    .pasteAllowedWhy =
        "סביבת העבודה מאפשרת ל־Vantorel להקיש מקשים, ולכן ההדבקה אוטומטית.\n"
        "בחלון שאינו מקבל אותם אפשר להדביק ידנית.",
    .pasteNotAllowedWhy = "סביבת העבודה אינה מאפשרת ל־Vantorel להקיש מקשים. אפשר להדביק ידנית.",
    .launchAtLogin = "הפעל את Vantorel בעת הכניסה למק",
    .privacyHeading = "פרטיות ואבטחה",
    .privacy =
        "ההיסטוריה מוצפנת ונשארת במק בלבד.\n"
        "אין רשת, ענן, מעקב, אנליטיקה או שיתוף עם צד שלישי.",
    .wholePolicy = "מדיניות הפרטיות המלאה",
    .begin = "מתחילים",
    .close = "סגור",
    .otherLanguage = "English",
    .policyTitle = "מדיניות הפרטיות",
    .policySubtitle = "מקומי  ·  מוצפן  ·  ללא מעקב",
    .policyResource = "PrivacyPolicy",
    .policyFallback =
        "Vantorel שומרת את היסטוריית הלוח באופן מקומי ומוצפן ואינה מעבירה מידע לצד שלישי.",
};

constexpr HelpTexts english = {
    .welcomeTitle = "Welcome to Vantorel",
    .aboutTitle = "Vantorel",
    .summary =
        "What you copy is kept locally, on your computer.\n"
        "Texts, images and files stay available for up to a week.",
    .openingHeading = "Opening the window",
    .keys =
        "Type to search, filter by type or application, and use the arrows and Enter to paste.\n"
        "Alt + Enter pastes text without its formatting.",
    .pasteHeading = "Automatic paste",
    .pasteAllowed = "Automatic paste is allowed",
    .pasteNotAllowed = "Automatic paste is not allowed",
    .pasteAllowedWhy =
        "The desktop lets Vantorel press keys, so pasting is automatic.\n"
        "In a window that does not take them you can paste by hand.",
    .pasteNotAllowedWhy = "The desktop does not let Vantorel press keys. You can paste by hand.",
    .launchAtLogin = "Start Vantorel when you log in to the computer",
    .privacyHeading = "Privacy and security",
    .privacy =
        "The history is encrypted and stays on this computer only.\n"
        "No network, cloud, tracking, analytics or third parties.",
    .wholePolicy = "The full privacy policy",
    .begin = "Get Started",
    .close = "Close",
    .otherLanguage = "עברית",
    .policyTitle = "Privacy Policy",
    .policySubtitle = "Local  ·  Encrypted  ·  No tracking",
    .policyResource = "PrivacyPolicy.en",
    .policyFallback =
        "Vantorel keeps the clipboard history locally and encrypted, and passes "
        "nothing on to third parties.",
};

}  // namespace

const HelpTexts& HelpTexts::in(Language language) {
  return language == Language::hebrew ? hebrew : english;
}

}  // namespace vantorel
