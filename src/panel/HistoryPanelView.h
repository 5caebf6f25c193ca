// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "chrome/ElasticScrollView.h"
#include "chrome/SpokenNotice.h"
#include "chrome/VantorelPanel.h"
#include "panel/ClipListView.h"
#include "panel/FilterButton.h"
#include "panel/ListGeometry.h"
#include "panel/SearchField.h"

namespace vantorel {

/// The panel's window and what is in it, laid out by `ListGeometry`. It decides nothing.
class HistoryPanelView {
 public:
  explicit HistoryPanelView(const ChromeServices& services);

  VantorelPanel panel;
  SearchField& searchField;
  FilterButton& typeFilterButton;
  FilterButton& sourceFilterButton;
  ElasticScrollView& listScrollView;
  ClipListView& list;
  SpokenNotice& spoken;

  [[nodiscard]] ListGeometry::SearchBar searchBar() const { return searchBar_; }
  void setSearchBar(ListGeometry::SearchBar searchBar);

  /// Where the panel is, which the user may have changed.
  [[nodiscard]] Rect frame();
  void setFrame(const Rect& frame);
  void setListHeight(double height);

  void revealRow(std::size_t index);

  /// Draws what rows are made of once, unseen, so that the first showing finds fonts and symbols
  /// loaded.
  void warmUp();

 private:
  void layOut();
  void layOutSearchBar(int x, int y, int width);
  [[nodiscard]] std::array<QWidget*, 3> searchBarParts() const;

  ListGeometry::SearchBar searchBar_ = ListGeometry::SearchBar::hidden;
  double listHeight_ = 0;
  // Halves of points would add up if the frame were read back from the window each time.
  Rect frame_{};
};

}  // namespace vantorel
