// SPDX-License-Identifier: MIT
#include <algorithm>
#include <atomic>
#include <chrono>
#include <sstream>

#include "desktop/x11/DesktopFixture.h"
#include "platform/linux/x11/X11HotKeys.h"
#include "platform/linux/x11/X11Keyboard.h"
#include "platform/linux/x11/X11SyntheticInput.h"
#include "platform/linux/x11/X11Workspace.h"

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace vantorel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr X11KeyCode keyV = 55;
constexpr X11KeyCode insertKey = 118;
constexpr X11KeyCode returnKey = 36;
constexpr X11KeyCode controlKey = 37;
constexpr X11KeyCode shiftKey = 50;
constexpr X11KeyCode superKey = 133;
constexpr X11KeyCode altKey = 64;
constexpr X11KeyCode spaceKey = 65;
constexpr X11KeyCode capsLockKey = 66;
constexpr unsigned shiftMask = XCB_MOD_MASK_SHIFT;
constexpr unsigned controlMask = XCB_MOD_MASK_CONTROL;

/// A key press as the window saw it: the key and the modifiers before it.
using SeenPress = std::pair<unsigned, unsigned>;

class SyntheticInputTest : public DesktopFixture {
 protected:
  SyntheticInputTest() {
    startWindowManager();
    workspace = X11Workspace::open(dispatch, places(), display());
    if (!workspace) throw std::runtime_error("no workspace");
    input = std::make_unique<X11SyntheticInput>(dispatch, workspace->applications(),
                                                [this] { return offerPrimary(); });
  }

  /// Into whichever window of the process is in front.
  void paste(ProcessId pid) {
    RunningApplication application;
    application.processIdentifier = pid;
    paste(application);
  }
  /// As the paste controller does it.
  void paste(const RunningApplication& target) {
    const auto source = input->createEventSource();
    ASSERT_TRUE(source);
    const auto post = [&](KeyCode key, KeyDirection direction, EventFlags flags) {
      auto event = input->createKeyboardEvent(*source, key, direction);
      ASSERT_TRUE(event);
      event->flags = flags;
      input->post(*event, target, [this](KeyDelivery delivery) { answers.push_back(delivery); });
    };
    post(keys::command, KeyDirection::down, flags::command);
    post(keys::v, KeyDirection::down, flags::command);
    post(keys::v, KeyDirection::up, flags::command);
    post(keys::command, KeyDirection::up, 0);
  }
  /// The answers to the last paste, when all of them have come.
  std::vector<KeyDelivery> answersToPaste() {
    waitUntil("every key has its answer", [&] { return answers.size() >= 4; });
    return std::exchange(answers, {});
  }

  static std::vector<SeenPress> presses(const PlayedProgram& program) {
    std::vector<SeenPress> result;
    std::istringstream lines(program.process->output());
    for (std::string line; std::getline(lines, line);) {
      std::istringstream words(line);
      std::string word;
      unsigned key = 0;
      unsigned state = 0;
      if (words >> word >> key >> state && word == "press") result.emplace_back(key, state);
    }
    return result;
  }
  /// Presses but those of modifier keys, up to and with a struck Return.
  std::vector<SeenPress> lettersUntilReturn(const PlayedProgram& program) {
    fingers().strike({returnKey});
    std::vector<SeenPress> letters;
    waitUntil("Return has come", [&] {
      letters.clear();
      for (const auto& press : presses(program)) {
        if (press.first == keyV || press.first == insertKey || press.first == returnKey) {
          letters.push_back(press);
        }
      }
      return !letters.empty() && letters.back().first == returnKey;
    });
    return letters;
  }
  void waitForPress(const PlayedProgram& program, unsigned key) {
    waitUntil("the key has come", [&] {
      const auto all = presses(program);
      return std::any_of(all.begin(), all.end(),
                         [&](const auto& each) { return each.first == key; });
    });
  }
  PlayedProgram playInFront(const std::string& wmClass = "class=editor,Editor") {
    auto program = play({{wmClass}});
    expectInFront(program.windows[0]);
    return program;
  }
  void expectNothingHeld() {
    const auto presses = X11Keyboard(tester()).presses();
    EXPECT_TRUE(presses.seen.none()) << presses.seen;
    EXPECT_TRUE(presses.synthetic.none()) << presses.synthetic;
  }

  virtual bool offerPrimary() {
    ++primaryOffers;
    return primaryAnswer;
  }

