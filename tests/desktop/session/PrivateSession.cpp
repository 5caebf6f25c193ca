// SPDX-License-Identifier: MIT
#include "desktop/session/PrivateSession.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace vantorel {
namespace {

std::string busConfiguration(const std::filesystem::path& home) {
  return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=)" +
         home.string() + R"(</listen>
  <auth>EXTERNAL</auth>
  <servicedir>)" +
         (home / "services").string() + R"(</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
}

}  // namespace

bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

PrivateSession::PrivateSession(Services services) {
  std::string name = (std::filesystem::temp_directory_path() / "vantorel-session-XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("no temporary directory");
  home_ = name;
  std::filesystem::create_directories(home_ / "services");
  if (services == Services::prompter) {
    std::ofstream(home_ / "services/org.gnome.keyring.SystemPrompter.service")
        << "[D-BUS Service]\nName=org.gnome.keyring.SystemPrompter\n"
           "Exec=/usr/libexec/gcr-prompter\n";
  }
  std::ofstream(home_ / "bus.conf") << busConfiguration(home_);
  // Before the bus starts: what it starts inherits its environment.
  setenv("HOME", home_.c_str(), 1);
  setenv("XDG_RUNTIME_DIR", home_.c_str(), 1);
  for (const char* variable : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) {
    unsetenv(variable);
  }
  bus_ = ChildProcess({"dbus-daemon", "--config-file=" + (home_ / "bus.conf").string(), "--nofork",
                       "--nopidfile", "--print-address=1"});
  const std::string address = bus_.readLine();
  if (address.empty()) throw std::runtime_error("the session bus did not start");
  setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
}

PrivateSession::~PrivateSession() {
  bus_.signal(SIGCONT);
  bus_.kill();
  std::error_code ignored;
  std::filesystem::remove_all(home_, ignored);
}

bool PrivateSession::hasOwner(const std::string& name) {
  return call("org.freedesktop.DBus", "/org/freedesktop/DBus",
              {"org.freedesktop.DBus.NameHasOwner", name})
             .find("true") != std::string::npos;
}

std::string PrivateSession::call(const std::string& destination, const std::string& path,
                                 const std::vector<std::string>& methodAndArguments) {
  std::vector<std::string> arguments{"gdbus",     "call", "--session", "-d",
                                     destination, "-o",   path,        "-m"};
  arguments.insert(arguments.end(), methodAndArguments.begin(), methodAndArguments.end());
  return runProgram(arguments);
}

}  // namespace vantorel
