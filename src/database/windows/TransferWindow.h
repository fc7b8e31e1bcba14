#pragma once

#include "database/Transfer.h"
#include "ui/WindowPlace.h"

#include <QWidget>

#include <memory>

class QLabel;
class QPushButton;

namespace kelvo {

class ListTable;
class Panel;
class ProgressStrip;

/// `FrmTransfer`: the files that wait in the utility folder, to be completed and moved into the database. A
/// run goes on when the window is closed. Owned by who opens it; GUI thread.
class TransferWindow : public QWidget {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    SettingsStore& settings;
    AudioSystem& audio;
    Catalogue& catalogue;
    Paths paths;
    TrackDefaults defaults;
    QString title;  ///< the program's
  };
  explicit TransferWindow(const Services& services);
  ~TransferWindow() override;

  /// Its run: whether one goes on, and its stop.
  [[nodiscard]] Transfer& Work() { return transfer_; }

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  QPushButton* AddCommand(const QString& name, const QString& text, const QString& tooltip);
  void BuildLayout();
  void BuildKeys();
  [[nodiscard]] std::vector<int> SelectedIds() const;
  [[nodiscard]] bool AllSelected() const;
  void CmdSelect_Click();
  void Show();

  Transfer transfer_;
  Panel* panel_;
  ListTable* list_;
  QLabel* words_;
  ProgressStrip* file_;
  ProgressStrip* total_;
  QPushButton* select_;
  QPushButton* delete_;
  QPushButton* move_;
  QPushButton* stop_;
  QString hint_;
  std::unique_ptr<WindowPlace> place_;
};

}  // namespace kelvo