  std::unique_ptr<X11Workspace> workspace;  // first: the keys are pressed on its thread
  std::vector<KeyDelivery> answers;
  std::atomic<int> primaryOffers = 0;
  std::atomic<bool> primaryAnswer = true;
  std::unique_ptr<X11SyntheticInput> input;
};

TEST_F(SyntheticInputTest, IsTrustedWhereTheServerLetsProgramsPressKeys) {
  EXPECT_TRUE(input->isTrusted(TrustPrompt::none));
  EXPECT_TRUE(input->isTrusted(TrustPrompt::ask));
  EXPECT_TRUE(input->createEventSource());
}

TEST_F(SyntheticInputTest, AKeyWithoutAPlaceIsNone) {
  EXPECT_EQ(input->createKeyboardEvent({}, 127, KeyDirection::down), std::nullopt);
  EXPECT_EQ(input->createKeyboardEvent({}, 5000, KeyDirection::down), std::nullopt);
}

TEST_F(SyntheticInputTest, FourEventsAreOneControlV) {
  const auto program = playInFront();
  paste(program.process->pid());
  waitForPress(program, keyV);
  EXPECT_THAT(presses(program),
              ElementsAre(SeenPress(controlKey, 0), SeenPress(keyV, controlMask)));
  EXPECT_THAT(lettersUntilReturn(program),
              ElementsAre(SeenPress(keyV, controlMask), SeenPress(returnKey, 0)));
  expectNothingHeld();
}

TEST_F(SyntheticInputTest, OtherKeysAreTheirOwnChords) {
  const auto program = playInFront();
  const auto target = *workspace->runningApplication(program.process->pid());
  input->post({keys::returnKey, KeyDirection::down, flags::shift}, target, [](KeyDelivery) {});
  waitForPress(program, returnKey);
  EXPECT_THAT(presses(program),
              ElementsAre(SeenPress(shiftKey, 0), SeenPress(returnKey, shiftMask)));
}

TEST_F(SyntheticInputTest, NothingIsPressedWhileAnotherProgramIsInFront) {
  const auto target = playInFront();
  const auto front = playInFront("class=front,Front");
  paste(target.process->pid());
  // A later chord for the one in front is pressed at once; the earlier one only runs out of time.
  paste(front.process->pid());
  waitForPress(front, keyV);
  EXPECT_THAT(presses(target), IsEmpty());
  EXPECT_THAT(lettersUntilReturn(front),
              ElementsAre(SeenPress(keyV, controlMask), SeenPress(returnKey, 0)));
}

TEST_F(SyntheticInputTest, TheChordWaitsForTheKeyboardToFollow) {
  const auto target = playInFront();
  const auto front = playInFront("class=front,Front");
  paste(target.process->pid());
  bringToFront(target.windows[0]);
  waitForPress(target, keyV);
  EXPECT_THAT(presses(front), IsEmpty());
}

TEST_F(SyntheticInputTest, NothingIsPressedWhenTheKeyboardIsElsewhereThanTheActiveWindow) {
  const auto target = playInFront();
  const auto popup = play({{"class=launcher,Launcher", "override=1"}});
  xcb_set_input_focus(tester().xcb(), XCB_INPUT_FOCUS_PARENT, popup.windows[0], XCB_CURRENT_TIME);
  sync();
  paste(target.process->pid());
  paste(popup.process->pid());
  EXPECT_THAT(lettersUntilReturn(popup), ElementsAre(SeenPress(returnKey, 0)));
  EXPECT_THAT(presses(target), IsEmpty());
}

TEST_F(SyntheticInputTest, HeldModifiersDoNotSpoilTheChord) {
  const auto program = playInFront();
  fingers().press(superKey);
  fingers().press(shiftKey);
  sync();
  paste(program.process->pid());
  waitForPress(program, keyV);
  waitUntil("the modifiers are held again",
            [&] { return fingers().isDown(shiftKey) && fingers().isDown(superKey); });
  const auto all = presses(program);
  EXPECT_THAT(all, testing::Contains(SeenPress(keyV, controlMask)));
  fingers().release(shiftKey);
  fingers().release(superKey);
  sync();
  expectNothingHeld();
}

