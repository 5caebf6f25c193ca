// SPDX-License-Identifier: MIT
#include "platform/linux/bus/ApplicationInterface.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <algorithm>
#include <utility>

namespace vantorel {

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
    if (onRequest) onRequest(request);
  }));
}

void ApplicationInterface::passAndAnswer(ActionRequest request) {
  setDelayedReply(true);
  dispatch_.async(
      life_.guard([this, request = std::move(request), call = message(), bus = connection()]() {
        if (onRequest) onRequest(request);
        (void)bus.send(call.createReply());
      }));
}

void ApplicationInterface::refuse(const QString& reason) {
  if (calledFromDBus()) sendErrorReply(QDBusError::InvalidArgs, reason);
}

}  // namespace vantorel
