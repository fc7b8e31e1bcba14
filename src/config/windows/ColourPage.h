#pragma once

#include "config/windows/ConfigPage.h"
#include "ui/Theme.h"

#include <QColor>

#include <array>

namespace kelvo {

/// "Colour Settings": a panel of each group in its colour, with a bar for red, green and blue. The panels of
/// the desk follow the bars, until TakeBack. GUI thread.
class ColourPage : public ConfigPage {
  Q_OBJECT
 public:
  explicit ColourPage(Configuration& work);

  /// From now on the desk has the colours of this moment when what is shown isn't saved.
  void Remember();
  void TakeBack() const;

 private:
  struct Part {
    Group group;
    QString name;
    QString caption;
    Colour ConfigValues::*member;
  };
  [[nodiscard]] static const std::array<Part, 4>& Parts();
  [[nodiscard]] QWidget* MakePanel(int index);

  std::array<QColor, 4> before_;
};

}  // namespace kelvo
