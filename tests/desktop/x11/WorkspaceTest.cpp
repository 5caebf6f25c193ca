// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <chrono>

#include "desktop/x11/DesktopFixture.h"
#include "platform/linux/x11/X11Workspace.h"

namespace vantorel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

class WorkspaceTest : public DesktopFixture {
 protected:
  WorkspaceTest() { startWindowManager(); }

  void open() {
    workspace = X11Workspace::open(dispatch, places(), display());
    ASSERT_NE(workspace, nullptr);
  }
  void waitForEntries() {
    waitUntil("the desktop entries are read",
              [&] { return !workspace->desktopEntries().index()->entries().empty(); });
  }
  [[nodiscard]] std::string frontIdentifier() {
    const auto front = workspace->frontmostApplication();
    return front ? front->bundleIdentifier.value_or("(none)") : "(nobody)";
  }
  static std::string pidOf(const PlayedProgram& program) {
    return "pid=" + std::to_string(program.process->pid());
  }

  std::unique_ptr<X11Workspace> workspace;
};

TEST_F(WorkspaceTest, NobodyIsInFrontOfAnEmptyDesktop) {
  open();
  EXPECT_EQ(workspace->frontmostApplication(), std::nullopt);
  EXPECT_EQ(workspace->ownBundleIdentifier(), "com.vantorel.Vantorel");
}

TEST_F(WorkspaceTest, TellsTheApplicationInFront) {
  const auto program = play({{"class=editor,Editor"}});
  expectInFront(program.windows[0]);
  open();
  const auto front = workspace->frontmostApplication();
  ASSERT_TRUE(front);
  EXPECT_EQ(front->processIdentifier, program.process->pid()) << "stated by nobody but the server";
  EXPECT_EQ(front->bundleIdentifier, "Editor");
  EXPECT_EQ(front->localizedName, "Editor");
  EXPECT_EQ(front->activationPolicy, ActivationPolicy::regular);
}

TEST_F(WorkspaceTest, BelievesTheServerRatherThanTheStatedProcess) {
  const auto own = std::to_string(::getpid());
  for (const auto& pid : {std::string("1"), own, std::string("2147483646"), std::string("2")}) {
    const auto program = play({{"class=editor,Editor", "pid=" + pid}});
    expectInFront(program.windows[0]);
    if (!workspace) open();
    const auto front = workspace->frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(front->processIdentifier, program.process->pid()) << pid;
    EXPECT_EQ(front->bundleIdentifier, "Editor") << pid;
  }
}

TEST_F(WorkspaceTest, TellsProgramsApartThatStateTheSameProcess) {
  const auto first = play({{"class=sandboxed,First", "pid=2"}});
  expectInFront(first.windows[0]);
  open();
  const auto target = *workspace->frontmostApplication();
  const auto second = play({{"class=sandboxed,Second", "pid=2"}});
  expectInFront(second.windows[0]);
  EXPECT_NE(workspace->frontmostApplication()->processIdentifier, target.processIdentifier);
  EXPECT_TRUE(workspace->activate(target));
  expectInFront(first.windows[0]);
}

TEST_F(WorkspaceTest, NamesTheApplicationByItsDesktopEntry) {
  install("org.example.Editor", "Name=Text Editor\nStartupWMClass=Editor\n");
  const auto program = play({{"class=editor,Editor"}});
  expectInFront(program.windows[0]);
  open();
  waitForEntries();
  const auto front = workspace->frontmostApplication();
  EXPECT_EQ(front->bundleIdentifier, "org.example.Editor");
  EXPECT_EQ(front->localizedName, "Text Editor");
}

TEST_F(WorkspaceTest, BelievesTheAnnouncedDesktopEntryFirst) {
  install("org.example.A", "Name=A\nStartupWMClass=Editor\n");
  install("org.example.B", "Name=B\n");
  open();
  waitForEntries();
  const auto gtk = play({{"class=editor,Editor", "gtk=org.example.B"}});
  expectInFront(gtk.windows[0]);
  EXPECT_EQ(frontIdentifier(), "org.example.B");
  const auto kde = play({{"class=editor,Editor", "kde=org.example.B"}});
  expectInFront(kde.windows[0]);
  EXPECT_EQ(frontIdentifier(), "org.example.B");
}

