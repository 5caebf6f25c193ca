// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/StatusItem.h"

namespace vantorel {

/// A bar with one item, which the test looks at and clicks. The menu's rows are asked for anew
/// each time that the test opens the menu.
class FakeStatusItem : public StatusItem {
 public:
  void show(Handlers handlers) override {
    handlers_ = std::move(handlers);
    shown_ = true;
  }
  void hide() override {
    handlers_ = {};
    shown_ = false;
  }
  void setImage(StatusImage image) override { image_ = std::move(image); }
  void setToolTip(std::string toolTip) override { toolTip_ = std::move(toolTip); }
  void menuChanged() override { ++menuChanges_; }

  // The test's side.

  [[nodiscard]] bool isShown() const { return shown_; }
  [[nodiscard]] const StatusImage& image() const { return image_; }
  [[nodiscard]] const std::string& toolTip() const { return toolTip_; }
  [[nodiscard]] int menuChanges() const { return menuChanges_; }

  void tellUnseen() const { handlers_.onUnseen(); }
  void click() const { handlers_.onClick(); }
  void middleClick() const { handlers_.onMiddleClick(); }
  void wantMenu(Point at) const { handlers_.onMenuWanted(at); }
  [[nodiscard]] std::vector<MenuRow> openMenu() const { return handlers_.menuRows(); }
  [[nodiscard]] std::vector<std::string> titles() const {
    std::vector<std::string> titles;
    for (const MenuRow& row : openMenu()) titles.push_back(row.title);
    return titles;
  }
  /// A row of the menu as it is now, wherever it stands; throws when there is none.
  [[nodiscard]] MenuRow row(const std::string& title) const { return find(openMenu(), title); }
  void choose(const std::string& title) const { handlers_.onChosen(row(title)); }
  void choose(const MenuRow& row) const { handlers_.onChosen(row); }

 private:
  static MenuRow find(const std::vector<MenuRow>& rows, const std::string& title) {
    for (const MenuRow& row : rows) {
      if (row.title == title) return row;
      for (const MenuRow& below : row.submenu) {
        if (below.title == title) return below;
      }
    }
    throw std::out_of_range("no row " + title);
  }

  Handlers handlers_;
  StatusImage image_;
  std::string toolTip_;
  int menuChanges_ = 0;
  bool shown_ = false;
};

}  // namespace vantorel
