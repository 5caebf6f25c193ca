#include <QApplication>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "app/AppDelegate.h"
#include "app/AppIconFactory.h"
#include "platform/ApplicationId.h"
#include "platform/linux/bus/ApplicationService.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/desktop/LinuxDesktop.h"
#include "platform/linux/desktop/SessionMember.h"
#include "platform/linux/keyring/SecretServiceKeychain.h"
#include "platform/linux/start/CommandLine.h"
#include "platform/linux/start/InstanceLock.h"
#include "platform/linux/start/LargeBlocks.h"
#include "platform/linux/start/RunningInstance.h"
#include "platform/linux/start/StartDecision.h"
#include "platform/linux/start/TerminationSignals.h"
#include "platform/linux/xdg/XdgDirectories.h"
#include "platform/qt/QtDispatch.h"
#include "security/HistoryKeychain.h"

namespace vantorel {
namespace {

/// What to do, and to what.
struct Request {
  Command command = Command::open;
  std::string argument = {};
};

/// The row of the status menu that does the same; none for what the menu does not have.
StatusAction statusActionFor(Command command) {
  switch (command) {
    case Command::toggle:
      return StatusAction::openHistory;
    case Command::search:
      return StatusAction::openSearch;
    case Command::pauseFifteenMinutes:
      return StatusAction::pauseFifteenMinutes;
    case Command::pauseOneHour:
      return StatusAction::pauseOneHour;
    case Command::pauseUntilTomorrow:
      return StatusAction::pauseUntilTomorrow;
    case Command::resume:
      return StatusAction::resumeHistory;
    case Command::togglePasswordManagers:
      return StatusAction::togglePasswordManagerPrivacy;
    case Command::excludeApp:
      return StatusAction::excludeCurrentApp;
    case Command::includeApp:
      return StatusAction::removeExcludedApp;
    case Command::toggleLaunchAtLogin:
      return StatusAction::toggleLaunchAtLogin;
    case Command::shortcut:
      return StatusAction::showShortcutPanel;
    case Command::clear:
      return StatusAction::confirmClearHistory;
    case Command::about:
      return StatusAction::showAbout;
    case Command::quit:
      return StatusAction::quit;
    case Command::open:
    case Command::menu:
    case Command::version:
    case Command::help:
      return StatusAction::none;
  }
  return StatusAction::none;
}

/// The one running instance: its ports, and its delegate from the moment that the keyring answered.
class Program {
 public:
  /// `first` is what this start was asked to do. A plain start shows nothing by itself.
  Program(LinuxDesktop& desktop, Request first) : desktop_(desktop) {
    if (first.command != Command::open) pending_ = std::move(first);
  }

  /// Called when the keyring's answer is known, and again when the user unlocks it later: the
  /// history can be read then, so the application starts over.
  void launch() {
    const bool welcoming = delegate_ && delegate_->isWelcoming();
    terminate();
    delegate_ = std::make_unique<AppDelegate>(desktop_.ports());
    delegate_->onQuit = [] { QCoreApplication::exit(0); };
    delegate_->applicationDidFinishLaunching();
    if (welcoming) delegate_->showHelpPanel(true);
    if (const auto request = std::exchange(pending_, std::nullopt)) perform(*request);
  }

  /// What another start, a launcher or the desktop asks for; waits for the delegate.
  void perform(const Request& request) {
    if (request.command == Command::quit) return QCoreApplication::exit(0);
    if (!delegate_) {
      if (request.command != Command::open || !pending_) pending_ = request;
      return;
    }
    if (request.command == Command::open) return delegate_->applicationShouldHandleReopen();
    if (request.command == Command::menu) return delegate_->showStatusMenu();
    delegate_->perform(statusActionFor(request.command), request.argument);
  }

  void terminate() {
    if (delegate_) delegate_->applicationWillTerminate();
    delegate_.reset();
  }