TEST_F(WorkspaceTest, FindsAnEntryByTheRunningProgram) {
  install("by-program", "Name=Played\nExec=x11_window_client %u\n");
  open();
  waitForEntries();
  const auto program = play({{"class=unheard,Unheard"}});
  expectInFront(program.windows[0]);
  EXPECT_EQ(frontIdentifier(), "by-program");
}

TEST_F(WorkspaceTest, KnowsWhatAnInstalledApplicationIsCalled) {
  install("org.example.Editor", "Name=Text Editor\n");
  install("nameless", "Exec=nameless\n");
  open();
  waitForEntries();
  EXPECT_EQ(workspace->applicationName("org.example.Editor"), "Text Editor");
  EXPECT_EQ(workspace->applicationName("org.example.editor"), "Text Editor");
  EXPECT_EQ(workspace->applicationName("nameless"), std::nullopt);
  EXPECT_EQ(workspace->applicationName("org.example.Unheard"), std::nullopt);
}

TEST_F(WorkspaceTest, NoticesAnEntryThatIsInstalledLater) {
  open();
  install("editor", "Name=Installed Later\n");
  const auto program = play({{"class=editor,Editor"}});
  expectInFront(program.windows[0]);
  waitUntil("the new entry is found", [&] { return frontIdentifier() == "editor"; });
}

TEST_F(WorkspaceTest, KnowsARealTerminal) {
  install("debian-xterm", "Name=XTerm\nStartupWMClass=XTerm\nCategories=TerminalEmulator;\n");
  open();
  waitForEntries();
  const auto terminal = run({"xterm"});
  waitUntil("the terminal is in front", [&] { return frontIdentifier() == "debian-xterm"; });
  EXPECT_EQ(workspace->frontmostApplication()->localizedName, "XTerm");
}

TEST_F(WorkspaceTest, AClientFromElsewhereHasANumberOfItsOwn) {
  const auto program = play({{"class=far,Far", "machine=elsewhere.example", "pid=1"}});
  const auto other = play({{"class=far,Far", "machine=elsewhere.example", "pid=1"}});
  expectInFront(other.windows[0]);
  open();
  const auto running = workspace->runningApplications("Far");
  ASSERT_EQ(running.size(), 2U);
  EXPECT_LT(running[0].processIdentifier, 0);
  EXPECT_NE(running[0].processIdentifier, running[1].processIdentifier);
  const auto second = running[1];
  EXPECT_EQ(workspace->runningApplication(second.processIdentifier), second);
  EXPECT_TRUE(workspace->activate(second));
  expectInFront(program.windows[0]);
  EXPECT_EQ(workspace->frontmostApplication(), second);
}

