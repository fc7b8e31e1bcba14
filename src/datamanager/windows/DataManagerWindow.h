#pragma once

#include "datamanager/DataManager.h"
#include "datamanager/windows/ManagerModel.h"
#include "datamanager/windows/ToolButtons.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

#include <array>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace kelvo {

class BulkForm;
class JobStrip;
class PreviewPanel;
class ReferencePanel;
class TrackNamesPanel;

/// "Data Manager": the tracks of the database, what they are filed under, and the commands for their upkeep.
/// A button whose work is done elsewhere is there when its tool was handed in. GUI thread.
class DataManagerWindow : public ToolWindow {
  Q_OBJECT
 public:
  DataManagerWindow(EventLoop& loop, DataManager& manager);
  ~DataManagerWindow() override;

  void TakeKeys() override { list_.Table().setFocus(); }
  /// Asks only while it is shown.
  [[nodiscard]] Job<bool> MayClose() override;
  /// Gives a panel of a tool a place below the list. The window owns it.
  void Embed(QWidget* panel);

 protected:
  void Refresh() override { manager_.Refresh(); }
  void Enter() override;
  void Leave() override;

 private:
  void BuildCommands();
  void BuildLayout();
  [[nodiscard]] QHBoxLayout* ViewLine();
  [[nodiscard]] QHBoxLayout* ListLine();
  void AddToolLines(QVBoxLayout& layout);
  void FollowList();
  void LookAtSight();
  void TakePicked();
  void ShowBulk(bool shown);
  void SelectHits(const std::vector<int>& rows);
  void ReachRow(int row);
  void Show();
  void ShowJob();

  EventLoop& loop_;
  DataManager& manager_;
  ToolButtons tools_;
  ManagerModel model_;
  ListPanel list_;
  ReferencePanel* references_;
  TrackNamesPanel* names_;
  PreviewPanel* preview_;
  BulkForm* bulk_;
  JobStrip* job_;
  std::array<QPushButton*, 3> modes_{};
  QCheckBox* suspend_;
  QLineEdit* words_;
  QPushButton* find_ = nullptr;
  QPushButton* select_ = nullptr;
  QPushButton* several_ = nullptr;
  QPushButton* restrict_ = nullptr;
  QPushButton* close_ = nullptr;
  QLabel* count_;
  QLabel* current_;
  QString note_;  ///< what the operator should know of the selection
  QVBoxLayout* embedded_ = nullptr;
  Timer second_;
};

}  // namespace kelvo
