// SPDX-License-Identifier: MIT
// Which application a paste goes to.
#include <gmock/gmock.h>

#include <optional>

#include "unit/paste/PasteScene.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::Optional;
using testing::SizeIs;

using PasteTargetTest = PasteScene;

TEST_F(PasteTargetTest, ThereIsNoneUntilOneIsSet) {
  PasteController fresh(*history, services());
  EXPECT_EQ(fresh.resolveTargetApplication(), std::nullopt);
}

TEST_F(PasteTargetTest, ThisApplicationOrNoneClearsIt) {
  for (const auto& application : std::vector<std::optional<RunningApplication>>{
           std::nullopt, RunningApplication{30, "com.vantorel.Vantorel", "Renamed"},
           RunningApplication{30, "org.example.copy", "Vantorel"}}) {
    controller->setTargetApplication(editor);
    ASSERT_NE(controller->resolveTargetApplication(), std::nullopt);
    controller->setTargetApplication(application);
    EXPECT_EQ(controller->resolveTargetApplication(), std::nullopt);
  }
}

TEST_F(PasteTargetTest, ApplicationsWithoutAnIdentifierAreAllAlike) {
  const auto nameless = workspace.launch({40, std::nullopt, "Nameless", ActivationPolicy::regular});
  controller->setTargetApplication(nameless);
  EXPECT_THAT(controller->resolveTargetApplication(), Optional(nameless));
  workspace.setOwnBundleIdentifier(std::nullopt);
  controller->setTargetApplication(nameless);
  EXPECT_EQ(controller->resolveTargetApplication(), std::nullopt);
}

TEST_F(PasteTargetTest, TheVeryProcessGoesBeforeItsNamesakes) {
  workspace.launch(11, "com.acme.editor", "Editor");
  workspace.setFront(11);
  EXPECT_THAT(controller->resolveTargetApplication(), Optional(editor));
}

TEST_F(PasteTargetTest, OneThatWasRelaunchedIsFoundByItsIdentifier) {
  workspace.terminate(editor.processIdentifier);
  EXPECT_EQ(controller->resolveTargetApplication(), std::nullopt);
  const auto relaunched = workspace.launch(99, "com.acme.editor", "Editor");
  EXPECT_THAT(controller->resolveTargetApplication(), Optional(relaunched));
  heedActivations();
  pasteText();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::pasted));
  ASSERT_THAT(input.posted(), SizeIs(4));
  EXPECT_EQ(input.posted().front().pid, 99);
}

TEST_F(PasteTargetTest, ANamesakeThatRanAllAlongIsABystander) {
  workspace.launch(11, "com.acme.editor", "Editor");
  workspace.terminate(editor.processIdentifier);
  EXPECT_EQ(controller->resolveTargetApplication(), std::nullopt);
  pasteText();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::clipboardOnlyNoTarget));
  EXPECT_EQ(pasteboard.contents().string, "text");
  EXPECT_TRUE(workspace.activations().empty());
}

TEST_F(PasteTargetTest, TheRelaunchedOneIsFoundAmongBystanders) {
  workspace.launch(11, "com.acme.editor", "Editor");
  workspace.terminate(editor.processIdentifier);
  const auto relaunched = workspace.launch(99, "com.acme.editor", "Editor");
  workspace.setFront(11);
  EXPECT_THAT(controller->resolveTargetApplication(), Optional(relaunched));
}

TEST_F(PasteTargetTest, AnotherWindowOfTheSameProcessIsNotTheTarget) {
  auto dialog = editor;
  dialog.window = 7;
  controller->setTargetApplication(workspace.launch(dialog));
  EXPECT_THAT(controller->resolveTargetApplication(), Optional(dialog));
  workspace.exchangeWindow(editor.processIdentifier, 8);
  EXPECT_EQ(controller->resolveTargetApplication(), std::nullopt);
  pasteText();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::clipboardOnlyNoTarget));
  EXPECT_EQ(pasteboard.contents().string, "text");
}

TEST_F(PasteTargetTest, KeysGoToTheVeryWindow) {
  auto dialog = editor;
  dialog.window = 7;
  controller->setTargetApplication(workspace.launch(dialog));
  heedActivations();
  pasteText();
  ASSERT_THAT(input.posted(), SizeIs(4));
  EXPECT_EQ(input.posted().front().window, 7U);
}

TEST_F(PasteTargetTest, AnotherTargetDoesNotRedirectFilesWhoseDiskIsStillAsked) {
  const auto browser = workspace.launch(20, "com.acme.browser", "Browser");
  heedActivations();
  controller->paste(filesItem({"/"}), false);
  controller->setTargetApplication(browser);
  dispatch().runQueued();
  ASSERT_THAT(input.posted(), SizeIs(4));
  EXPECT_EQ(input.posted().front().pid, editor.processIdentifier);
}

TEST_F(PasteTargetTest, OneWithoutAnIdentifierIsGoneWithItsProcess) {
  controller->setTargetApplication(
      workspace.launch({40, std::nullopt, "Nameless", ActivationPolicy::regular}));
  workspace.terminate(40);
  workspace.launch({41, std::nullopt, "Nameless", ActivationPolicy::regular});
  EXPECT_EQ(controller->resolveTargetApplication(), std::nullopt);
}

TEST_F(PasteTargetTest, AnotherTargetDoesNotRedirectAPasteUnderWay) {
  const auto browser = workspace.launch(20, "com.acme.browser", "Browser");
  pasteText();
  controller->setTargetApplication(browser);
  workspace.bringToFront(browser.processIdentifier);
  dispatch().advance(Seconds(0.2));
  EXPECT_TRUE(outcomes.empty());
  workspace.bringToFront(editor.processIdentifier);
  dispatch().runQueued();
  ASSERT_THAT(input.posted(), SizeIs(4));
  EXPECT_EQ(input.posted().front().pid, editor.processIdentifier);
}

}  // namespace
}  // namespace vantorel
