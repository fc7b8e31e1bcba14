#pragma once

#include "console/Console.h"
#include "ui/Panel.h"

namespace kelvo {

class ProgressStrip;

/// "Initialising System, Please Wait....": the two bars of the catalogue load, over the console that waits
/// for it. Owned by the console window; GUI thread.
class LoadPanel : public Panel {
  Q_OBJECT
 public:
  LoadPanel(const Console& console, QWidget* parent);

  /// Shows the present state of the bars.
  void Show();

 private:
  const Console& console_;
  ProgressStrip* references_;
  ProgressStrip* tracks_;
};

}  // namespace kelvo
