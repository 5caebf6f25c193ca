#include "platform/linux/dbus/ApplicationInterface.h"

namespace vantorel {

void ApplicationInterface::Activate(const QVariantMap& /*platformData*/) {
  dispatch_.async([token = std::weak_ptr(handlers_)] {
    const auto handlers = token.lock();
    if (handlers && handlers->activate) handlers->activate();
  });
}

void ApplicationInterface::Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
  Activate(platformData);
}

void ApplicationInterface::ActivateAction(const QString& name, const QVariantList& /*parameter*/,
                                          const QVariantMap& /*platformData*/) {
  const auto command = commandForAction(name.toStdString());
  if (!command) {
    if (calledFromDBus()) sendErrorReply(QDBusError::InvalidArgs, "There is no such action.");
    return;
  }
  dispatch_.async([token = std::weak_ptr(handlers_), command = *command] {
    const auto handlers = token.lock();
    if (handlers && handlers->action) handlers->action(command);
  });
}

}  // namespace vantorel
