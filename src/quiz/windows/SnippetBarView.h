#pragma once

#include "quiz/QuizPlayers.h"

#include <QWidget>

namespace kelvo {

/// The bar of what sounds: the seconds of its stretch, the snippet within it, and where it is. GUI thread.
class SnippetBarView : public QWidget {
  Q_OBJECT
 public:
  explicit SnippetBarView(QWidget* parent);

  void Show(const std::optional<SnippetBar>& bar);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::optional<SnippetBar> bar_;
};

}  // namespace kelvo
