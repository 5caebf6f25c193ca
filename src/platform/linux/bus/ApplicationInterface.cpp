// SPDX-License-Identifier: MIT
#include "platform/linux/bus/ApplicationInterface.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "platform/linux/start/RunningInstance.h"

namespace vantorel {
namespace {

/// The one answer to a call. Where nobody gives it, its end says that nothing was done.
class DelayedReply {
 public:
  DelayedReply(const QDBusMessage& call, QDBusConnection bus) : call_(call), bus_(std::move(bus)) {}
  ~DelayedReply() { send("Vantorel has been busy with something else."); }
  DelayedReply(const DelayedReply&) = delete;
  DelayedReply& operator=(const DelayedReply&) = delete;

  void send(const std::string& trouble) {
    if (std::exchange(isSent_, true)) return;
    (void)bus_.send(trouble.empty()
                        ? call_.createReply()
                        : call_.createErrorReply(notDoneError, QString::fromStdString(trouble)));
  }

 private:
  const QDBusMessage call_;
  QDBusConnection bus_;
  bool isSent_ = false;
};

}  // namespace

void ApplicationInterface::Activate(const QVariantMap& /*platformData*/) { pass({}); }

void ApplicationInterface::Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
  Activate(platformData);
}

void ApplicationInterface::ActivateAction(const QString& name, const QVariantList& parameter,
                                          const QVariantMap& /*platformData*/) {
  ActionRequest request{.action = name.toStdString()};
  const auto found = std::find_if(actions_.begin(), actions_.end(), [&](const auto& action) {
    return action.name == request.action;
  });
  if (found == actions_.end()) return refuse("There is no such action.");
  if (found->takesText) {
    if (parameter.size() != 1 || parameter.first().typeId() != QMetaType::QString) {
      return refuse("That action needs one text.");
    }
    request.argument = parameter.first().toString().toStdString();
  }
  if (found->isAwaited && calledFromDBus()) return passAndAnswer(std::move(request));
  pass(std::move(request));
}

void ApplicationInterface::pass(ActionRequest request) {
  dispatch_.async(life_.guard([this, request = std::move(request)] {
    if (onRequest) onRequest(request, answerNobody);
  }));
}

void ApplicationInterface::passAndAnswer(ActionRequest request) {
  setDelayedReply(true);
  auto reply = std::make_shared<DelayedReply>(message(), connection());
  dispatch_.async(life_.guard([this, request = std::move(request), reply = std::move(reply)] {
    if (!onRequest) return;
    onRequest(request, [reply](const std::string& trouble) { reply->send(trouble); });
  }));
}

void ApplicationInterface::refuse(const QString& reason) {
  if (calledFromDBus()) sendErrorReply(QDBusError::InvalidArgs, reason);
}

}  // namespace vantorel
