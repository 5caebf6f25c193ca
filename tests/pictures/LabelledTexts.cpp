// SPDX-License-Identifier: MIT
#include "pictures/LabelledTexts.h"

namespace vantorel {
namespace {

const QStringList englishLines = {
    "Preferences have been saved to your home folder",
    "Open recent files from the last seven days",
    "Invoice 2024-0317 was paid on 14 March 2025",
    "Send a copy to billing@northwind-mail.example today",
    "Total due: $1,284.50 including 17% tax",
    "The quick brown fox jumps over the lazy dog",
    "Show hidden items in every window of this application",
    "Download finished in 3.2 seconds at 48 MB/s",
    "Could not connect to the server, please try again later",
    "Meeting moved to Thursday at 16:45 in room 204",
    "Version 5.12.3 is available with important security updates",
    "Order number 88174-C ships to Haifa within two days",
    "Click Apply to keep these changes or Cancel to discard them",
    "Password must contain at least twelve characters",
    "Contact Miriam Levy at +972 54 318 2207 before noon",
    "Keyboard layout switched from English to Hebrew",
    "Battery at 64%, about 3 hours and 20 minutes remaining",
    "Return the signed agreement to legal@harbor.example",
    "New message from Daniel: lunch tomorrow at one?",
    "Copy link address and open it in a private window",
    "Disk usage: 412 GB of 512 GB are in use",
    "Select the column that contains the account balance",
    "Warning: this action cannot be undone",
    "Quarterly revenue grew by 12.4 percent year over year",
};

const QStringList hebrewLines = {
    "ההעדפות נשמרו בתיקיית הבית שלך",
    "פתיחת קבצים אחרונים משבעת הימים האחרונים",
    "החשבונית שולמה ביום חמישי בבוקר",
    "הורדה הושלמה בהצלחה ללא שגיאות",
    "לא ניתן להתחבר לשרת, נסו שוב מאוחר יותר",
    "הפגישה הועברה לחדר הישיבות בקומה השנייה",
    "גרסה חדשה זמינה עם עדכוני אבטחה חשובים",
    "ההזמנה תישלח לחיפה בתוך יומיים",
    "לחצו על אישור כדי לשמור את השינויים",
    "הסיסמה חייבת להכיל לפחות שמונה תווים",
    "פריסת המקלדת הוחלפה מאנגלית לעברית",
    "הודעה חדשה מדניאל: ארוחת צהריים מחר?",
    "העתקת כתובת הקישור ופתיחתו בחלון פרטי",
    "בחרו את העמודה שמכילה את יתרת החשבון",
    "אזהרה: לא ניתן לבטל פעולה זו",
    "מדיניות הפרטיות של היישום עודכנה השבוע",
    "הצגת פריטים מוסתרים בכל החלונות",
    "יש להחזיר את ההסכם החתום למחלקה המשפטית",
    "ההכנסות הרבעוניות גדלו בהשוואה לשנה שעברה",
    "חיפוש בהיסטוריה לפי מילה או לפי יישום",
    "שתפו את המסמך עם חברי הצוות לקראת הישיבה",
    "ניקוי ההיסטוריה ימחק את כל הפריטים שאינם נעוצים",
    "קיצור הדרך תפוס על ידי תוכנה אחרת",
    "המשתמש התנתק מהמערכת לפני שעה קלה",
};

const QStringList mixedLines = {
    "הודעה מאת support@northwind.example התקבלה",
    "סך הכול לתשלום: 1,284.50 ש\"ח",
    "פגישה ביום 14/03/2025 בשעה 16:45",
    "התקנת Firefox גרסה 128.3 הסתיימה",
    "קובץ report-final.pdf נשמר בתיקייה Documents",
    "מספר הזמנה 88174 נשלח אל Dana Cohen",
    "יש לפתוח את Settings ולבחור Privacy",
    "נותרו 64% סוללה, כ-3 שעות",
    "לפרטים נוספים: info@haifa-port.example",
    "טלפון 054-318-2207 שלוחה 12",
    "העלאה של 48 MB לשרת backup הושלמה",
    "שגיאה 404: הדף לא נמצא",
};

}  // namespace

const QStringList& labelledLines(Language language) {
  switch (language) {
    case Language::english:
      return englishLines;
    case Language::hebrew:
      return hebrewLines;
    case Language::mixed:
      break;
  }
  return mixedLines;
}

}  // namespace vantorel
