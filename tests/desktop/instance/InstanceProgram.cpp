// A program that starts as Vantorel does and tells on its standard output what becomes of it: one
// instance that prints what it is asked to do, or a second start that hands its command on.

#include <QCoreApplication>
#include <cstdio>
#include <vector>

#include "platform/linux/bus/ApplicationService.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/start/StartDecision.h"
#include "platform/qt/QtDispatch.h"

namespace vantorel {
namespace {

void say(const char* text) {
  std::puts(text);
  std::fflush(stdout);
}

int end(const StartDecision& decision) {
  if (!decision.message.empty()) std::fprintf(stderr, "%s\n", decision.message.c_str());
  say(decision.exitStatus == 0 ? "ended" : "failed");
  return decision.exitStatus;
}

int start(int argc, char** argv) {
  const auto line = CommandLine::parse(std::vector<const char*>(argv + 1, argv + argc));
  if (!line.error.empty()) return CommandLine::usageError;
  QtDispatch dispatch;
  std::unique_ptr<SessionBus> bus;
  std::unique_ptr<ApplicationService> service;
  InstanceLock lock;
  const auto lockPath = instanceLockPath(XdgDirectories::fromEnvironment(processEnvironment));
  const StartSteps steps{
      .forward =
          [&](Command c) { return forwardToRunningInstance(c, line.argument, processEnvironment); },
      .claim = [&] { return service->claim(); },
      .lock = [&] { return lockPath ? lock.take(*lockPath) : InstanceLock::Result::unavailable; },
  };
  if (const auto decision = decideBeforeToolkit(line.command, steps);
      decision.course == StartDecision::Course::exit) {
    return end(decision);
  }
  QCoreApplication application(argc, argv);
  bus = std::make_unique<SessionBus>(dispatch, processEnvironment);
  service = std::make_unique<ApplicationService>(dispatch, *bus);
  if (const auto decision = decideWithToolkit(line.command, steps);
      decision.course == StartDecision::Course::exit) {
    return end(decision);
  }
  service->onActivate([] { say("activate"); });
  service->onAction([](Command command, const std::string& argument) {
    say((std::string(*actionName(command)) + (argument.empty() ? "" : "=" + argument)).c_str());
    if (command == Command::quit) QCoreApplication::quit();
  });
  say("running");
  const int status = QCoreApplication::exec();
  service.reset();
  bus.reset();
  return status;
}

}  // namespace
}  // namespace vantorel

int main(int argc, char** argv) { return vantorel::start(argc, argv); }
