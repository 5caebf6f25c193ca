// SPDX-License-Identifier: MIT
#include "desktop/keyring/PrivateKeyring.h"

#include <fstream>
#include <stdexcept>

namespace vantorel {
namespace {

const std::string serviceName = "org.freedesktop.secrets";
const std::string servicePath = "/org/freedesktop/secrets";
const std::string loginPath = "/org/freedesktop/secrets/collection/login";

/// The letter by which the kernel names the state of a process.
char processState(pid_t pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
  std::string text;
  std::getline(file, text);
  const auto end = text.rfind(") ");
  return end == std::string::npos ? '?' : text[end + 2];
}

void require(bool held, const std::string& what) {
  if (!held) throw std::runtime_error("waited in vain for " + what);
}

}  // namespace

PrivateKeyring::PrivateKeyring(State state) {
  std::vector<std::string> arguments{"gnome-keyring-daemon", "--foreground",
                                     "--components=secrets"};
  if (state == State::unlocked) {
    arguments.emplace_back("--unlock");
    daemon_ = ChildProcess(arguments, ChildProcess::Input::pipe);
    daemon_.writeInput(password);
  } else {
    daemon_ = ChildProcess(arguments);
  }
  require(waitFor([] { return PrivateSession::hasOwner(serviceName); }), "the keyring's name");
  if (state == State::unlocked) require(waitFor([] { return !isLocked(); }), "its unlocking");
  if (state == State::locked) require(isLocked(), "a locked collection");
}

PrivateKeyring::~PrivateKeyring() { end(); }

void PrivateKeyring::lock() {
  PrivateSession::call(serviceName, servicePath,
                       {"org.freedesktop.Secret.Service.Lock", "[objectpath '" + loginPath + "']"});
  require(waitFor([] { return isLocked(); }), "the lock");
}

void PrivateKeyring::suspend() {
  daemon_.signal(SIGSTOP);
  require(waitFor([this] { return processState(daemon_.pid()) == 'T'; }), "the stop");
}

void PrivateKeyring::resume() { daemon_.signal(SIGCONT); }

void PrivateKeyring::end() {
  if (!daemon_.running()) return;
  resume();
  daemon_.kill();
  require(waitFor([] { return !PrivateSession::hasOwner(serviceName); }), "the daemon's end");
}

bool PrivateKeyring::isLocked() {
  return PrivateSession::call(
             serviceName, loginPath,
             {"org.freedesktop.DBus.Properties.Get", "org.freedesktop.Secret.Collection", "Locked"})
             .find("true") != std::string::npos;
}

int PrivateKeyring::itemCount(const std::string& service, const std::string& account) {
  const std::string found =
      PrivateSession::call(serviceName, servicePath,
                           {"org.freedesktop.Secret.Service.SearchItems",
                            "{'service': '" + service + "', 'account': '" + account + "'}"});
  int count = 0;
  for (auto at = found.find("/collection/"); at != std::string::npos;
       at = found.find("/collection/", at + 1)) {
    ++count;
  }
  return count;
}

std::string PrivateKeyring::lookUp(const std::string& service, const std::string& account) {
  return runProgram({"secret-tool", "lookup", "service", service, "account", account});
}

void PrivateKeyring::store(const std::string& service, const std::string& account,
                           const std::string& secret) {
  int status = 0;
  runProgram({"secret-tool", "store", "--label=stored", "service", service, "account", account},
             &status, secret);
  require(status == 0, "the command-line client");
}

}  // namespace vantorel
