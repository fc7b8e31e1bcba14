#pragma once

#include "console/status/DeskStatus.h"

#include <QWidget>

namespace kelvo {

/// The field of a deck whose hatching turns on while it plays, with the words of the deck that is heard;
/// a calm cyan at rest. A locked console goes on showing it. Name it with setAccessibleName; the words are
/// spoken as its description. Owned by the deck's panel; GUI thread.
class PlayIndicator : public QWidget {
  Q_OBJECT
 public:
  explicit PlayIndicator(QWidget* parent = nullptr);

  void Show(const DeckIndicator& indicator);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  DeckIndicator indicator_;
};

}  // namespace kelvo
