// SPDX-License-Identifier: MIT
#include "platform/linux/confined/worker/WorkerLimits.h"

#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <ctime>
#include <fstream>

namespace vantorel {
namespace {

void limit(decltype(RLIMIT_CORE) resource, rlim_t value) {
  const rlimit both{value, value};
  (void)::setrlimit(resource, &both);
}

rlim_t mappedMemory() {
  rlim_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

void giveWay(Share share) {
  if (share == Share::usual) return;
  constexpr int leastUrgent = 19;
  const sched_param none{};
  (void)::setpriority(PRIO_PROCESS, 0, leastUrgent);
  (void)::sched_setscheduler(0, share == Share::leftOver ? SCHED_IDLE : SCHED_BATCH, &none);
}

}  // namespace

bool limitThisProcess(pid_t parent, const WorkerLimits& limits) {
  (void)::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != parent) return false;
  giveWay(limits.share);
  std::ofstream("/proc/self/oom_score_adj") << 1000;
  limit(RLIMIT_AS, mappedMemory() + limits.memory);
  limit(RLIMIT_CORE, 0);
  limit(RLIMIT_FSIZE, 0);
  (void)::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  (void)::prctl(PR_SET_DUMPABLE, 0);
  return true;
}

void allowProcessorSeconds(double seconds) {
  rlimit both{};
  if (::getrlimit(RLIMIT_CPU, &both) != 0) return;
  both.rlim_cur =
      std::min(static_cast<rlim_t>(std::ceil(processorSeconds() + seconds)), both.rlim_max);
  (void)::setrlimit(RLIMIT_CPU, &both);
}

double processorSeconds() {
  timespec time{};
  (void)::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  constexpr double nanosecond = 1e-9;
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * nanosecond;
}

}  // namespace vantorel
