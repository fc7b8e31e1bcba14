#pragma once

#include "datamanager/DataManager.h"
#include "ui/Panel.h"

class QLabel;
class QPushButton;

namespace kelvo {

class Fader;

/// The player of the Data Manager: what is heard of the selected row beside the programme. Owned by the
/// window; GUI thread.
class PreviewPanel : public Panel {
  Q_OBJECT
 public:
  PreviewPanel(DataManager& manager, QWidget* parent);

  void Show();

 private:
  DataManager& manager_;
  QLabel* words_;
  QLabel* time_;
  Fader* place_;
  QPushButton* play_;
  QPushButton* stop_;
};

}  // namespace kelvo
