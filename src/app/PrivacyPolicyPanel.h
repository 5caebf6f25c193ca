#pragma once

#include <string>

#include "app/DocumentPanel.h"

namespace vantorel {

/// The text of the whole privacy policy; one sentence when the resource is missing.
[[nodiscard]] std::string bundledPrivacyPolicy();

/// The whole privacy policy, in Hebrew. Main thread.
class PrivacyPolicyPanel : public DocumentPanel {
  Q_OBJECT

 public:
  PrivacyPolicyPanel(const ChromeServices& services, const std::string& policy);

 private:
  void build(const std::string& policy);
};

}  // namespace vantorel
