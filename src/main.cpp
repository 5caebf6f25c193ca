#include <QApplication>
#include <QSessionManager>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "app/AppDelegate.h"
#include "app/AppIconFactory.h"
#include "platform/linux/ApplicationId.h"
#include "platform/linux/CommandLine.h"
#include "platform/linux/InstanceLock.h"
#include "platform/linux/RunningInstance.h"
#include "platform/linux/SecretServiceKeychain.h"
#include "platform/linux/StartDecision.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/XdgDirectories.h"
#include "platform/linux/dbus/ApplicationService.h"
#include "platform/linux/desktop/LinuxDesktop.h"
#include "platform/qt/QtDispatch.h"
#include "security/HistoryKeychain.h"

namespace vantorel {
namespace {

/// The one running instance: its ports, and its delegate from the moment that the keyring answered.
class Program {
 public:
  /// `first` is what this start was asked to do. A plain start shows nothing by itself.
  Program(LinuxDesktop& desktop, Command first) : desktop_(desktop) {
    if (first != Command::open) pending_ = first;
  }

  /// Called when the keyring's answer is known, and again when the user unlocks it later: the
  /// history can be read then, so the application starts over.
  void launch() {
    terminate();
    delegate_ = std::make_unique<AppDelegate>(desktop_.ports());
    delegate_->applicationDidFinishLaunching();
    if (const auto command = std::exchange(pending_, std::nullopt)) perform(*command);
  }

  /// What another start, a launcher or the desktop asks for; waits for the delegate.
  void perform(Command command) {
    if (command == Command::quit) return QCoreApplication::exit(0);
    if (!delegate_) {
      if (command != Command::open || !pending_) pending_ = command;
      return;
    }
    if (command == Command::open) delegate_->applicationShouldHandleReopen();
    if (command == Command::toggle) delegate_->openHistory();
    if (command == Command::search) delegate_->openSearch();
  }

  void terminate() {
    if (delegate_) delegate_->applicationWillTerminate();
    delegate_.reset();
  }

 private:
  LinuxDesktop& desktop_;
  std::optional<Command> pending_;
  std::unique_ptr<AppDelegate> delegate_;
};

int finish(const StartDecision& decision) {
  if (!decision.message.empty()) std::fprintf(stderr, "%s\n", decision.message.c_str());
  return decision.exitStatus;
}

/// The desktop starts us by our autostart entry; a saved session that did so too would start us
/// twice.
void stayOutOfSavedSessions(const QApplication& application) {
  const auto never = [](QSessionManager& manager) {
    manager.setRestartHint(QSessionManager::RestartNever);
  };
  QObject::connect(&application, &QGuiApplication::saveStateRequest, &application, never,
                   Qt::DirectConnection);
  QObject::connect(&application, &QGuiApplication::commitDataRequest, &application, never,
                   Qt::DirectConnection);
}

void describeApplication() {
  QApplication::setApplicationName("vantorel");
  QApplication::setApplicationVersion(VANTOREL_VERSION);
  QApplication::setDesktopFileName(applicationId::name);
  QApplication::setQuitOnLastWindowClosed(false);
  // The adapters speak X11, so the toolkit does too, also where it would choose otherwise.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "xcb");
}

int run(int argc, char** argv, Command command) {
  InstanceLock lock;
  StartSteps steps;
  steps.forward = [](Command asked) { return forwardToRunningInstance(asked, processEnvironment); };
  const auto early = decideBeforeToolkit(command, steps);
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
  const QApplication application(argc, argv);
  stayOutOfSavedSessions(application);
  QApplication::setWindowIcon(AppIconFactory::bundledPNG("vt"));
  ApplicationService service(dispatch);
  steps.claim = [&] { return service.claim(processEnvironment); };
  steps.lock = [&lock] {
    const auto directory = XdgDirectories::fromEnvironment(processEnvironment).runtime;
    return directory ? lock.take(*directory / "vantorel.lock") : InstanceLock::Result::unavailable;
  };
  const auto decision = decideWithToolkit(command, steps);
  if (decision.course == StartDecision::Course::exit) return finish(decision);

  const auto desktop = LinuxDesktop::open(dispatch, keychain);
  if (!desktop) {
    std::fputs("vantorel: the X server lacks what a clipboard history needs.\n", stderr);
    return 1;
  }
  Program program(*desktop, command);
  service.onActivate([&program] { program.perform(Command::open); });
  service.onAction([&program](Command asked) { program.perform(asked); });
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
  return vantorel::run(argc, argv, commandLine.command);
}
