#pragma once

#include "datamanager/VolumeUnify.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace kelvo {

class JobStrip;

/// "Unify Volume": the files with their loudness and what the target would change, the target, and the run
/// that brings all of them there. GUI thread.
class UnifyWindow : public ToolWindow {
  Q_OBJECT
 public:
  UnifyWindow(EventLoop& loop, VolumeUnify& unify);

  void TakeKeys() override;
  /// Lists these files alone.
  void TakeFiles(const QStringList& places) override { unify_.ListOnly(places); }

  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void Refresh() override;
  void Leave() override;

 private:
  [[nodiscard]] static RowModel<UnifyRow>::Columns Columns();
  void BuildTarget();
  void BuildCommands();
  void BuildLayout();
  void ApplyTarget();
  void ShowTarget();
  void Show();
  void ShowJob();
  void ShowOffers();

  VolumeUnify& unify_;
  RowModel<UnifyRow> model_;
  ListPanel files_;
  QLineEdit* whole_;
  QLineEdit* tenths_;
  QLabel* decimal_;
  QLabel* sum_;
  JobStrip* job_;
  QPushButton* run_ = nullptr;
  QPushButton* measure_ = nullptr;
  QPushButton* selectAll_ = nullptr;
  QPushButton* showAll_ = nullptr;
  int shownStep_ = 0;
};

}  // namespace kelvo
