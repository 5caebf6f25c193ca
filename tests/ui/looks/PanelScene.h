// SPDX-License-Identifier: MIT
#pragma once

#include <Qt>
#include <filesystem>
#include <optional>
#include <string>

#include "chrome/ToastPresenter.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeEventMonitors.h"
#include "fakes/FakeFileThumbnails.h"
#include "fakes/FakeIcons.h"
#include "fakes/FakeImageDecoder.h"
#include "fakes/FakePasteboard.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeSyntheticInput.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/TestStore.h"
#include "panel/HistoryPanelController.h"
#include "platform/posix/PosixFileSystem.h"

class QPoint;
class QWidget;

namespace vantorel {

class ClipListView;
class ClipRowView;

/// A panel with a store of its own, used as a user does; nothing in it moves by itself.
class PanelScene {
 public:
  PanelScene();

  Uuid add(ClipItem item, const char* app, double secondsAgo = 0);
  /// A file that is there, or is not.
  [[nodiscard]] std::string existingFile(const char* name) const;

  /// One entry of each kind and language, and two pins.
  void addMixed();
  void addPins();
  /// Entries that have pictures, from applications with and without icons.
  void addKinds();

  void open();
  /// Opens the panel on the pins and the kinds, with all their pictures.
  void openKinds();

  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const;
  void type(const char* text) const;
  void hover(std::size_t row);
  void openMenu(std::size_t row);
  void drag(std::size_t row, QPoint from, QPoint to);
  void clickButton(const char* accessibleName);
  void askForToolTip(const char* accessibleName);
  /// Chooses a row of the menu that is open.
  static void choose(const char* title);
  void showPreview(std::size_t row, const SharedBitmap& bitmap = nullptr);

  [[nodiscard]] static QWidget* panel();
  [[nodiscard]] static ClipListView& list();
  [[nodiscard]] static std::optional<std::size_t> rowTitled(const char* start);

  TestStore store;
  ManualDispatch& dispatch = store.dispatch();
  FakeScreens screens;
  FakeAccessibilityPreferences accessibility;
  FakeWindowBackdrops backdrops;
  ToastPresenter toast{ChromeServices{dispatch, screens, accessibility, &backdrops}};

 private:
  static void giveThumbnail(const char* start, const SharedBitmap& bitmap);

  TemporaryDirectory directory_;
  FakePasteboard pasteboard_{dispatch};
  FakeWorkspace workspace_{dispatch};
  FakeSyntheticInput input_;
  FakeImageDecoder images_;
  FakeFileThumbnails thumbnails_;
  FakeIcons icons_;
  FakeEventMonitors monitors_;
  PasteController paste_{*store, PasteServices{pasteboard_, workspace_, input_, dispatch,
                                               std::make_shared<PosixFileSystem>(), images_}};
  HistoryPanelController controller_{
      *store, paste_,
      PanelServices{dispatch, screens, monitors_, accessibility, store.files(),
                    std::make_shared<PosixFileSystem>(), images_, thumbnails_, icons_, &backdrops}};
};

[[nodiscard]] ClipItem pictureItem(const char* size);

}  // namespace vantorel
