#include "platform/linux/bus/ApplicationInterface.h"

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

void ApplicationInterface::ActivateAction(const QString& name, const QVariantList& parameter,
                                          const QVariantMap& /*platformData*/) {
  const auto command = commandForAction(name.toStdString());
  if (!command) return refuse("There is no such action.");
  std::string argument;
  if (takesArgument(*command)) {
    if (parameter.size() != 1 || parameter.first().typeId() != QMetaType::QString) {
      return refuse("That action needs one text.");
    }
    argument = parameter.first().toString().toStdString();
  }
  dispatch_.async([token = std::weak_ptr(handlers_), command = *command, argument] {
    const auto handlers = token.lock();
    if (handlers && handlers->action) handlers->action(command, argument);
  });
}

void ApplicationInterface::refuse(const QString& reason) {
  if (calledFromDBus()) sendErrorReply(QDBusError::InvalidArgs, reason);
}

}  // namespace vantorel
