#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "chrome/ToastPresenter.h"
#include "panel/DateText.h"
#include "panel/FileAvailability.h"
#include "panel/PanelKeys.h"
#include "panel/PanelServices.h"
#include "panel/RowCommands.h"
#include "panel/RowContent.h"
#include "paste/PasteController.h"
#include "platform/KeyEvent.h"
#include "platform/Workspace.h"
#include "store/ClipSearchIndex.h"
#include "store/ClipStore.h"
#include "thumbnails/ThumbnailProvider.h"

class QString;
class QWidget;

namespace vantorel {

class HistoryPanelView;
class SheetWindow;
class VantorelMenu;

/// Owns the history panel: its window, the list that it shows, its selection and its commands.
/// The native window exists from construction on, hidden, so that showing it costs little. Needs a
/// running toolkit. Main thread.
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

  /// The history has changed. What the pointer is over is left alone.
  void refreshIfVisible();
  /// The text of some image has been recognised.
  void refreshSearchIfVisible();

 private:
  [[nodiscard]] bool isSeen() const;
  bool handleKey(const KeyEvent& event);
  [[nodiscard]] PanelKeyState keyState();
  void perform(const PanelKeyDecision& decision);

  enum class Selection { keepEntry, keepIndex };
  void refresh(Selection selection);
  void rebuildDocument();
  [[nodiscard]] RowContent contentAt(std::size_t index);
  void updateRow(Uuid id);
  void requestPictures();
  void requestThumbnail(const ClipItem& item);
  void requestSourceIcon(const std::string& bundleIdentifier);
  void resizeForCurrentContent();
  void positionOnCurrentScreen();
  void showSearchBar();
  void typeComposed(const QString& text);

  void clearFilters();
  void updateFilterButtons();
  void showTypeFilters();
  void showSourceFilters();
  void showBelow(const QWidget& button, std::unique_ptr<VantorelMenu> menu);
  void menuOpened();
  void menuClosed();
  void selectTypeFilter(ClipTypeFilter type);
  void selectSourceFilter(std::optional<std::string> key);

  [[nodiscard]] bool isLookedAtClosely() const;
  void startOutsideClickMonitor();
  void warmSearchIndex(std::size_t nextItem);

  [[nodiscard]] const ClipItem* selectedItem() const;
  [[nodiscard]] const ClipItem* displayed(Uuid id) const;
  void updateSelection();
  void moveSelection(int delta);
  void select(Uuid id);
  void scrollSelectionIntoView();

  void pasteSelected(PasteStyle style);
  void pasteFromControl(Uuid id);
  void deleteSelected();
  void togglePin(Uuid id);
  void movePin(Uuid id, int delta);
  void dropPin(Uuid dragged, Uuid onto, DropPlace place);
  [[nodiscard]] RowCommands rowCommands();
  void pastePlain(Uuid id);
  void deleteItem(Uuid id);
  void renamePin(Uuid id);
  void finishRenaming(Uuid id, const std::string& name);

  ClipStore& store_;
  PasteController& pasteController_;
  PanelServices services_;
  ToastPresenter toast_;
  std::unique_ptr<HistoryPanelView> view_;
  DateText dateText_;
  ClipSearchIndex searchIndex_;
  FileAvailability availability_;
  ThumbnailProvider thumbnails_;
  std::unordered_set<Uuid> requestedImages_;  // in this showing of the panel
  std::unordered_set<Uuid> awaitedPictures_;  // being made
  std::vector<ClipItem> displayedItems_;
  std::size_t selectedIndex_ = 0;  // below the count, or 0
  ClipTypeFilter selectedType_ = ClipTypeFilter::all;
  std::optional<std::string> selectedSourceId_;
  std::unique_ptr<Observation> outsideClickMonitor_;
  std::unique_ptr<VantorelMenu> menu_;  // of a filter button
  std::unique_ptr<SheetWindow> sheet_;  // while a pin is being named
  // Dies with this; queued work that finds it dead does nothing.
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
  // One for each showing of the panel, for work that belongs to it.
  std::shared_ptr<const bool> showing_;
};

}  // namespace vantorel