TEST_F(WorkspaceTest, ThisProgramsWindowsAreAnAccessorys) {
  const auto window = xcb_generate_id(tester().xcb());
  xcb_create_window(tester().xcb(), XCB_COPY_FROM_PARENT, window, tester().root(), 0, 0, 90, 90, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  xcb_change_property(tester().xcb(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS,
                      XCB_ATOM_STRING, 8, 12, "thing\0Thing");
  xcb_map_window(tester().xcb(), window);
  expectInFront(window);
  open();
  const auto front = workspace->frontmostApplication();
  EXPECT_EQ(front->bundleIdentifier, "com.vantorel.Vantorel");
  EXPECT_EQ(front->localizedName, "Vantorel");
  EXPECT_EQ(front->activationPolicy, ActivationPolicy::accessory);
}

TEST_F(WorkspaceTest, AnAccessoryThatNeverTookTheKeyboardMakesNoRegularApplication) {
  const auto program = play({{"class=note,Note", "state=SKIP_TASKBAR"}});
  const auto tool = play({{"class=tool,Tool", "type=UTILITY"}});
  const auto editor = play({{"class=editor,Editor"}});
  expectInFront(editor.windows[0]);
  open();
  for (const auto* name : {"Note", "Tool"}) {
    const auto running = workspace->runningApplications(name);
    ASSERT_EQ(running.size(), 1U);
    EXPECT_EQ(running[0].activationPolicy, ActivationPolicy::accessory) << name;
  }
}

TEST_F(WorkspaceTest, WhateverTookTheKeyboardMakesARegularApplication) {
  open();
  for (const auto* description : {"state=SKIP_TASKBAR", "type=UTILITY", "type=DIALOG"}) {
    const auto program = play({{"class=tool,Tool", description}});
    bringToFront(program.windows[0]);
    EXPECT_EQ(workspace->frontmostApplication()->activationPolicy, ActivationPolicy::regular)
        << description;
  }
}

TEST_F(WorkspaceTest, ActivatesTheVeryWindowWhateverItsKind) {
  const auto paint = play({{"class=paint,Paint"}, {"class=paint,Paint", "type=UTILITY"}});
  open();
  bringToFront(paint.windows[0]);
  bringToFront(paint.windows[1]);
  const auto palette = workspace->frontmostApplication();
  const auto other = play({{"class=other,Other"}});
  expectInFront(other.windows[0]);
  EXPECT_TRUE(workspace->activate(*palette));
  expectInFront(paint.windows[1]);
  EXPECT_THAT(workspace->frontmostApplication(), Optional(*palette));
}

TEST_F(WorkspaceTest, AWindowWithTheNumberOfAnEndedOneIsAnother) {
  open();
  // The server gives a program that starts when another has just ended the same numbers, mostly.
  for (int reused = 0, tries = 0; reused < 5; ++tries) {
    ASSERT_LT(tries, 200) << "no number was given out again";
    auto editor = play({{"class=editor,Editor"}});
    expectInFront(editor.windows[0]);
    const auto before = workspace->frontmostApplication();
    ASSERT_TRUE(before);
    const auto number = editor.windows[0];
    editor.process->kill();
    const auto safe = play({{"class=safe,Safe"}});
    expectInFront(safe.windows[0]);
    const auto after = workspace->frontmostApplication();
    ASSERT_TRUE(after);
    EXPECT_EQ(after->bundleIdentifier, "Safe");
    EXPECT_NE(after->window, before->window);
    EXPECT_EQ(workspace->stillThere(*before), std::nullopt);
    EXPECT_FALSE(workspace->activate(*before));
    if (safe.windows[0] == number) ++reused;
  }
}

TEST_F(WorkspaceTest, OnlyAProcessThatStartedAfterTheEndIsARelaunchedOne) {
  const auto bystander = play({{"class=editor,Editor"}});
  auto target = play({{"class=editor,Editor"}});
  expectInFront(target.windows[0]);
  open();
  const auto first = *workspace->frontmostApplication();
  // So that the bystander's start is not in the same hundredth of a second.
  waitUntil("time goes by", [&, start = std::chrono::steady_clock::now()] {
    return std::chrono::steady_clock::now() - start > std::chrono::milliseconds(50);
  });
  const auto ended = *workspace->frontmostApplication();
  EXPECT_EQ(first, ended);
  const auto beside = *workspace->runningApplication(bystander.process->pid());
  EXPECT_FALSE(workspace->startedAfter(beside, ended)) << "it has not ended";
  target.process->kill();
  waitUntil("the target is gone", [&] { return !workspace->stillThere(ended); });
  EXPECT_FALSE(workspace->startedAfter(beside, ended));
  const auto relaunched = play({{"class=editor,Editor"}});
  const auto running = workspace->runningApplication(relaunched.process->pid());
  ASSERT_TRUE(running);
  EXPECT_TRUE(workspace->startedAfter(*running, ended));
}

TEST_F(WorkspaceTest, AnApplicationIsRegularBesideItsSkippingDialog) {
  const auto program =
      play({{"class=paint,Paint"}, {"class=paint,Paint", "type=DIALOG", "state=SKIP_TASKBAR"}});
  open();
  for (const auto window : program.windows) {
    bringToFront(window);
    EXPECT_EQ(workspace->frontmostApplication()->activationPolicy, ActivationPolicy::regular);
  }
}

TEST_F(WorkspaceTest, AnApplicationRunsAsLongAsItOwnsAWindow) {
  auto program = play({{"class=editor,Editor"}});
  open();
  const auto pid = program.process->pid();
  EXPECT_TRUE(workspace->runningApplication(pid));
  program.process->kill();
  waitUntil("the application is gone", [&] { return !workspace->runningApplication(pid); });
  EXPECT_THAT(workspace->runningApplications("Editor"), IsEmpty());
  EXPECT_FALSE(workspace->activate({pid, "Editor", "Editor", ActivationPolicy::regular}));
}

TEST_F(WorkspaceTest, ListsTheOneInFrontLastFirst) {
  const auto first = play({{"class=editor,Editor"}});
  const auto second = play({{"class=editor,Editor"}});
  expectInFront(second.windows[0]);
  open();
  const auto pids = [&] {
    std::vector<ProcessId> result;
    for (const auto& each : workspace->runningApplications("Editor")) {
      result.push_back(each.processIdentifier);
    }
    return result;
  };
  EXPECT_THAT(pids(), ElementsAre(second.process->pid(), first.process->pid()));
  bringToFront(first.windows[0]);
  waitUntil("the other one is first", [&] { return pids().front() == first.process->pid(); });
}

TEST_F(WorkspaceTest, ActivatesTheLastUsedWindow) {
  const auto editor = play({{"class=editor,Editor"}, {"class=editor,Editor"}});
  open();
  bringToFront(editor.windows[1]);
  EXPECT_EQ(frontIdentifier(), "Editor");
  bringToFront(editor.windows[0]);
  const auto application = workspace->frontmostApplication();
  const auto other = play({{"class=other,Other"}});
  expectInFront(other.windows[0]);
  EXPECT_TRUE(workspace->activate(*application));
  expectInFront(editor.windows[0]);
}

TEST_F(WorkspaceTest, ActivatesWhatWasIconified) {
  const auto editor = play({{"class=editor,Editor"}});
  expectInFront(editor.windows[0]);
  open();
  const auto application = workspace->frontmostApplication();
  sendToRoot(editor.windows[0], tester().atom("WM_CHANGE_STATE"), {3});
  waitUntil("the window is iconified", [&] { return activeWindow() != editor.windows[0]; });
  EXPECT_EQ(workspace->frontmostApplication(), std::nullopt);
  EXPECT_TRUE(workspace->activate(*application));
  expectInFront(editor.windows[0]);
}

TEST_F(WorkspaceTest, ChoosesTheWindowOfTheApplicationWithinOneProcess) {
  const auto office = play({{"class=office,Writer"}, {"class=office,Calc"}});
  open();
  bringToFront(office.windows[0]);
  const auto writer = workspace->frontmostApplication();
  bringToFront(office.windows[1]);
  EXPECT_EQ(frontIdentifier(), "Calc");
  EXPECT_TRUE(workspace->activate(*writer));
  expectInFront(office.windows[0]);
}

TEST_F(WorkspaceTest, AStaleActiveWindowIsNotBelieved) {
  const auto program = play({{"class=editor,Editor"}});
  expectInFront(program.windows[0]);
  stopWindowManager();
  open();
  const xcb_window_t gone = program.windows[0] + 0x100;
  xcb_change_property(tester().xcb(), XCB_PROP_MODE_REPLACE, tester().root(),
                      tester().atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 32, 1, &gone);
  xcb_set_input_focus(tester().xcb(), XCB_INPUT_FOCUS_PARENT, program.windows[0], XCB_CURRENT_TIME);
  sync();
  EXPECT_EQ(frontIdentifier(), "Editor") << "by the keyboard";

  // The number may have been given to a window that is nobody's main window.
  const auto reused = xcb_generate_id(tester().xcb());
  xcb_create_window(tester().xcb(), 0, reused, tester().root(), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  xcb_change_property(tester().xcb(), XCB_PROP_MODE_REPLACE, tester().root(),
                      tester().atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 32, 1, &reused);
  sync();
  EXPECT_EQ(frontIdentifier(), "Editor") << "by the keyboard";
}

TEST_F(WorkspaceTest, AWindowThatWasInFrontAndIsGoneIsNotBelieved) {
  const auto editor = play({{"class=editor,Editor"}});
  const auto safe = play({{"class=safe,Safe"}});
  open();
  bringToFront(safe.windows[0]);
  stopWindowManager();
  const auto sayActive = [&] {
    xcb_change_property(tester().xcb(), XCB_PROP_MODE_REPLACE, tester().root(),
                        tester().atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 32, 1,
                        safe.windows.data());
    sync();
  };
  sayActive();
  EXPECT_EQ(frontIdentifier(), "Safe");
  xcb_destroy_window(tester().xcb(), safe.windows[0]);
  sayActive();
  xcb_set_input_focus(tester().xcb(), XCB_INPUT_FOCUS_PARENT, editor.windows[0], XCB_CURRENT_TIME);
  sync();
  EXPECT_EQ(frontIdentifier(), "Editor") << "by the keyboard";
}

class BareWorkspaceTest : public DesktopFixture {};

TEST_F(BareWorkspaceTest, WithoutAWindowManagerTheKeyboardTells) {
  const auto editor = play({{"class=editor,Editor"}});
  const auto other = play({{"class=other,Other"}});
  const auto workspace = X11Workspace::open(dispatch, places(), display());
  xcb_set_input_focus(tester().xcb(), XCB_INPUT_FOCUS_PARENT, editor.windows[0], XCB_CURRENT_TIME);
  sync();
  EXPECT_EQ(workspace->frontmostApplication()->bundleIdentifier, "Editor");
  const auto running = workspace->runningApplications("Other");
  ASSERT_EQ(running.size(), 1U);
  EXPECT_TRUE(workspace->activate(running[0]));
  waitUntil("the other has the keyboard", [&] { return focus() == other.windows[0]; });
  EXPECT_EQ(workspace->frontmostApplication()->bundleIdentifier, "Other");
}

TEST_F(BareWorkspaceTest, WithTheKeyboardUnderThePointerTheWindowThereTells) {
  const auto editor = play({{"class=editor,Editor"}});
  const auto workspace = X11Workspace::open(dispatch, places(), display());
  xcb_set_input_focus(tester().xcb(), XCB_INPUT_FOCUS_NONE, XCB_INPUT_FOCUS_POINTER_ROOT,
                      XCB_CURRENT_TIME);
  xcb_warp_pointer(tester().xcb(), XCB_WINDOW_NONE, editor.windows[0], 0, 0, 0, 0, 5, 5);
  sync();
  const auto front = workspace->frontmostApplication();
  ASSERT_TRUE(front);
  EXPECT_EQ(front->bundleIdentifier, "Editor");
  xcb_set_input_focus(tester().xcb(), XCB_INPUT_FOCUS_NONE, XCB_INPUT_FOCUS_NONE, XCB_CURRENT_TIME);
  sync();
  EXPECT_EQ(workspace->frontmostApplication(), std::nullopt);
}

TEST_F(WorkspaceTest, AnnouncesEachApplicationThatComesToTheFront) {
  const auto editor = play({{"class=editor,Editor"}});
  const auto other = play({{"class=other,Other"}});
  expectInFront(other.windows[0]);
  install("other", "Name=Other\n");
  open();
  waitForEntries();
  std::vector<std::string> announced;
  const auto observation = workspace->observeActivations(
      [&](const RunningApplication& each) { announced.push_back(*each.bundleIdentifier); });
  bringToFront(editor.windows[0]);
  waitUntil("the editor is announced", [&] { return announced.size() == 1; });
  bringToFront(other.windows[0]);
  waitUntil("the other is announced", [&] { return announced.size() == 2; });
  EXPECT_THAT(announced, ElementsAre("Editor", "other"));
}

TEST_F(WorkspaceTest, AnnouncesEachWindowThatComesToTheFront) {
  const auto editor = play({{"class=editor,Editor"}, {"class=editor,Editor"}});
  const auto other = play({{"class=other,Other"}});
  expectInFront(other.windows[0]);
  open();
  std::vector<std::string> announced;
  const auto observation = workspace->observeActivations(
      [&](const RunningApplication& each) { announced.push_back(*each.bundleIdentifier); });
  bringToFront(editor.windows[0]);
  waitUntil("the editor is announced", [&] { return announced.size() == 1; });
  bringToFront(editor.windows[1]);
  bringToFront(other.windows[0]);
  waitUntil("the other is announced",
            [&] { return !announced.empty() && announced.back() == "Other"; });
  EXPECT_THAT(announced, ElementsAre("Editor", "Editor", "Other"));
}

TEST_F(WorkspaceTest, AnnouncesEveryChangeAsLongAsTheWindowManagerIsThere) {
  open();
  EXPECT_TRUE(workspace->announcesEveryChange());
  int heard = 0;
  workspace->setAnnouncingHandler([&] { ++heard; });
  stopWindowManager();
  waitUntil("the window manager is missed", [&] { return !workspace->announcesEveryChange(); });
  startWindowManager();
  waitUntil("the next one is noticed", [&] { return workspace->announcesEveryChange(); });
  EXPECT_EQ(heard, 2);
  const auto editor = play({{"class=editor,Editor"}});
  expectInFront(editor.windows[0]);
  EXPECT_EQ(frontIdentifier(), "Editor");
  killServer();
  waitUntil("the server is missed", [&] { return !workspace->announcesEveryChange(); });
}

TEST_F(WorkspaceTest, NoticesWhatAWindowSaysOfItselfLater) {
  const auto program = play({{"class=editor,Editor"}});
  expectInFront(program.windows[0]);
  open();
  EXPECT_EQ(frontIdentifier(), "Editor");
  const auto token = workspace->frontmostApplication()->window;
  xcb_change_property(tester().xcb(), XCB_PROP_MODE_REPLACE, program.windows[0], XCB_ATOM_WM_CLASS,
                      XCB_ATOM_STRING, 8, 10, "safe\0Safe");
  sync();
  EXPECT_EQ(frontIdentifier(), "Safe");
  EXPECT_EQ(workspace->frontmostApplication()->window, token);
}

TEST_F(WorkspaceTest, AnEndedObservationHearsNothingOfWhatIsUnderWay) {
  const auto editor = play({{"class=editor,Editor"}});
  const auto other = play({{"class=other,Other"}});
  expectInFront(other.windows[0]);
  open();
  int heard = 0;
  int alsoHeard = 0;
  auto ended = workspace->observeActivations([&](const RunningApplication&) { ++heard; });
  const auto kept = workspace->observeActivations([&](const RunningApplication&) {
    ++alsoHeard;
    ended.reset();
  });
  bringToFront(editor.windows[0]);
  waitUntil("the editor is announced", [&] { return alsoHeard == 1; });
  const int before = heard;
  bringToFront(other.windows[0]);
  waitUntil("the other is announced", [&] { return alsoHeard == 2; });
  EXPECT_EQ(heard, before);
}

TEST_F(WorkspaceTest, AnAnnouncementUnderWayDoesNotOutliveTheWorkspace) {
  const auto editor = play({{"class=editor,Editor"}});
  const auto other = play({{"class=other,Other"}});
  expectInFront(other.windows[0]);
  open();
  waitUntil("the start is over", [&] { return workspace->frontmostApplication().has_value(); });
  dispatch.runQueued();
  int heard = 0;
  const auto observation =
      workspace->observeActivations([&](const RunningApplication&) { ++heard; });
  xcb_set_input_focus(tester().xcb(), XCB_INPUT_FOCUS_PARENT, editor.windows[0], XCB_CURRENT_TIME);
  sync();
  // Not waitUntil: that would run the queue.
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (dispatch.queuedCount() == 0 && std::chrono::steady_clock::now() < end) sync();
  ASSERT_GT(dispatch.queuedCount(), 0U);
  workspace.reset();
  dispatch.runQueued();
  EXPECT_EQ(heard, 0);
}

TEST_F(WorkspaceTest, WithoutTheServerNobodyIsThere) {
  const auto editor = play({{"class=editor,Editor"}});
  expectInFront(editor.windows[0]);
  open();
  const auto application = workspace->frontmostApplication();
  ASSERT_TRUE(application);
  killServer();
  waitUntil("the loss is noticed", [&] { return !workspace->frontmostApplication(); });
  EXPECT_EQ(workspace->runningApplication(application->processIdentifier), std::nullopt);
  EXPECT_THAT(workspace->runningApplications("Editor"), IsEmpty());
  EXPECT_FALSE(workspace->activate(*application));
}

TEST(WorkspaceWithoutServer, IsNone) {
  ManualDispatch dispatch;
  EXPECT_EQ(X11Workspace::open(dispatch, {}, ":4711"), nullptr);
}

}  // namespace
}  // namespace vantorel
