// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include "base/Lifetime.h"
#include "chrome/ToastPresenter.h"
#include "panel/DisplayedClips.h"
#include "panel/PanelKeys.h"
#include "panel/PanelServices.h"
#include "panel/PinCommands.h"
#include "panel/RowCommands.h"
#include "paste/PasteController.h"
#include "platform/KeyEvent.h"
#include "platform/Workspace.h"
#include "store/ClipStore.h"

class QString;

namespace vantorel {

class FilterMenuPresenter;
class HistoryPanelView;
class ListPresenter;
class OutsideClicks;
class PinNaming;

/// Shows and hides the history panel, and does what its keys and rows say. The native window exists
/// from construction on, hidden, so that showing it costs little. Needs a running toolkit. Main
/// thread.
class HistoryPanelController {
 public:
  HistoryPanelController(ClipStore& store, PasteController& pasteController,
                         PanelServices services);
  ~HistoryPanelController();
  HistoryPanelController(const HistoryPanelController&) = delete;
  HistoryPanelController& operator=(const HistoryPanelController&) = delete;

  /// Shows the panel in the middle of the screen under the pointer, with search and filters reset,
  /// for pasting into `targetApplication`; hides it when it is shown already.
  void toggle(const std::optional<RunningApplication>& targetApplication);
  /// Shows the panel if it is hidden, with its search field ready for typing.
  void openSearch(const std::optional<RunningApplication>& targetApplication);
  void hide();
  [[nodiscard]] bool isVisible() const;

  /// The history has changed. What the pointer is over is left alone. While the panel is hidden,
  /// and when it has been, the pictures that it will begin with are made, a little later.
  void refreshIfVisible();
  /// The text of some image has been recognised.
  void refreshSearchIfVisible();

 private:
  using Selection = DisplayedClips::Selection;

  void connectParts();
  [[nodiscard]] RowCommands rowCommands();
  [[nodiscard]] bool isSeen() const;
  [[nodiscard]] bool isLookedAtClosely() const;

  bool handleKey(const KeyEvent& event);
  bool handleKeyOfField(const KeyEvent& event);
  [[nodiscard]] PanelKeyState keyState() const;
  void perform(const PanelKeyDecision& decision);
  void moveSelection(int step);
  void openMenu(std::size_t index);
  void typeComposed(const QString& text);
  void showSearchBar();

  void refresh(Selection selection);
  void refreshAndReveal(Selection selection);
  void refreshAndSelect(Uuid id);
  void positionOnCurrentScreen();
  void clearFilters();
  void warmSearchIndex(std::size_t nextItem);
  void prepareNextShowing();

  void paste(const ClipItem* item, PasteStyle style);
  void deleteSelected();
  void rename(Uuid id);

  ClipStore& store_;
  PasteController& pasteController_;
  PanelServices services_;
  ToastPresenter toast_;
  DisplayedClips clips_;
  PinCommands pins_;
  std::unique_ptr<HistoryPanelView> view_;
  std::unique_ptr<OutsideClicks> outsideClicks_;
  std::unique_ptr<ListPresenter> list_;
  std::unique_ptr<FilterMenuPresenter> filterMenus_;
  std::unique_ptr<PinNaming> naming_;
  std::unique_ptr<Timer> preparation_;  // for the next showing
  Lifetime showing_;                    // ends each time the panel is hidden
  Lifetime life_;
};

}  // namespace vantorel
