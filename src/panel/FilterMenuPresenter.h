// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "chrome/ChromeServices.h"
#include "panel/FilterButton.h"
#include "store/ClipSearchFilter.h"
#include "store/ClipStore.h"

namespace vantorel {

class VantorelMenu;

/// The menus of the two filter buttons, and what the buttons say. Main thread.
class FilterMenuPresenter {
 public:
  struct Buttons {
    FilterButton& type;
    FilterButton& source;
  };

  /// What is chosen goes to `filter`. All outlive this.
  FilterMenuPresenter(const ClipStore& store, ClipSearchFilter& filter, Buttons buttons,
                      const ChromeServices& services);
  ~FilterMenuPresenter();
  FilterMenuPresenter(const FilterMenuPresenter&) = delete;
  FilterMenuPresenter& operator=(const FilterMenuPresenter&) = delete;

  /// The user has chosen something.
  std::function<void()> onChange;
  /// A menu has come, or gone again, before what was chosen in it is done.
  std::function<void()> onMenuOpened;
  std::function<void()> onMenuClosed;

  /// Shows the filter and the sources of the history as they are now.
  void updateButtons();
  void closeMenu();

 private:
  void showTypes();
  void showSources();
  [[nodiscard]] std::unique_ptr<VantorelMenu> menuOf(FilterButton& button) const;
  void showBelow(const FilterButton& button, std::unique_ptr<VantorelMenu> menu);
  void tellChange();

  const ClipStore& store_;
  ClipSearchFilter& filter_;
  Buttons buttons_;
  ChromeServices services_;
  std::unique_ptr<VantorelMenu> menu_;
};

}  // namespace vantorel
