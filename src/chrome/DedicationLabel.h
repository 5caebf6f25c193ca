// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QVariantAnimation;

namespace vantorel {

/// One faint line that appears and goes.
class DedicationLabel : public QWidget {
  Q_OBJECT

 public:
  static constexpr int labelWidth = 180;
  static constexpr int labelHeight = 20;

  explicit DedicationLabel(QWidget* parent);

  enum class Motion { fading, none };
  void setShown(bool shown, Motion motion);
  /// From 0, not to be seen, to 1.
  [[nodiscard]] double alpha() const { return alpha_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void setAlpha(double alpha);

  QVariantAnimation* fade_;
  double alpha_ = 0;
  bool shown_ = false;
};

}  // namespace vantorel
