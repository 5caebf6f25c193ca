// SPDX-License-Identifier: MIT
#include <QApplication>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <utility>

#include "app/CommandLine.h"
#include "app/DesktopReport.h"
#include "app/HotKeyShortcut.h"
#include "app/Program.h"
#include "chrome/KeySymbols.h"
#include "platform/linux/bus/ApplicationService.h"
#include "platform/linux/bus/OneInstance.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/desktop/DesktopSurvey.h"
#include "platform/linux/desktop/LinuxDesktop.h"
#include "platform/linux/desktop/Session.h"
#include "platform/linux/desktop/SessionMember.h"
#include "platform/linux/keyring/SecretServiceKeychain.h"
#include "platform/linux/portal/Portal.h"
#include "platform/linux/shortcuts/OwnCommand.h"
#include "platform/linux/start/AutostartLoginItem.h"
#include "platform/linux/start/ClosedProcess.h"
#include "platform/linux/start/LargeBlocks.h"
#include "platform/linux/start/TerminationSignals.h"
#include "platform/linux/wayland/toolkit/LayerWindows.h"
#include "platform/linux/xdg/XdgDirectories.h"
#include "platform/qt/DisplayLoss.h"
#include "platform/qt/QtDispatch.h"
#include "security/HistoryKeychain.h"
#include "tool/Tool.h"

namespace {

/// What `--check` does: no instance is started or asked.
int check() {
  using namespace vantorel;
  HotKeyShortcut shortcut;
  const auto facts = surveyDesktop([&](const UserDefaults& defaults) {
    shortcut = HotKeyShortcut::load(defaults);
    return ShortcutKeys{shortcut.keyCode, shortcut.modifiers};
  });
  const auto report =
      DesktopReport::of(facts, spelledKeys(shortcut.display()),
                        ShortcutAdvice::of(desktopName(processEnvironment), shortcut,
                                           ownCommand(ownProgramPath(), processEnvironment)));
  std::fputs(report.text.c_str(), stdout);
  return report.isEnough ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace vantorel;
  const std::span<const char* const> arguments(argv, static_cast<std::size_t>(argc));
  const auto words = arguments.subspan(arguments.empty() ? 0 : 1);
  const auto tool = ToolLine::parse(words);
  if (tool && !tool->isForHelp) return Tool(processEnvironment).run(*tool);
  const auto line = tool ? CommandLine{.command = Command::help} : CommandLine::parse(words);
  if (const auto status = Program::answer(line)) return *status;
  if (line.command == Command::check) return check();
  leaveNoCore();
  returnFreedLargeBlocks();
  // Before the first thread: one that reads the environment meanwhile could miss what it looks for.
  LayerWindows::prepareEnvironment();
  OneInstance instance(line.request());
  if (const auto status = instance.endsBeforeToolkit()) return *status;

  auto session = Session::find(processEnvironment);
  if (const auto refusal = session.refusal(); !refusal.empty()) {
    std::fprintf(stderr, "vantorel: %s\n", refusal.c_str());
    return 1;
  }

  QtDispatch dispatch;
  const auto quit = [] { QCoreApplication::exit(0); };
  const TerminationSignals terminationSignals(dispatch, quit);
  Program program(line.request(), quit);
  DisplayLoss displayLoss([&program] {
    program.finishSaving();
    std::_Exit(1);  // as the toolkit would, whose status differs by its version
  });
  using Extent = PortalAnswers::Extent;
  const bool isWayland = session.windows == Session::Windows::wayland;
  const bool hasItsShortcut = session.hasShortcutOfPortal(processEnvironment);
  Portal portal(dispatch, isWayland ? Extent::all : Extent::colors,
                hasItsShortcut ? Portal::Start::atOnce : Portal::Start::whenWanted, closeProcess);
  SecretServiceKeychain keychain(dispatch);
  keychain.onSecretAhead([&portal] {
    portal.waitUntilAsked();
    closeProcess();
  });
  const auto prepare = [&keychain, &program] {
    keychain.prepare({HistoryKeychain::baseQuery(HistoryKeychain::Backend::loginKeychain)},
                     [&program] { program.keyringAnswered(); });
  };
  keychain.onAvailable(prepare);
  program.onKeyWanted = [&keychain, prepare] {
    keychain.letAsk();
    prepare();
  };
  prepare();  // the keyring answers while the toolkit gets ready

  Program::describeApplication();
  // What the adapters speak the toolkit does, too, whatever it or the user would choose.
  auto platform = session.toolkitPlatform(processEnvironment);
  std::string name = arguments.empty() ? "vantorel" : arguments.front();
  std::string option = "-platform";
  std::array toolkitArguments{name.data(), option.data(), platform.data(),
                              static_cast<char*>(nullptr)};
  int toolkitArgumentCount = 3;
  QApplication application(toolkitArgumentCount, toolkitArguments.data());
  const SessionMember sessionMember(application, quit);
  SessionBus bus(dispatch, processEnvironment);
  QObject::connect(&bus, &SessionBus::rejoined, &bus, [&portal] { portal.rejoin(); });
  ApplicationService service(dispatch, bus, offeredActions());
  if (const auto status = instance.endsWithToolkit(service)) return *status;

  const auto desktop = LinuxDesktop::open({dispatch, keychain, bus, portal, instance.historyLock()},
                                          std::move(session));
  if (!desktop) {
    std::fputs("vantorel: the desktop lacks what a clipboard history needs.\n", stderr);
    return 1;
  }
  service.onRequest([&program](const ActionRequest& request, const ActionAnswer& answer) {
    program.perform(request, answer);
  });
  program.begin(desktop->ports());
  const int status = QApplication::exec();
  desktop->prepareToEnd();
  program.end();
  displayLoss.endInOrder();
  return status;
}
