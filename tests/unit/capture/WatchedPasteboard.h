// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "capture/ClipboardWatcher.h"
#include "fakes/FakeImage.h"
#include "fakes/FakePasteboard.h"
#include "fakes/FakeSessionLock.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/TestStore.h"

namespace vantorel {

/// A watcher between a scripted pasteboard and a store on real files; an editor is in front.
class WatchedPasteboard : public testing::Test {
 protected:
  using Form = FakePasteboard::Form;
  using Answering = FakePasteboard::Answering;

  WatchedPasteboard() {
    workspace.setFront(editor.processIdentifier);
    makeWatcher();
  }

  void makeWatcher() {
    watcher = std::make_unique<ClipboardWatcher>(
        *history, privacy, ClipboardServices{pasteboard, workspace, dispatch(), lock});
    watcher->onContentsLost = [this](const ClipItem& item, std::function<void()> done) {
      lost.push_back(item);
      if (puttingBack) {
        ASSERT_TRUE(pasteboard.writeString(item.text ? item.text->get() : "not a text"));
        watcher->noteOwnWrite();
      }
      done();
    };
  }
  [[nodiscard]] ManualDispatch& dispatch() { return history.dispatch(); }

  /// One look at the pasteboard, and all that follows from it at once.
  void pollAndRead() {
    watcher->poll();
    dispatch().runQueued();
  }
  void copy(FakePasteboard::Owner owner) {
    pasteboard.offer(std::move(owner));
    pollAndRead();
  }
  void copyText(const std::string& text) { copy({.string = text}); }
  [[nodiscard]] const ClipItem& newest() { return history->items().front(); }
  [[nodiscard]] std::size_t count() { return history->items().size(); }
  [[nodiscard]] static std::shared_ptr<FakeImage> picture(std::string_view png = "a picture") {
    return std::make_shared<FakeImage>(Size{640, 480}, png);
  }

  TestStore history;
  FakePasteboard pasteboard{dispatch()};
  FakeWorkspace workspace{dispatch()};
  FakeUserDefaults defaults;
  FakeSessionLock lock;
  PrivacyPreferences privacy{defaults, dispatch()};
  RunningApplication editor = workspace.launch(10, "com.acme.editor", "Editor");
  RunningApplication keeper = workspace.launch(20, "org.keepassxc.KeePassXC", "KeePassXC");
  std::unique_ptr<ClipboardWatcher> watcher;
  std::vector<ClipItem> lost;
  bool puttingBack = false;  // what was lost, at once
};

}  // namespace vantorel
