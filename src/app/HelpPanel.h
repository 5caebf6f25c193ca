// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/ColumnLayout.h"
#include "app/DocumentPanel.h"

namespace vantorel {

class CheckBox;
struct HelpTexts;
class PushButton;
class ShortcutPill;

/// What the program does and how it is used: at the first start to welcome, later to look things
/// up. Main thread.
class HelpPanel : public DocumentPanel {
  Q_OBJECT

 public:
  enum class Occasion { firstLaunch, about };

  struct Facts {
    std::string shortcut;  // with key symbols
    bool automaticPaste = false;
    std::optional<bool> launchAtLogin;  // absent where the desktop cannot
    std::string version;
    Language language = Language::hebrew;
  };

  HelpPanel(const ChromeServices& services, Occasion occasion, const Facts& facts);

  std::function<void()> onChangeShortcut;
  std::function<void()> onAccessibilitySettings;
  /// The check box was pressed; what it has to show comes by `setLaunchAtLogin`.
  std::function<void()> onLaunchAtLoginChanged;
  std::function<void()> onPrivacyPolicy;
  /// The same is wanted in the other language.
  std::function<void()> onOtherLanguage;

  void setShortcut(std::string_view display);
  void setAutomaticPaste(bool possible);
  void setLaunchAtLogin(std::optional<bool> enabled);

 private:
  void build(Occasion occasion, const Facts& facts);
  void addIcon();
  void addHeading(std::string_view heading);
  void addText(std::string_view text);
  void addShortcut(const std::string& display);
  void addVersion(const std::string& version);
  PushButton* addButton(PushButton* button, std::function<void()> HelpPanel::*action);
  enum class Place { within, opensSection, heads };
  void add(QWidget* row, Place place = Place::within);
  void layOut(Occasion occasion);

  const HelpTexts& texts_;
  std::vector<QWidget*> rows_;
  std::vector<ColumnRow> column_;
  ShortcutPill* shortcut_ = nullptr;
  PushButton* accessibility_ = nullptr;
  CheckBox* launchAtLogin_ = nullptr;
};

}  // namespace vantorel
