// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string_view>
#include <vector>

#include "fakes/FakeImageDecoder.h"
#include "fakes/FakePasteboard.h"
#include "fakes/FakeSyntheticInput.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/TestStore.h"
#include "paste/PasteController.h"
#include "platform/posix/PosixFileSystem.h"

namespace vantorel {

/// A controller whose target is an editor that runs, but is not in front.
class PasteScene : public testing::Test {
 protected:
  PasteScene() {
    controller->onOutcome = [this](PasteOutcome outcome) { outcomes.push_back(outcome); };
    controller->onInternalPasteboardWrite = [this] { ++ownWrites; };
    controller->setTargetApplication(editor);
  }

  [[nodiscard]] ManualDispatch& dispatch() { return history.dispatch(); }
  [[nodiscard]] PasteServices services() {
    return {pasteboard, workspace, input, dispatch(), files, decoder};
  }
  void pasteText(std::string_view text = "text") { controller->paste(textItem(text), false); }
  /// What a damaged history may hold.
  [[nodiscard]] static ClipItem filesItemWithoutFiles() {
    auto item = filesItem({"/tmp/a.txt"});
    item.filePaths = {};
    return item;
  }
  /// The target comes to the front, announced, as soon as it is asked to.
  void heedActivations() {
    workspace.onActivate = [this](const RunningApplication& application) {
      workspace.bringToFront(application.processIdentifier);
    };
  }

  TestStore history;
  FakePasteboard pasteboard{dispatch()};
  FakeWorkspace workspace{dispatch()};
  FakeSyntheticInput input;
  FakeImageDecoder decoder;
  std::shared_ptr<FileSystem> files = std::make_shared<PosixFileSystem>();
  RunningApplication editor = workspace.launch(10, "com.acme.editor", "Editor");
  std::unique_ptr<PasteController> controller =
      std::make_unique<PasteController>(*history, services());
  std::vector<PasteOutcome> outcomes;
  int ownWrites = 0;
};

}  // namespace vantorel
