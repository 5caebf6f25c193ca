// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <Qt>
#include <memory>
#include <string>
#include <vector>

#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeEventMonitors.h"
#include "fakes/FakeFileThumbnails.h"
#include "fakes/FakeIcons.h"
#include "fakes/FakeImageDecoder.h"
#include "fakes/FakePasteboard.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeSyntheticInput.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/FakeWindowSpaces.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/TestStore.h"
#include "panel/HistoryPanelController.h"
#include "paste/PasteController.h"
#include "platform/posix/PosixFileSystem.h"

class QString;

namespace vantorel {

class ClipRowView;
class ElasticScrollView;
class SearchField;
class ToastPanel;
class VantorelPanel;

/// A panel on a real store, driven and looked at from outside as a user would. The pointer rests
/// away from the panel at first.
class HistoryPanelTest : public testing::Test {
 protected:
  HistoryPanelTest();
  ~HistoryPanelTest() override;

  /// Adds texts so that the list shows them in the order given.
  std::vector<Uuid> addTexts(const std::vector<std::string>& texts);
  /// The same, the first `pins` of them pinned.
  std::vector<Uuid> addTexts(const std::vector<std::string>& texts, std::size_t pins);

  /// Adds texts named "entry 1" to "entry `count`", the first on top.
  void addNumbered(int count);

  /// Shows the panel for the target application.
  void open();

  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void type(const std::string& text);
  void click(std::size_t row);

  [[nodiscard]] VantorelPanel& panel() const;
  [[nodiscard]] SearchField& searchField() const;
  [[nodiscard]] ElasticScrollView& scrollView() const;
  /// The rows that are shown, from the top.
  [[nodiscard]] std::vector<ClipRowView*> rows() const;
  [[nodiscard]] std::vector<std::string> titles() const;
  /// The titles of the rows drawn as selected.
  [[nodiscard]] std::vector<std::string> selectedTitles() const;
  /// The text whose preview is shown; empty without one.
  [[nodiscard]] static std::string previewed();
  /// The sentence shown instead of rows; empty when there are rows.
  [[nodiscard]] std::string sentence() const;
  [[nodiscard]] bool searchIsShown() const;
  /// The texts of toasts on screen.
  [[nodiscard]] static std::vector<std::string> toasts();
  /// What was put on the pasteboard last, as text.
  [[nodiscard]] std::string pasted() const;

  TestStore store_;
  ManualDispatch& dispatch_ = store_.dispatch();
  FakePasteboard pasteboard_{dispatch_};
  FakeWorkspace workspace_{dispatch_};
  FakeSyntheticInput input_;
  FakeImageDecoder images_;
  FakeFileThumbnails thumbnails_;
  FakeIcons icons_;
  FakeScreens screens_;
  FakeEventMonitors monitors_;
  FakeAccessibilityPreferences accessibility_;
  FakeWindowBackdrops backdrops_;
  FakeWindowSpaces spaces_;
  PasteController paste_;
  RunningApplication target_;
  std::unique_ptr<HistoryPanelController> controller_;
};

}  // namespace vantorel
