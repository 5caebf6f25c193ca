// SPDX-License-Identifier: MIT
// Takes a picture as the real worker does, and answers as it is called: by the name of a link to
// it.
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "platform/linux/confined/Messages.h"
#include "platform/linux/confined/SharedMemory.h"
#include "platform/linux/decoding/PictureProtocol.h"

namespace {

using namespace vantorel;
using Status = PictureReply::Status;

Deadline soon() { return std::chrono::steady_clock::now() + std::chrono::seconds(30); }

void answer(const PictureReply& reply) { (void)sendPictureReply(STDIN_FILENO, reply, soon()); }

[[noreturn]] void waitForever() {
  for (;;) ::pause();
}

[[noreturn]] void computeForever() {
  for (volatile unsigned number = 0;;) number = number + 1;
}

const std::map<std::string_view, std::function<void()>> behaviours = {
    {"silent", waitForever},
    {"busy", computeForever},
    {"busy-afterwards",
     [] {
       answer({Status::made, 10 * 10 * 4, {10, 10}, {10, 10}});
       computeForever();
     }},
    {"dying", [] { (void)::raise(SIGKILL); }},
    {"gone", [] { ::_exit(0); }},
    {"nonsense", [] { (void)::write(STDIN_FILENO, "nonsense nonsense nonsense", 26); }},
    {"endless", [] { answer({.status = Status::made, .bytes = std::uint64_t{1} << 62U}); }},
    {"empty", [] { answer({.status = Status::made}); }},
    {"too-large",
     [] {
       answer({Status::made, 20 * 20 * 4, {20, 20}, {20, 20}});
     }},
    {"other-size",
     [] {
       answer({Status::made, 8, {10, 10}, {10, 10}});
     }},
    {"turning",
     [] {
       static int pictures = 0;
       if (++pictures == 1) return answer({Status::made, 10 * 10 * 4, {10, 10}, {10, 10}});
       answer({.status = Status::made});
       waitForever();
     }},
    {"zeroes",
     [] {
       answer({Status::made, 10 * 10 * 4, {10, 10}, {10, 10}});
     }},
};

}  // namespace

int main(int /*argc*/, char** argv) {
  const std::string name(argv[0]);
  const auto behaviour = behaviours.find(std::string_view(name).substr(name.rfind('/') + 1));
  if (behaviour == behaviours.end()) return EXIT_FAILURE;
  while (receivePictureTask(STDIN_FILENO, soon())) behaviour->second();
  return EXIT_SUCCESS;
}
