#pragma once

#include <QScrollArea>

namespace vantorel {

/// Scrolls one document vertically, without a frame, a background or a visible scroller.
class ElasticScrollView : public QScrollArea {
  Q_OBJECT

 public:
  explicit ElasticScrollView(QWidget* parent);

  /// The distance from the top of the document to what is seen of it, and the way to change it;
  /// kept within the document.
  [[nodiscard]] double offset() const;
  void scrollTo(double offset);
};

}  // namespace vantorel
