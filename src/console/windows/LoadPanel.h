#pragma once

#include "ui/Panel.h"

namespace kelvo {

class CatalogueLoader;
class ProgressStrip;

/// "Initialising System, Please Wait....": the two bars of the catalogue load, over the console that waits
/// for it. Owned by the console window; GUI thread.
class LoadPanel : public Panel {
  Q_OBJECT
 public:
  /// `program`: its title.
  LoadPanel(const QString& program, QWidget* parent);

  void Show(const CatalogueLoader& load);

 private:
  ProgressStrip* references_;
  ProgressStrip* tracks_;
};

}  // namespace kelvo
