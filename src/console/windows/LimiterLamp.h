#pragma once

#include "console/scope/ProgrammeLevels.h"

#include <QWidget>

namespace kelvo {

/// The lamp of the limiter: dark while the programme passes as it is, amber while it is turned down so that
/// nothing clips. Owned by its panel; GUI thread.
class LimiterLamp : public QWidget {
  Q_OBJECT
 public:
  explicit LimiterLamp(const ProgrammeLevels& levels, QWidget* parent = nullptr);

  [[nodiscard]] bool Lit() const { return lit_; }
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void Show();

  const ProgrammeLevels& levels_;
  bool lit_ = false;
};

}  // namespace kelvo
