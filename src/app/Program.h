// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/AppDelegate.h"
#include "platform/ActionAnswer.h"
#include "platform/ActionRequest.h"
#include "platform/Desktop.h"

namespace vantorel {

struct CommandLine;

/// The one running instance: its delegate, as soon as there is a desktop and the keyring has
/// answered. Main thread.
class Program {
 public:
  /// Prints what a start says that does nothing else: the help, the version, that it was not
  /// understood. The exit status of such a start; absent for any other.
  [[nodiscard]] static std::optional<int> answer(const CommandLine& line);
  /// Tells the toolkit what it is to know before it is made ready.
  static void describeApplication();

  /// `first` is what this start was asked to do. A plain start shows the panel where no bar shows
  /// that the program runs. `quit` ends the event loop.
  Program(ActionRequest first, std::function<void()> quit);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// The keyring is to be asked anew; `keyringAnswered` is to be called then, in a later turn. Set
  /// before `begin`.
  std::function<void()> onKeyWanted;

  /// The keyring's answer is known; called again when it has come or was unlocked later: the
  /// history can be read then, so the application starts over.
  void keyringAnswered();
  /// There is a desktop; its ports live until `end` returns.
  void begin(const Desktop& desktop);
  /// What this start, another one, a launcher or the desktop asks for; waits for the delegate.
  void perform(const ActionRequest& request, const ActionAnswer& answer = answerNobody);
  void end();
  /// In the place of `end`, when the process is ended on the spot: what is owed to the disk goes
  /// there. Touches no window.
  void finishSaving();

 private:
  void launch();

  const std::function<void()> quit_;
  std::optional<ActionRequest> pending_;
  ActionAnswer pendingAnswer_ = answerNobody;
  AppDelegate::StartedBy startedBy_;
  std::optional<std::string> notice_;  // what the next delegate has to say
  bool keyringAnswered_ = false;
  std::optional<Desktop> desktop_;
  std::unique_ptr<AppDelegate> delegate_;
};

}  // namespace vantorel
