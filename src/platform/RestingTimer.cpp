// SPDX-License-Identifier: MIT
#include "platform/RestingTimer.h"

#include <utility>

namespace vantorel {

RestingTimer::RestingTimer(Dispatch& dispatch, Announcer& announcer, Seconds interval, Work work)
    : dispatch_(dispatch), announcer_(announcer), interval_(interval), work_(std::move(work)) {
  announcer_.setAnnouncingHandler([this] { restOrRepeat(); });
  restOrRepeat();
}

RestingTimer::~RestingTimer() { end(); }

void RestingTimer::end() {
  if (!work_) return;
  announcer_.setAnnouncingHandler({});
  repeating_.reset();
  work_ = nullptr;
}

void RestingTimer::restOrRepeat() {
  if (announcer_.announcesEveryChange()) {
    repeating_.reset();
    const Work look = work_;  // a copy, for it may end this
    look();                   // what there was before the announcements
  } else if (!repeating_) {
    repeating_ = dispatch_.every(interval_, work_);
  }
}

}  // namespace vantorel
