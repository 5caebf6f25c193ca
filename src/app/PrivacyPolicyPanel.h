#pragma once

#include <functional>
#include <string>

#include "chrome/ChromeServices.h"
#include "chrome/VantorelPanel.h"

namespace vantorel {

/// The text of the whole privacy policy; one sentence when the resource is missing.
[[nodiscard]] std::string bundledPrivacyPolicy();

/// The whole privacy policy, in Hebrew. Main thread.
class PrivacyPolicyPanel : public VantorelPanel {
  Q_OBJECT

 public:
  PrivacyPolicyPanel(const ChromeServices& services, const std::string& policy);

  /// The receiver may hide the panel and let it go by `deleteLater`.
  std::function<void()> onClose;

 private:
  void build(const std::string& policy);
};

}  // namespace vantorel
