// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "app/DocumentPanel.h"
#include "app/Language.h"

namespace vantorel {

/// The text of the whole privacy policy; one sentence when the resource is missing.
[[nodiscard]] std::string bundledPrivacyPolicy(Language language);

/// The whole privacy policy. Main thread.
class PrivacyPolicyPanel : public DocumentPanel {
  Q_OBJECT

 public:
  PrivacyPolicyPanel(const ChromeServices& services, Language language);

 private:
  void build(Language language);
};

}  // namespace vantorel
