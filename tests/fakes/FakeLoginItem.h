// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "platform/LoginItem.h"

namespace vantorel {

/// A desktop that starts nothing at login unless told to.
class FakeLoginItem : public LoginItem {
 public:
  [[nodiscard]] Status status() override { return status_; }
  [[nodiscard]] bool registerItem() override { return change(Status::enabled); }
  [[nodiscard]] bool renewItem() override { return std::exchange(old_, false); }
  [[nodiscard]] bool unregisterItem() override { return change(Status::disabled); }

  // The test's side.

  void setStatus(Status status) { status_ = status; }
  /// An older version has made it.
  void setOld() { old_ = true; }
  /// Every change fails from now on.
  void setRefusing(bool refusing) { refusing_ = refusing; }
  /// How often a change was asked for.
  [[nodiscard]] int requests() const { return requests_; }

 private:
  bool change(Status status) {
    ++requests_;
    if (refusing_) return false;
    status_ = status;
    return true;
  }

  Status status_ = Status::disabled;
  bool refusing_ = false;
  bool old_ = false;
  int requests_ = 0;
};

}  // namespace vantorel
