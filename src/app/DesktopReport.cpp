// SPDX-License-Identifier: MIT
#include "app/DesktopReport.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace vantorel {
namespace {

/// needed: without it the program does not do what it is for. extra: it does, with less comfort.
enum class Weight { needed, extra };

struct Finding {
  std::string_view subject;
  Weight weight = Weight::needed;
  bool isThere = false;
  std::string says = {};
  std::string remedy = {};  // of what is not there
};

Finding display(const DesktopFacts& facts) {
  if (!facts.hasWindowSystem) {
    return {.subject = "Display",
            .says = facts.isWayland ? "Wayland, without an X server for the windows"
                                    : "no X server that this program can use",
            .remedy = facts.isWayland ? "Install and switch on Xwayland."
                                      : "Start it in an X11 session; DISPLAY names the server."};
  }
  if (!facts.layersProtocol.empty()) {
    return {.subject = "Display",
            .isThere = true,
            .says = "Wayland, on the compositor's layers (" + facts.layersProtocol + ")"};
  }
  std::string says = facts.isWayland ? "Xwayland in a Wayland session" : "X11";
  says += facts.windowManager.empty() ? ", without a window manager that says its name"
                                      : " with " + facts.windowManager;
  says += facts.hasCompositor ? ", with shadows, and glass where it blurs"
                              : ", windows are drawn opaque";
  return {.subject = "Display", .isThere = true, .says = std::move(says)};
}

/// A compositor that bridges the clipboard always cannot be told from one that does it now and
/// then.
Finding clipboard(const DesktopFacts& facts) {
  std::string says = facts.clipboardProtocol;
  if (facts.isClipboardBridged) {
    says += ", so far as the compositor hands it on: some do only while an X11 window is in front";
  }
  return {.subject = "Clipboard", .isThere = true, .says = std::move(says)};
}

Finding sources(const DesktopFacts& facts) {
  const bool areTold = !facts.isWayland || !facts.windowsProtocol.empty();
  const bool isNative = !facts.layersProtocol.empty();
  std::string says = isNative ? "by" : "by their X11 windows";
  if (facts.isWayland && areTold) {
    says += isNative ? " the" : " and the";
    says += " compositor's (" + facts.windowsProtocol + ")";
  }
  if (!areTold) {
    says = isNative ? "none is told" : "none is told but X11 programs";
    says += ": where other copies come from is unknown";
  }
  return {
      .subject = "Applications",
      .weight = Weight::extra,
      .isThere = areTold,
      .says = std::move(says),
      .remedy = facts.wantsInstalledPrograms
                    ? "This compositor tells them to installed programs alone: install Vantorel."
                    : "Excluding an application cannot keep its copies out; pause instead."};
}

Finding bus(const DesktopFacts& facts) {
  return {.subject = "Session bus",
          .isThere = facts.hasSessionBus,
          .says = facts.hasSessionBus ? "answers" : "none that answers",
          .remedy = "Log in to a desktop session, or start the program under dbus-run-session."};
}

Finding keyring(const DesktopFacts& facts) {
  using Keyring = DesktopFacts::Keyring;
  constexpr std::string_view nothingRecorded = "; nothing is recorded until then";
  Finding finding{.subject = "Keyring"};
  switch (facts.keyring) {
    case Keyring::unlocked:
      finding.isThere = true;
      finding.says = "unlocked";
      break;
    case Keyring::locked:
      finding.says = "locked";
      finding.remedy = "Unlock it" + std::string(nothingRecorded) + ".";
      break;
    case Keyring::noCollection:
      finding.says = "has no default keyring";
      finding.remedy = "Create one in your keyring's own program, such as Passwords and Keys" +
                       std::string(nothingRecorded) + ".";
      break;
    case Keyring::absent:
      finding.says = "no Secret Service answers";
      finding.remedy = "Install gnome-keyring, or switch on the one of KeePassXC or KWallet" +
                       std::string(nothingRecorded) + ".";
      break;
  }
  return finding;
}

Finding shortcut(const DesktopFacts& facts, const std::string& keys, const ShortcutAdvice& advice) {
  using Shortcut = DesktopFacts::Shortcut;
  Finding finding{
      .subject = "Shortcut",
      .weight = facts.shortcut == Shortcut::absent ? Weight::extra : Weight::needed,
      .isThere = facts.shortcut != Shortcut::taken && facts.shortcut != Shortcut::absent};
  switch (facts.shortcut) {
    case Shortcut::held:
      finding.says = keys + ", asked for by the running Vantorel";
      break;
    case Shortcut::offered:
      finding.says = keys + (facts.asksForShortcut ? ", once you agree" : ", where it is free");
      break;
    case Shortcut::free:
      finding.says = keys + " is free";
      break;
    case Shortcut::taken:
      finding.says = keys + " cannot be had";
      finding.remedy =
          "Choose another with vantorel --shortcut, or have your desktop run vantorel --toggle.";
      break;
    case Shortcut::absent:
      finding.says = "only the compositor has keys that reach over every window";
      finding.remedy = advice.prompt + ": " + advice.line;
      break;
  }
  if (!facts.shortcutService.empty()) finding.says += " (" + facts.shortcutService + ")";
  return finding;
}

std::string languages(const std::vector<std::string>& names) {
  std::string text;
  for (const auto& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

Finding textInPictures(const DesktopFacts& facts) {
  const bool isThere = facts.hasTextReader && !facts.textLanguages.empty();
  return {.subject = "Text in pictures",
          .weight = Weight::extra,
          .isThere = isThere,
          .says = isThere               ? "read in " + languages(facts.textLanguages)
                  : facts.hasTextReader ? "no models to read it with"
                                        : "the program vantorel-text is not installed",
          .remedy = facts.hasTextReader ? "Install tesseract-ocr-eng and tesseract-ocr-heb."
                                        : "Install Vantorel anew, built with Tesseract."};
}

Finding pasting(const DesktopFacts& facts) {
  const bool isNative = !facts.layersProtocol.empty();
  const auto& compositors = facts.compositorKeysProtocol;
  std::string says =
      isNative ? "the compositor lets no program press keys" : "the server presses no keys (XTEST)";
  if (isNative && !facts.canPressKeys && facts.wantsInstalledPrograms) {
    says = "this compositor takes keys from installed programs alone";
  } else if (facts.canPressKeys && facts.isWayland && !isNative && compositors.empty()) {
    says = std::string("into windows of X11 programs; ") +
           (facts.wantsInstalledPrograms ? "into all others once Vantorel is installed ("
                                         : "elsewhere press the keys yourself (") +
           facts.keysProtocol + ")";
  } else if (facts.canPressKeys) {
    says = "into the window in front (" + facts.keysProtocol +
           (compositors.empty() ? "" : " and " + compositors) + ")";
  }
  return {.subject = "Pasting",
          .weight = isNative ? Weight::extra : Weight::needed,
          .isThere = facts.canPressKeys,
          .says = std::move(says),
          .remedy = "What you choose is put on the clipboard; paste it yourself."};
}

Finding tray(const DesktopFacts& facts) {
  using Tray = DesktopFacts::Tray;
  Finding finding{
      .subject = "Tray",
      .weight = Weight::extra,
      .isThere = facts.tray != Tray::none,
      .remedy = "Commands are options too; vantorel --menu shows the menu at the pointer."};
  switch (facts.tray) {
    case Tray::items:
      finding.says = "there, for StatusNotifier items";
      break;
    case Tray::windows:
      finding.says = "there, of the older kind (XEmbed)";
      break;
    case Tray::none:
      finding.says = "none of either kind";
      break;
  }
  return finding;
}

Finding lightAndDark(const DesktopFacts& facts) {
  return {.subject = "Light and dark",
          .weight = Weight::extra,
          .isThere = facts.hasSettingsPortal,
          .says = facts.hasSettingsPortal ? "told by the desktop's portal" : "no settings portal",
          .remedy = "Install xdg-desktop-portal; until then the theme's name decides."};
}

/// What hangs on something that is missing is not mentioned.
std::vector<Finding> findings(const DesktopFacts& facts, const std::string& keys,
                              const ShortcutAdvice& advice) {
  std::vector<Finding> all{display(facts)};
  if (facts.hasWindowSystem) {
    all.push_back(clipboard(facts));
    all.push_back(sources(facts));
    all.push_back(shortcut(facts, keys, advice));
    all.push_back(pasting(facts));
  }
  all.push_back(bus(facts));
  if (facts.hasSessionBus) {
    all.push_back(keyring(facts));
    all.push_back(tray(facts));
    all.push_back(lightAndDark(facts));
  }
  all.push_back(textInPictures(facts));
  return all;
}

}  // namespace

DesktopReport DesktopReport::of(const DesktopFacts& facts, const std::string& shortcut,
                                const ShortcutAdvice& advice) {
  constexpr std::size_t subjectWidth = 18;
  DesktopReport report;
  report.isEnough = true;
  for (const Finding& finding : findings(facts, shortcut, advice)) {
    const bool isNeeded = finding.weight == Weight::needed;
    report.isEnough = report.isEnough && (finding.isThere || !isNeeded);
    std::string subject(finding.subject);
    subject.resize(std::max(subjectWidth, subject.size() + 2), ' ');
    report.text += finding.isThere ? "yes  " : isNeeded ? "NO   " : "no   ";
    report.text += subject + finding.says + "\n";
    if (!finding.isThere) {
      report.text += std::string(subjectWidth + 5, ' ') + finding.remedy + "\n";
    }
  }
  report.text += facts.isRunning ? "Vantorel is running.\n" : "Vantorel is not running.\n";
  report.text += report.isEnough ? "Recording and pasting have all that they need.\n"
                                 : "Something that is needed is missing: see NO above.\n";
  return report;
}

}  // namespace vantorel
