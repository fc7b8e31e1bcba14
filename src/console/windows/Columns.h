#pragma once

#include <QSplitter>

namespace kelvo {

/// The three columns of the desk. However it was resized they share its width alike, so that on an ordinary
/// screen whole names fit into both lists, until the operator shares it out by hand. GUI thread.
class Columns : public QSplitter {
 public:
  explicit Columns(QWidget* parent) : QSplitter(Qt::Horizontal, parent) {
    connect(this, &QSplitter::splitterMoved, this, [this] { byHand_ = true; });
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QSplitter::resizeEvent(event);
    if (!byHand_) setSizes({width() * 31 / 100, width() * 38 / 100, width() * 31 / 100});
  }

 private:
  bool byHand_ = false;
};

}  // namespace kelvo
