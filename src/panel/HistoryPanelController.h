#pragma once

#include <memory>
#include <optional>

#include "panel/PanelServices.h"
#include "paste/PasteController.h"
#include "platform/Workspace.h"
#include "store/ClipStore.h"

namespace vantorel {

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
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace vantorel
