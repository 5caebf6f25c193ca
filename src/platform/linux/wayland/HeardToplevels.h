// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/wayland/ToplevelList.h"

namespace vantorel {

/// What every source of windows does with what it hears, by whichever protocol: the thread on which
/// it is heard, the list that answers, and who is told.
class HeardToplevels : public ToplevelSource {
 public:
  [[nodiscard]] std::optional<Toplevel> active() const override { return list_.active(); }
  [[nodiscard]] std::optional<Toplevel> find(WindowToken token) const override {
    return list_.find(token);
  }
  [[nodiscard]] std::vector<Toplevel> all() const override { return list_.all(); }
  bool activate(WindowToken token) override;
  [[nodiscard]] WaylandThread& thread() override { return thread_; }

 protected:
  HeardToplevels(std::unique_ptr<WaylandConnection> connection, Observer observer);

  /// A source of that kind, which hears; null where its protocol is not spoken, or nobody answers.
  template <class Source>
  [[nodiscard]] static std::unique_ptr<Source> openAs(std::unique_ptr<WaylandConnection> connection,
                                                      Observer observer) {
    if (!connection || !Source::protocol(*connection)) return nullptr;
    std::unique_ptr<Source> made(new Source(std::move(connection), std::move(observer)));
    if (!made->bind()) return nullptr;
    made->start();
    return made;
  }
  /// Ends the thread; before what is heard on it may die.
  void stop() { thread_.stop(); }
  [[nodiscard]] WaylandConnection& connection() const { return thread_.connection(); }

  // On the thread, or before it has started.

  /// As those of `ToplevelList`; whoever comes to the front is told.
  [[nodiscard]] WindowToken add() { return list_.add(); }
  void settle(const Toplevel& described);
  void remove(WindowToken token) { list_.remove(token); }
  /// Nothing more will be heard.
  void tellLoss();
  /// Asks the compositor for it, if the window is still there.
  virtual void bringToFront(WindowToken token) = 0;

 private:
  void start();

  WaylandThread thread_;
  Observer observer_;
  ToplevelList list_;
};

}  // namespace vantorel
