// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/Bytes.h"
#include "base/FileDescriptor.h"
#include "desktop/wayland/FakeSeat.h"

struct wl_client;
struct wl_display;
struct wl_resource;

namespace vantorel {

/// A compositor with a seat, a clipboard and windows, whose other programs do as the test says, on
/// a socket and a thread of its own. The test's calls return when they have been done.
class FakeCompositor {
 public:
  enum class Protocol { newer, older, none };

  /// polite: writes all and closes; silent: never writes; endless: writes until nobody reads any
  /// more; reluctant: closes without a byte; hesitant: half of it, and then nothing.
  enum class Manner { polite, silent, endless, reluctant, hesitant };
  struct Form {
    Bytes bytes = {};
    Manner manner = Manner::polite;
  };
  using Forms = std::map<std::string, Form>;

  explicit FakeCompositor(Protocol protocol = Protocol::newer);
  ~FakeCompositor();
  FakeCompositor(const FakeCompositor&) = delete;
  FakeCompositor& operator=(const FakeCompositor&) = delete;

  /// Where it listens.
  [[nodiscard]] const std::string& path() const { return path_; }

  /// Another program copies.
  void copy(Forms forms);
  /// The clipboard is emptied, by a program's end or on purpose: nobody is told which.
  void empty();
  /// Every device that was handed out is dead.
  void finishDevices();
  /// How many are alive.
  [[nodiscard]] std::size_t devices();
  /// Another program opens a window, which comes to the front.
  void open(const std::string& appId);
  void bringToFront(const std::string& appId);
  /// Nothing is in front, as while something else has the keyboard.
  void bringNothingToFront() { bringToFront({}); }
  void close(const std::string& appId);
  /// The windows that were asked to come to the front, in order.
  [[nodiscard]] std::vector<std::string> activations();
  /// Nothing is told of windows any more.
  void finishToplevels();

  /// As `FakeSeat::plugIn()`.
  void plugInKeyboard(const std::string& keymap) {
    call([&] { seat_->plugIn(keymap); });
  }

  /// Runs `work` on the thread, and returns when it has.
  void call(const std::function<void()>& work);
  [[nodiscard]] wl_display* display() const { return display_; }
  /// For what runs on the thread.
  [[nodiscard]] FakeSeat& seat() { return *seat_; }
  /// As `bringToFront()` does, for what runs on the thread.
  void tellFront(const std::string& appId);

  /// Hangs up on everybody and goes.
  void die();

  /// The types on the clipboard, whoever offers them.
  [[nodiscard]] std::vector<std::string> types();
  /// The end of a pipe into which the owner writes that type, for a program that pastes.
  [[nodiscard]] FileDescriptor paste(const std::string& type, bool primary = false);
  /// What was asked of the other program's copies, in order.
  [[nodiscard]] std::vector<std::string> requests();
  /// Whether a client owns PRIMARY.
  [[nodiscard]] bool hasPrimary();

 private:
  struct Protocols;
  void run();
  void announce(wl_resource* device);
  void select(wl_resource*& selection, wl_resource* source);
  void give(const std::string& type, FileDescriptor pipe);
  void tellState(wl_resource* window);

  const Protocol protocol_;
  std::string path_;
  wl_display* display_ = nullptr;
  FileDescriptor calls_;
  std::mutex mutex_;  // the next
  std::vector<std::function<void()>> waiting_;
  std::atomic<bool> ending_ = false;

  // On the thread.
  std::unique_ptr<FakeSeat> seat_;
  std::vector<wl_resource*> devices_;
  std::map<wl_resource*, std::vector<std::string>> sources_;
  wl_resource* selection_ = nullptr;  // a client's source
  wl_resource* primary_ = nullptr;
  std::optional<Forms> forms_;  // of the other program
  std::vector<std::string> requests_;
  wl_resource* toplevelManager_ = nullptr;
  std::map<wl_resource*, std::string> windows_;  // and their application ids
  std::string front_;
  std::vector<std::string> activations_;
  std::vector<FileDescriptor> kept_;  // of silent owners
  std::vector<std::thread> writers_;
  std::thread thread_;
};

}  // namespace vantorel