TEST_F(SyntheticInputTest, ControlThatIsHeldAlreadyStaysHeld) {
  const auto program = playInFront();
  fingers().press(controlKey, Keyboard::hardware);
  sync();
  paste(program.process->pid());
  waitForPress(program, keyV);
  waitUntil("Control is held again", [&] { return fingers().isDown(controlKey); });
  EXPECT_THAT(presses(program), testing::Contains(SeenPress(keyV, controlMask)));
  fingers().release(controlKey, Keyboard::hardware);
  waitUntil("synthetic input has let go as well",
            [&] { return !fingers().isDown(controlKey, Keyboard::synthetic); });
  expectNothingHeld();
}

TEST_F(SyntheticInputTest, WhatFingersHeldIsFreeForSyntheticInputAfterwards) {
  const auto program = playInFront();
  fingers().press(shiftKey, Keyboard::hardware);
  sync();
  paste(program.process->pid());
  waitForPress(program, keyV);
  waitUntil("Shift is held again", [&] { return fingers().isDown(shiftKey); });
  fingers().release(shiftKey, Keyboard::hardware);
  sync();
  EXPECT_FALSE(fingers().isDown(shiftKey)) << "a finger that leaves is believed at once";
  waitUntil("synthetic input has let go as well",
            [&] { return !fingers().isDown(shiftKey, Keyboard::synthetic); });
  fingers().press(shiftKey);
  sync();
  EXPECT_TRUE(fingers().isDown(shiftKey)) << "another program's press counts";
  fingers().release(shiftKey);
}

TEST_F(SyntheticInputTest, LockKeysStayAsTheyAre) {
  const auto program = playInFront();
  fingers().strike({capsLockKey});
  sync();
  paste(program.process->pid());
  waitForPress(program, keyV);
  EXPECT_THAT(presses(program),
              testing::Contains(SeenPress(keyV, controlMask | XCB_MOD_MASK_LOCK)));
  EXPECT_THAT(lettersUntilReturn(program),
              testing::Contains(SeenPress(returnKey, XCB_MOD_MASK_LOCK)));
}

