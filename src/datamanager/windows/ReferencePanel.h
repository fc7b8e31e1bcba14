#pragma once

#include "datamanager/DataManager.h"
#include "ui/ListPanel.h"

#include <QWidget>

#include <array>

class QPushButton;

namespace kelvo {

class ToolButtons;

/// The names of the Data Manager's window: one set of them with the commands for its names, and below those
/// that the filter takes. Owned by the window; GUI thread.
class ReferencePanel : public QWidget {
  Q_OBJECT
 public:
  ReferencePanel(DataManager& manager, ToolButtons& tools, QWidget* parent);

  void Show();
  /// Nothing is selected in the filter.
  void ClearFilterSelection() { filter_.Table().clearSelection(); }

 private:
  void BuildSets();
  void BuildCommands();
  void BuildLayout(ToolButtons& tools);
  void ChooseRow();
  void ShowChosen();
  void Jump(QChar letter);

  DataManager& manager_;
  RowModel<ReferenceRow> nameModel_;
  ListPanel names_;
  RowModel<Reference> filterModel_;
  ListPanel filter_;
  std::array<QPushButton*, 4> sets_{};
  QPushButton* add_ = nullptr;
  QPushButton* remove_ = nullptr;
  QPushButton* select_ = nullptr;
  QPushButton* apply_ = nullptr;
  QPushButton* all_ = nullptr;
  bool showing_ = false;  ///< the window moves the choice, not the operator
};

}  // namespace kelvo
