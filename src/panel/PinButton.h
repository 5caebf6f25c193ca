#pragma once

#include <QAbstractButton>
#include <string_view>

namespace vantorel {

/// The pin of a row: shows whether the entry is pinned, and pins or unpins it. What is drawn and
/// what can be hit fill its frame exactly.
class PinButton : public QAbstractButton {
  Q_OBJECT

 public:
  static constexpr int side = 28;

  explicit PinButton(QWidget* parent);

  enum class Pin { pinned, notPinned };
  enum class Limit { canToggle, full };
  void setState(Pin pin, Limit limit);

  /// What a screen reader says after the name.
  [[nodiscard]] QString accessibilityValue() const;
  [[nodiscard]] QSize sizeHint() const override { return {side, side}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  [[nodiscard]] QColor tint() const;

  Pin pin_ = Pin::notPinned;
  bool hovering_ = false;
};

}  // namespace vantorel
