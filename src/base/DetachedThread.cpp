// SPDX-License-Identifier: MIT
#include "base/DetachedThread.h"

#include <pthread.h>

#include <functional>
#include <system_error>
#include <thread>
#include <utility>

namespace vantorel {

bool runDetached(const char* name, std::function<void()> work) {
  try {
    std::thread thread(std::move(work));
    pthread_setname_np(thread.native_handle(), name);
    thread.detach();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

}  // namespace vantorel
