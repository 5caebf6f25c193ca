#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Dispatch.h"
#include "platform/linux/start/CommandLine.h"
#include "platform/linux/start/StartDecision.h"

namespace vantorel {

class ApplicationInterface;
class SessionBus;

/// Offers this program to others on the session bus, as `org.freedesktop.Application` wants it: to
/// be activated, and to do the menu's commands by their action names. Main thread.
///
/// The order in a program's start:
///  1. `CommandLine::parse`; `--help` and `--version` end here.
///  2. `decideBeforeToolkit` with `forwardToRunningInstance`: a second start ends here, quickly.
///  3. `QtDispatch`, `SecretServiceKeychain` and its `prepare`, so that the keyring is looked up
///     while the toolkit gets ready; `TerminationSignals`.
///  4. The application object, then this, then `decideWithToolkit` with `claim`.
///  5. `onActivate` and `onAction`: requests that came meanwhile wait in the event loop until then.
class ApplicationService {
 public:
  /// Both outlive this. Needs the application object.
  ApplicationService(Dispatch& dispatch, SessionBus& bus);
  ~ApplicationService();
  ApplicationService(const ApplicationService&) = delete;
  ApplicationService& operator=(const ApplicationService&) = delete;

  /// Becomes the one owner of the program's name, or learns that another is. Nothing is queued:
  /// who comes second is told so. Waits no longer than `forwardTimeLimit` for the bus. A name that
  /// was won is claimed again from a bus that went away and came back.
  [[nodiscard]] NameClaim claim();

  /// Called on the main queue for each activation ("reopen the application").
  void onActivate(std::function<void()> handler);
  /// Called on the main queue for each command by its action name, with the text that goes with it.
  /// The caller has its answer before the command begins. An unknown name, or a command without
  /// the text that it needs, is an error to the caller.
  void onAction(std::function<void(Command, const std::string& argument)> handler);

 private:
  void claimAgain();

  SessionBus& bus_;
  std::unique_ptr<ApplicationInterface> interface_;
  bool exported_ = false;
  bool owner_ = false;
};

}  // namespace vantorel
