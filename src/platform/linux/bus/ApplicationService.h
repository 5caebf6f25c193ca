// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/ActionAnswer.h"
#include "platform/ActionRequest.h"
#include "platform/Dispatch.h"
#include "platform/linux/start/StartDecision.h"

namespace vantorel {

class ApplicationInterface;
class SessionBus;

/// Offers this program to others on the session bus, as `org.freedesktop.Application` wants it: to
/// be activated, and to do its actions by their names. Main thread.
class ApplicationService {
 public:
  /// `actions` is what others may ask for. Needs the application object; `dispatch` and `bus`
  /// outlive this.
  ApplicationService(Dispatch& dispatch, SessionBus& bus, std::vector<OfferedAction> actions);
  ~ApplicationService();
  ApplicationService(const ApplicationService&) = delete;
  ApplicationService& operator=(const ApplicationService&) = delete;

  /// Becomes the one owner of the program's name, or learns that another is: nobody is queued.
  /// Waits no longer than `forwardTimeLimit` for the bus. A name that was won is claimed again from
  /// a bus that went away and came back.
  [[nodiscard]] NameClaim claim();

  /// Called on the main queue for each request; the caller has its answer before, or gets the one
  /// that is given when the action is one that is awaited. An unknown name, or an action without
  /// the text that it needs, is an error to the caller and no request. Set it before the event loop
  /// runs: a request that finds no handler is dropped.
  void onRequest(std::function<void(const ActionRequest&, const ActionAnswer&)> handler);

 private:
  void claimAgain();

  SessionBus& bus_;
  std::unique_ptr<ApplicationInterface> interface_;
  bool exported_ = false;
  bool owner_ = false;
};

}  // namespace vantorel
