// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "base/Lifetime.h"
#include "platform/linux/glib/GlibPointers.h"
#include "platform/linux/glib/GlibThread.h"

namespace vantorel {

/// The program's connection to the desktop's portal. A portal looks into a process when one of its
/// connections asks for the first time, and refuses one that is closed to others; what it found
/// holds for as long as both are there. So this connection asks first thing in the program and is
/// kept. A portal that comes later refuses it. On the portal's thread.
class PortalBus {
 public:
  /// What was asked; the reply is null when there was none.
  using Answered = std::function<void(GVariant* reply)>;
  using Heard = std::function<void(const std::string& object, GVariant* arguments)>;

  explicit PortalBus(GlibThread& thread) : thread_(thread) {}
  ~PortalBus();
  PortalBus(const PortalBus&) = delete;
  PortalBus& operator=(const PortalBus&) = delete;

  // Both for good.

  /// `came`: a portal is there and was told who asks, also each time that one comes anew. `left`:
  /// it has gone, with all that it had for this program, or the bus has; also one that never came.
  void onNews(std::function<void()> came, std::function<void()> left);
  /// What the portal sends to this program or to all, of the type that `heard` expects or not.
  void onSignal(const char* interface, const char* signal, Heard heard);

  /// Joins the bus, in place of one that it joined before. False without one; nothing comes then.
  bool join(Deadline deadline);
  [[nodiscard]] bool isThere() const { return isThere_; }
  /// Whether the portal that is there said that it does not serve this process.
  [[nodiscard]] bool isRefused() const { return isRefused_; }
  /// Whether nothing is asked at the moment, be it only whether a portal is there.
  [[nodiscard]] bool isQuiet() const { return open_ == 0; }
  /// What the bus calls this connection; empty without one.
  [[nodiscard]] std::string ownName() const;

  /// Starts no portal. Takes `arguments` when they are floating. What is not answered when another
  /// bus is joined never is.
  void ask(const char* interface, const char* method, GVariant* arguments, Answered answered);
  /// Whether GNOME's own part of the portal has that interface: a portal shows what any desktop's
  /// has that is installed. The reply is null when it has not.
  void askGnome(const char* interface, Answered answered);
  /// Asks a portal that does not run to come; answered once it runs, or when there is none. The
  /// reply is null in the second case.
  void start(Answered answered);
  /// What nobody answers to, at an object of the portal's.
  void send(const std::string& object, const char* interface, const char* method);

 private:
  struct News {
    std::function<void()> came;
    std::function<void()> left;
  };
  struct Signal {
    const char* interface = nullptr;
    const char* name = nullptr;
    Heard heard;
  };

  void watch();
  void listen(const Signal& signal);
  void appeared();
  void vanished();
  void forget();
  void leave();
  void call(const char* program, const char* object, const char* interface, const char* method,
            GVariant* arguments, Answered answered);

  GlibThread& thread_;
  std::deque<News> news_;       // they may become more while they are called
  std::deque<Signal> signals_;  // they stay where they are
  ObjectPointer<GDBusConnection> connection_;
  ObjectPointer<GCancellable> questions_;
  std::vector<guint> subscriptions_;
  guint watch_ = 0;
  bool isLooking_ = false;  // it is not known yet whether a portal is there
  bool isOwned_ = false;    // one is, and may not know yet who asks
  bool isThere_ = false;
  bool isRefused_ = false;
  int open_ = 0;
  Lifetime life_;
};

}  // namespace vantorel
