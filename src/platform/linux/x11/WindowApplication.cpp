// SPDX-License-Identifier: MIT
#include "platform/linux/x11/WindowApplication.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <string_view>
#include <system_error>

#include "platform/ApplicationId.h"
#include "text/Unicode.h"

namespace vantorel {

namespace {

std::string_view firstLabel(std::string_view host) { return host.substr(0, host.find('.')); }

bool isLocal(const WindowFacts& facts, const LocalHost& host) {
  if (facts.clientMachine.empty()) return true;
  const auto machine = lowerCased(facts.clientMachine);
  const auto own = lowerCased(host.name);
  if (machine == own || machine == "localhost") return true;
  // One of the two may carry its domain.
  const bool oneIsShort =
      machine.find('.') == std::string::npos || own.find('.') == std::string::npos;
  return oneIsShort && firstLabel(machine) == firstLabel(own);
}

ProcessId numberOfClient(xcb_window_t window, std::uint32_t resourceMask) {
  const auto client = (window & ~resourceMask) >> std::popcount(resourceMask);
  return -1 - static_cast<ProcessId>(client);
}

constexpr std::string_view ownInstanceName = "vantorel";
constexpr std::uint32_t initProcess = 1;  // shows no windows

bool isProcess(std::uint32_t pid) {
  return pid > 0 && pid <= static_cast<std::uint32_t>(std::numeric_limits<ProcessId>::max());
}

}  // namespace

LocalHost LocalHost::current(std::uint32_t resourceMask, std::optional<ProcessId> serverPid) {
  std::array<char, 256> name{};
  if (::gethostname(name.data(), name.size() - 1) != 0) name.front() = '\0';
  return {name.data(), serverPid.value_or(::getpid()), resourceMask};
}

ProcessId processOf(const WindowFacts& facts, const LocalHost& host) {
  if (isLocal(facts, host)) {
    if (facts.clientPid) return *facts.clientPid;
    // A program may state anything: what it was called in another container, or nonsense.
    if (facts.statedPid && isProcess(*facts.statedPid) && *facts.statedPid != initProcess) {
      const auto pid = static_cast<ProcessId>(*facts.statedPid);
      const bool pretendsToBeUs = pid == host.ownPid && facts.wmInstance != ownInstanceName;
      if (!pretendsToBeUs && startOf(pid)) return pid;
    }
  }
  return numberOfClient(facts.window, host.resourceMask);
}

std::optional<double> startOf(ProcessId pid) {
  if (pid <= 0) return std::nullopt;
  std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
  const std::string line{std::istreambuf_iterator<char>(file), {}};
  // The second field, a name in parentheses, may hold anything; the start is the twentieth after
  // it.
  const auto name = line.rfind(')');
  if (name == std::string::npos) return std::nullopt;
  std::istringstream fields(line.substr(name + 1));
  std::string skipped;
  for (int field = 0; field < 19; ++field) fields >> skipped;
  double ticks = 0;
  if (!(fields >> ticks)) return std::nullopt;
  return ticks / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

std::string executableOf(ProcessId pid) {
  if (pid <= 0) return {};
  std::error_code error;
  const auto path =
      std::filesystem::read_symlink("/proc/" + std::to_string(pid) + "/exe", error).string();
  if (error) return {};
  // A program that was replaced while it runs.
  constexpr std::string_view deleted = " (deleted)";
  std::string_view name(path);
  if (name.size() > deleted.size() && name.substr(name.size() - deleted.size()) == deleted) {
    name.remove_suffix(deleted.size());
  }
  return std::string(name.substr(name.rfind('/') + 1));
}

WindowIdentity identityOf(const WindowFacts& facts, const LocalHost& host) {
  WindowIdentity identity{facts.desktopFile, facts.wmClass, facts.wmInstance, {}};
  identity.executable = executableOf(processOf(facts, host));  // none of a client from elsewhere
  return identity;
}

RunningApplication applicationOf(const WindowFacts& facts, WindowHistory history,
                                 const DesktopEntry* entry, const LocalHost& host) {
  RunningApplication application;
  application.processIdentifier = processOf(facts, host);
  application.activationPolicy = ActivationPolicy::accessory;
  if (application.processIdentifier == host.ownPid) {
    application.bundleIdentifier = applicationId::name;
    application.localizedName = ownApplicationName;
    return application;
  }
  const bool tookTheKeyboard =
      history == WindowHistory::wasInFront && facts.management == WindowManagement::managed;
  if (facts.kind == WindowKind::normal || tookTheKeyboard) {
    application.activationPolicy = ActivationPolicy::regular;
  }
  const auto& wmClass = facts.wmClass.empty() ? facts.wmInstance : facts.wmClass;
  if (entry) {
    application.bundleIdentifier = entry->id;
    application.localizedName = entry->name.empty() ? wmClass : entry->name;
  } else if (!wmClass.empty()) {
    application.bundleIdentifier = wmClass;
    application.localizedName = wmClass;
  }
  return application;
}

}  // namespace vantorel