TEST_F(SyntheticInputTest, AModifierThatWasLockedIsOffDuringTheChordOnly) {
  const auto program = playInFront();
  const X11Keyboard keyboard(tester());
  keyboard.lock(XCB_MOD_MASK_SHIFT);
  xcb_xkb_latch_lock_state(tester().xcb(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 0, 0, 0, 0, 0);
  sync();
  paste(program.process->pid());
  waitForPress(program, keyV);
  EXPECT_THAT(presses(program), testing::Contains(SeenPress(keyV, controlMask)));
  waitUntil("Shift is locked again",
            [&] { return keyboard.readState()->sticky.locked == XCB_MOD_MASK_SHIFT; });
}

TEST_F(SyntheticInputTest, AKeyThatIsHeldDoesNotHideTheChord) {
  const auto program = playInFront();
  fingers().press(keyV, Keyboard::hardware);
  sync();
  paste(program.process->pid());
  waitUntil("the chord has come", [&] {
    const auto all = presses(program);
    return std::find(all.begin(), all.end(), SeenPress(keyV, controlMask)) != all.end();
  });
  fingers().release(keyV, Keyboard::hardware);
}

TEST_F(SyntheticInputTest, AShortcutThatIsStillHeldDoesNotKeepTheKeyboard) {
  const auto program = playInFront();
  const auto hotKeys = X11HotKeys::open(dispatch, display());
  int heard = 0;
  ASSERT_TRUE(hotKeys->installHandler([&](HotKeyId) { ++heard; }));
  ASSERT_TRUE(hotKeys->registerHotKey({keys::space, hotkeys::command | hotkeys::option}, {}));
  for (const auto key : {superKey, altKey, spaceKey}) fingers().press(key, Keyboard::hardware);
  waitUntil("the shortcut is heard", [&] { return heard == 1; });
  paste(program.process->pid());
  waitForPress(program, keyV);
  EXPECT_THAT(presses(program), testing::Contains(SeenPress(keyV, controlMask)));
  for (const auto key : {spaceKey, altKey, superKey}) fingers().release(key, Keyboard::hardware);
  waitUntil("all is let go", [&] {
    const auto held = X11Keyboard(tester()).presses();
    return held.seen.none() && held.synthetic.none();
  });
}

TEST_F(SyntheticInputTest, ATerminalIsPastedIntoByItsOwnKeys) {
  install("some-terminal", "Name=T\nStartupWMClass=Terminal\nCategories=TerminalEmulator;\n");
  const auto program = playInFront("class=terminal,Terminal");
  waitUntil("its entry is found",
            [&] { return workspace->frontmostApplication()->bundleIdentifier == "some-terminal"; });
  paste(program.process->pid());
  waitForPress(program, keyV);
  EXPECT_THAT(presses(program), testing::Contains(SeenPress(keyV, controlMask | shiftMask)));
  EXPECT_EQ(primaryOffers, 0);
}

TEST_F(SyntheticInputTest, ATerminalThatAsksBeforeItPastesIsGivenTheTimeTo) {
  std::atomic<bool> asked = false;
  std::atomic<int> looks = 0;
  input = std::make_unique<X11SyntheticInput>(
      dispatch, workspace->applications(), [this] { return offerPrimary(); },
      [&](xcb_window_t) {
        ++looks;
        return asked.load();
      });
  const auto program = playInFront("class=gnome-terminal-server,Gnome-terminal");
  paste(*workspace->frontmostApplication());
  waitUntil("it was looked whether it asked", [&] { return looks >= 2; });
  EXPECT_THAT(presses(program), IsEmpty());
  asked = true;
  waitForPress(program, keyV);
  EXPECT_THAT(presses(program), testing::Contains(SeenPress(keyV, controlMask | shiftMask)));
}

TEST_F(SyntheticInputTest, ATerminalThatInsertsPrimaryIsOfferedItFirst) {
  const auto program = playInFront("class=xterm,XTerm");
  paste(program.process->pid());
  waitForPress(program, insertKey);
  EXPECT_THAT(presses(program), testing::Contains(SeenPress(insertKey, shiftMask)));
  EXPECT_EQ(primaryOffers, 1);
}

TEST_F(SyntheticInputTest, ATerminalIsNotGivenAnOldPrimary) {
  primaryAnswer = false;
  const auto program = playInFront("class=xterm,XTerm");
  paste(program.process->pid());
  waitUntil("PRIMARY was offered", [&] { return primaryOffers == 1; });
  EXPECT_THAT(lettersUntilReturn(program), ElementsAre(SeenPress(returnKey, 0)));
}

TEST_F(SyntheticInputTest, TheKeysFollowTheLayoutAtOnce) {
  const auto program = playInFront();
  setLayout("il");
  paste(program.process->pid());
  waitForPress(program, insertKey);
  EXPECT_EQ(primaryOffers, 0) << "an editor inserts the pasteboard";
  setLayout("us");
  paste(program.process->pid());
  waitForPress(program, keyV);
}

TEST_F(SyntheticInputTest, ATargetThatIsGoneGetsNothing) {
  auto target = playInFront();
  const auto pid = target.process->pid();
  const auto other = playInFront("class=other,Other");
  target.process->kill();
  paste(pid);
  paste(other.process->pid());
  waitForPress(other, keyV);
  EXPECT_THAT(lettersUntilReturn(other),
              ElementsAre(SeenPress(keyV, controlMask), SeenPress(returnKey, 0)));
}

TEST_F(SyntheticInputTest, AClientFromElsewhereIsPastedIntoAsWell) {
  const auto program = play({{"class=far,Far", "machine=elsewhere.example"}});
  expectInFront(program.windows[0]);
  const auto application = workspace->frontmostApplication();
  ASSERT_TRUE(application);
  EXPECT_LT(application->processIdentifier, 0);
  paste(application->processIdentifier);
  waitForPress(program, keyV);
}

TEST_F(SyntheticInputTest, WithoutTheServerItIsNotTrusted) {
  killServer();
  waitUntil("the loss is noticed", [&] { return !input->isTrusted(TrustPrompt::none); });
  EXPECT_EQ(input->createEventSource(), std::nullopt);
  bool failed = false;
  input->post({keys::v, KeyDirection::down, flags::command}, {},
              [&](KeyDelivery delivery) { failed = delivery == KeyDelivery::failed; });
  waitUntil("the answer", [&] { return failed; });
}

TEST_F(SyntheticInputTest, SaysThatTheKeysWerePressed) {
  const auto program = playInFront();
  paste(*workspace->frontmostApplication());
  EXPECT_THAT(answersToPaste(), testing::Each(KeyDelivery::delivered));
  waitForPress(program, keyV);
}

TEST_F(SyntheticInputTest, SaysThatTheKeyboardDidNotFollow) {
  const auto target = playInFront();
  const auto application = *workspace->frontmostApplication();
  const auto front = playInFront("class=front,Front");
  paste(application);
  EXPECT_THAT(answersToPaste(), testing::Contains(KeyDelivery::failed).Times(1));
  EXPECT_THAT(presses(target), IsEmpty());
  EXPECT_THAT(presses(front), IsEmpty());
}

TEST_F(SyntheticInputTest, SaysThatPrimaryCouldNotBeOffered) {
  primaryAnswer = false;
  const auto program = playInFront("class=xterm,XTerm");
  paste(*workspace->frontmostApplication());
  EXPECT_THAT(answersToPaste(), testing::Contains(KeyDelivery::failed).Times(1));
  EXPECT_THAT(presses(program), IsEmpty());
}

TEST_F(SyntheticInputTest, AnotherWindowOfTheProcessIsNotTheTarget) {
  const auto program = play({{"class=editor,Editor"}, {"class=editor,Editor", "type=DIALOG"}});
  bringToFront(program.windows[1]);
  const auto dialog = *workspace->frontmostApplication();
  bringToFront(program.windows[0]);
  paste(dialog);
  EXPECT_THAT(answersToPaste(), testing::Contains(KeyDelivery::failed).Times(1));
  EXPECT_THAT(presses(program), IsEmpty());
}

TEST_F(SyntheticInputTest, ANewerChordTakesThePlaceOfOneThatWaits) {
  const auto target = playInFront();
  const auto application = *workspace->frontmostApplication();
  const auto front = playInFront("class=front,Front");
  paste(application);
  paste(*workspace->frontmostApplication());
  waitForPress(front, keyV);
  bringToFront(target.windows[0]);
  EXPECT_THAT(lettersUntilReturn(target), ElementsAre(SeenPress(returnKey, 0)));
}

/// Real programs, which read a real clipboard.
class PasteIntoPrograms : public SyntheticInputTest {
 protected:
  void copy(const std::string& text) {
    const auto selection = [&](const char* name) {
      return run({"sh", "-c", "printf %s \"$1\" | xclip -selection $2", "sh", text, name});
    };
    const auto clipboard = selection("clipboard");
    waitUntil("the text is copied", [&] { return clipboard->ended(); });
    text_ = text;
  }
  bool offerPrimary() override {
    const auto primary =
        run({"sh", "-c", "printf %s \"$1\" | xclip -selection primary", "sh", text_});
    while (!primary->ended()) sync();
    return SyntheticInputTest::offerPrimary();
  }
  ProcessId frontPid() {
    ProcessId pid = 0;
    waitUntil("the program is in front", [&] {
      const auto front = workspace->frontmostApplication();
      if (front) pid = front->processIdentifier;
      return front.has_value();
    });
    return pid;
  }

 private:
  std::string text_;
};

class PasteOnLayouts : public PasteIntoPrograms,
                       public testing::WithParamInterface<std::pair<const char*, int>> {};

TEST_P(PasteOnLayouts, AnEntryFieldTakesTheText) {
  const auto [layouts, active] = GetParam();
  setLayout(layouts);
  setActiveLayout(static_cast<std::uint8_t>(active));
  copy("pasted text");
  const auto dialog = run({"zenity", "--entry", "--text", "test"});
  paste(frontPid());
  // Return only ends the dialog; what was pasted before it is what it prints.
  waitUntil("the dialog has ended", [&] {
    fingers().strike({returnKey});
    return dialog->ended();
  });
  EXPECT_EQ(dialog->output(), "pasted text\n");
}

INSTANTIATE_TEST_SUITE_P(Layouts, PasteOnLayouts,
                         testing::Values(std::pair("us", 0), std::pair("fr", 0),
                                         std::pair("us,il", 1), std::pair("il,us", 0),
                                         std::pair("il", 0), std::pair("us(dvorak)", 0)));

TEST_F(PasteIntoPrograms, ATerminalTakesTheText) {
  for (const auto* layout : {"us", "il"}) {
    setLayout(layout);
    copy("typed by nobody");
    const auto file = places().directories.front().parent_path() / "text";
    const auto terminal =
        run({"xterm", "-e", "sh", "-c",
             "stty -icanon; head -c 15 > \"$0.part\"; mv \"$0.part\" \"$0\"", file.string()});
    paste(frontPid());
    waitUntil("the text is written", [&] { return std::filesystem::exists(file); });
    const auto shown = run({"cat", file.string()});
    waitUntil("the text is read", [&] { return shown->ended(); });
    EXPECT_EQ(shown->output(), "typed by nobody");
    EXPECT_EQ(primaryOffers.exchange(0), 1);
    std::filesystem::remove(file);
  }
}

}  // namespace
}  // namespace vantorel
