// SPDX-License-Identifier: MIT
#pragma once

#include "panel/DateText.h"
#include "panel/DisplayedClips.h"
#include "panel/ListGeometry.h"
#include "panel/PanelServices.h"
#include "panel/RowContent.h"
#include "panel/RowPictures.h"
#include "store/ClipStore.h"

namespace vantorel {

class HistoryPanelView;

/// Shows the displayed entries as rows of the panel's list, and fits the panel to them. Main
/// thread.
class ListPresenter {
 public:
  /// All outlive this.
  ListPresenter(const ClipStore& store, const PanelServices& services, const DisplayedClips& clips,
                HistoryPanelView& view);

  /// Another showing of the panel begins.
  void lookAfresh() { pictures_.lookAfresh(); }
  /// The panel is hidden: has made what its next showing begins with.
  void prepare() { pictures_.prepare(ListGeometry::maxRowsSeen); }

  /// Shows the entries from the top, or a sentence when there are none.
  void show();
  /// Gives the panel the height that its entries need.
  void fitPanel();

  void markSelection();
  /// Says the selected row where readers do not follow it: while the keyboard is beside the list.
  void tellSelection();
  void scrollToSelection();

 private:
  [[nodiscard]] RowContent contentAt(std::size_t index);
  void updateRow(Uuid id);
  void tellFound();

  const ClipStore& store_;
  Dispatch& dispatch_;
  const DisplayedClips& clips_;
  HistoryPanelView& view_;
  DateText dateText_;
  RowPictures pictures_;
};

}  // namespace vantorel
