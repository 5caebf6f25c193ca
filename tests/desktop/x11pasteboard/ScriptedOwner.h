// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// How a scripted owner treats a question.
enum class Manner {
  give,         // the whole at once
  incremental,  // in pieces, as the protocol has it
  refuse,
  stay_silent,
  answer_without_property,  // says that it has answered, and has put nothing down
};

/// One answer of a scripted owner, and what is wrong with it.
struct ScriptedForm {
  Bytes bytes;
  Manner manner = Manner::give;
  std::string type;         // empty: the target's own name
  std::uint8_t format = 8;  // 8, 16 or 32
  std::size_t pieceBytes = 64 * 1024;
  std::uint32_t claimedBytes = 0;      // what an incremental answer says of its size
  int piecesBeforeStalling = -1;       // -1: never stalls
  int piecesBeforeDying = -1;          // -1: lives on
  std::chrono::milliseconds pause{0};  // before the whole, and between two pieces
};

/// Another program that owns a selection and behaves as the test says, on a connection and a thread
/// of its own.
class ScriptedOwner {
 public:
  explicit ScriptedOwner(const std::string& display, std::string selection = "CLIPBOARD");
  ~ScriptedOwner();
  ScriptedOwner(const ScriptedOwner&) = delete;
  ScriptedOwner& operator=(const ScriptedOwner&) = delete;

  /// From now on, and in the place of an earlier form. Every target given here is listed in
  /// TARGETS, unless TARGETS itself is given.
  void offer(const std::string& target, ScriptedForm form);
  void offer(const std::string& target, std::string_view text);
  /// Takes the selection; returns when the server says so.
  void own();
  /// The same where another program may be quicker: false then.
  bool tryToOwn();
  /// Takes it once more: the same contents copied again.
  void ownAgain() { own(); }
  /// Asks the clipboard manager to save what is offered here.
  void askToSave();
  /// Waits for the manager's word: whether it saved, absent after a generous limit.
  [[nodiscard]] std::optional<bool> saved();
  /// Leaves the selection without an owner, on purpose.
  void disown();
  /// Destroys the owning window and lives on.
  void destroyWindow();
  /// Ends at once without a word.
  void die();

  /// The targets asked for so far, in order.
  [[nodiscard]] std::vector<std::string> requests();
  /// Times that the requests carried.
  [[nodiscard]] std::vector<xcb_timestamp_t> requestTimes();
  [[nodiscard]] xcb_timestamp_t ownedSince();
  /// Waits until that target was asked for; false after a generous limit.
  [[nodiscard]] bool waitForRequest(const std::string& target);
  [[nodiscard]] bool waitForLoss();

 private:
  struct Sending {
    ScriptedForm form;
    xcb_atom_t type = XCB_ATOM_NONE;
    std::size_t sent = 0;
    int pieces = 0;
  };
  using Address = std::pair<xcb_window_t, xcb_atom_t>;

  void createWindow();
  void handle(const xcb_generic_event_t& event);
  void answer(const xcb_selection_request_event_t& request);
  void giveTargets(const xcb_selection_request_event_t& request);
  void begin(const xcb_selection_request_event_t& request, const ScriptedForm& form);
  void give(const xcb_selection_request_event_t& request, const ScriptedForm& form,
            xcb_atom_t type);
  void sendPiece(Address address);
  void notify(const xcb_selection_request_event_t& request, xcb_atom_t property);
  xcb_timestamp_t serverTime();

  std::string selectionName_;
  std::unique_ptr<X11Thread> thread_;
  X11Connection& connection_;
  xcb_atom_t selection_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  xcb_timestamp_t lastTime_ = 0;
  std::map<std::string, ScriptedForm> forms_;
  std::vector<std::string> order_;
  std::map<Address, Sending> sending_;

  std::mutex mutex_;  // what follows
  std::condition_variable condition_;
  std::vector<std::string> requests_;
  std::vector<xcb_timestamp_t> requestTimes_;
  xcb_timestamp_t ownedSince_ = 0;
  bool lost_ = false;
  std::optional<bool> saved_;
};

}  // namespace vantorel