 private:
  LinuxDesktop& desktop_;
  std::optional<Request> pending_;
  std::unique_ptr<AppDelegate> delegate_;
};

int finish(const StartDecision& decision) {
  if (!decision.message.empty()) std::fprintf(stderr, "%s\n", decision.message.c_str());
  return decision.exitStatus;
}

void describeApplication() {
  QApplication::setApplicationName("vantorel");
  QApplication::setApplicationVersion(VANTOREL_VERSION);
  QApplication::setDesktopFileName(applicationId::name);
  QApplication::setQuitOnLastWindowClosed(false);
  // The adapters speak X11, so the toolkit does too, also where it would choose otherwise.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "xcb");
}

int run(int argc, char** argv, const Request& request) {
  InstanceLock lock;
  StartSteps steps;
  steps.forward = [&request](Command asked) {
    return forwardToRunningInstance(asked, request.argument, processEnvironment);
  };
  const auto early = decideBeforeToolkit(request.command, steps);
  if (early.course == StartDecision::Course::exit) return finish(early);

  QtDispatch dispatch;
  const TerminationSignals terminationSignals(dispatch, [] { QCoreApplication::exit(0); });
  SecretServiceKeychain keychain(dispatch);
  std::function<void()> launch;  // empty while there is nothing to launch
  bool answered = false;         // by the keyring, before there was
  const auto prepare = [&] {
    keychain.prepare({HistoryKeychain::baseQuery(HistoryKeychain::Backend::loginKeychain)}, [&] {
      answered = true;
      if (launch) launch();
    });
  };
  keychain.onUnlocked(prepare);
  prepare();  // the keyring answers while the toolkit gets ready

  describeApplication();
  QApplication application(argc, argv);
  const SessionMember sessionMember(application, [] { QCoreApplication::exit(0); });
  QApplication::setWindowIcon(AppIconFactory::bundledPNG("vt"));
  SessionBus bus(dispatch, processEnvironment);
  ApplicationService service(dispatch, bus);
  steps.claim = [&service] { return service.claim(); };
  steps.lock = [&lock] {
    const auto path = instanceLockPath(XdgDirectories::fromEnvironment(processEnvironment));
    return path ? lock.take(*path) : InstanceLock::Result::unavailable;
  };
  const auto decision = decideWithToolkit(request.command, steps);
  if (decision.course == StartDecision::Course::exit) return finish(decision);

  const auto desktop = LinuxDesktop::open(dispatch, keychain, bus);
  if (!desktop) {
    std::fputs("vantorel: the X server lacks what a clipboard history needs.\n", stderr);
    return 1;
  }
  Program program(*desktop, request);
  service.onActivate([&program] { program.perform({}); });
  service.onAction([&program](Command asked, const std::string& argument) {
    program.perform({asked, argument});
  });
  launch = [&program] { program.launch(); };
  if (answered) launch();
  const int status = QApplication::exec();
  launch = nullptr;
  service.onActivate({});
  service.onAction({});
  program.terminate();
  return status;
}

}  // namespace
}  // namespace vantorel

int main(int argc, char** argv) {
  using vantorel::Command;
  using vantorel::CommandLine;
  const std::span<const char* const> arguments(argv, static_cast<std::size_t>(argc));
  const auto commandLine = CommandLine::parse(arguments.empty() ? arguments : arguments.subspan(1));
  if (!commandLine.error.empty()) {
    std::fprintf(stderr, "%s\n", commandLine.error.c_str());
    return CommandLine::usageError;
  }
  if (commandLine.command == Command::version) {
    std::puts("Vantorel " VANTOREL_VERSION);
    return 0;
  }
  if (commandLine.command == Command::help) {
    std::fputs(CommandLine::helpText().data(), stdout);
    return 0;
  }
  vantorel::returnFreedLargeBlocks();
  return vantorel::run(argc, argv, {commandLine.command, commandLine.argument});
}
