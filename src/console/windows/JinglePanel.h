#pragma once

#include "console/jingles/Jingles.h"
#include "console/monitor/Monitor.h"
#include "ui/Panel.h"
#include "ui/RowModel.h"

#include <array>

class QLabel;
class QPushButton;

namespace kelvo {

class ElidedLabel;
class Fader;
class ListTable;
class ProgressStrip;

/// "JINGLES BANK": the buttons for the favourites, the list of sound bites with its commands, the level and
/// how far the bite is. Owned by the console window; GUI thread.
class JinglePanel : public Panel {
  Q_OBJECT
 public:
  JinglePanel(Jingles& jingles, Monitor& monitor, QWidget* parent = nullptr);

 private:
  void BuildBank();
  void BuildList();
  void Lay();
  void Show();
  void ShowBank();
  void ShowSelection();

  Jingles& jingles_;
  RowModel<SoundBite> model_;
  std::array<QPushButton*, Jingles::kBankButtons> buttons_{};
  ListTable* list_;
  QPushButton* bank_;
  QPushButton* queue_;
  QPushButton* stop_;
  QPushButton* pfl_;
  ProgressStrip* progress_;
  Fader* level_;
  QLabel* levelWords_;
  ElidedLabel* info_;
};

}  // namespace kelvo
