#pragma once

#include "reports/Reports.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

#include <array>

class QDateEdit;
class QLabel;
class QPushButton;
class QRadioButton;

namespace kelvo {

class JobStrip;

/// "Reports": which one, its rows, and the files that are made of them. GUI thread.
class ReportsWindow : public ToolWindow {
  Q_OBJECT
 public:
  ReportsWindow(EventLoop& loop, Reports& reports);

  void TakeKeys() override;

 protected:
  void Refresh() override { reports_.List(); }

 private:
  [[nodiscard]] static RowModel<QStringList>::Columns Columns(ReportKind kind);
  void BuildOptions();
  void BuildDays();
  void BuildCommands();
  void BuildLayout();
  void TakeDays();
  void Show();

  Reports& reports_;
  RowModel<QStringList> tracks_;
  RowModel<QStringList> plays_;
  ListPanel trackList_;
  ListPanel playList_;
  std::array<QRadioButton*, kReportKinds.size()> options_{};
  QDateEdit* from_;
  QDateEdit* to_;
  QPushButton* start_ = nullptr;
  QPushButton* csv_ = nullptr;
  QPushButton* pdf_ = nullptr;
  QPushButton* log_ = nullptr;
  QLabel* hint_;
  QLabel* totals_;
  JobStrip* progress_;
};

}  // namespace kelvo
