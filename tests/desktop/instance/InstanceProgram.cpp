// SPDX-License-Identifier: MIT
// A program that starts as Vantorel does and tells on its standard output what becomes of it: one
// instance that prints what it is asked to do, or a second start that hands its command on.

#include <QCoreApplication>
#include <cstdio>
#include <vector>

#include "app/CommandLine.h"
#include "platform/linux/bus/ApplicationService.h"
#include "platform/linux/bus/OneInstance.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/xdg/XdgDirectories.h"
#include "platform/qt/QtDispatch.h"

namespace vantorel {
namespace {

void say(const char* text) {
  std::puts(text);
  std::fflush(stdout);
}

int end(int status) {
  say(status == 0 ? "ended" : "failed");
  return status;
}

int start(int argc, char** argv) {
  const auto line = CommandLine::parse(std::vector<const char*>(argv + 1, argv + argc));
  if (!line.error.empty()) return CommandLine::usageError;
  OneInstance instance(line.request());
  if (const auto status = instance.endsBeforeToolkit()) return end(*status);
  QtDispatch dispatch;
  QCoreApplication application(argc, argv);
  SessionBus bus(dispatch, processEnvironment);
  ApplicationService service(dispatch, bus, offeredActions());
  if (const auto status = instance.endsWithToolkit(service)) return end(*status);
  service.onRequest([](const ActionRequest& request, const ActionAnswer& answer) {
    answer({});
    if (request.action.empty()) return say("activate");
    say((request.action + (request.argument.empty() ? "" : "=" + request.argument)).c_str());
    if (request.action == "quit") QCoreApplication::quit();
  });
  say("running");
  return QCoreApplication::exec();
}

}  // namespace
}  // namespace vantorel

int main(int argc, char** argv) { return vantorel::start(argc, argv); }
