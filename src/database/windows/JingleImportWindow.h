#pragma once

#include "database/JingleImport.h"
#include "ui/WindowPlace.h"

#include <QWidget>

#include <memory>

class QPushButton;

namespace kelvo {

class DriveBox;
class JingleModel;
class ListTable;
class Panel;
class ProgressStrip;

/// `frmJingEdit`: finds short sounds on a drive and copies them into the jingle folder. What it does goes on
/// when the window is closed. Owned by who opens it; GUI thread.
class JingleImportWindow : public QWidget {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    SettingsStore& settings;
    Catalogue& catalogue;
    Paths paths;
    QString title;  ///< the program's
  };
  explicit JingleImportWindow(const Services& services);
  ~JingleImportWindow() override;

  /// Its run.
  [[nodiscard]] JingleImport& Work() { return jingles_; }

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  QPushButton* AddCommand(const QString& name, const QString& text, const QString& tooltip,
                          const QKeySequence& key);
  void BuildLayout();
  void Connect();
  void Command6_Click();
  void Show();

  JingleImport jingles_;
  JingleModel* model_;
  Panel* panel_;
  ListTable* list_;
  DriveBox* drives_;
  QPushButton* browse_;
  QPushButton* search_;
  QPushButton* selectAll_;
  QPushButton* delete_;
  QPushButton* import_;
  ProgressStrip* progress_;
  std::unique_ptr<WindowPlace> place_;
};

}  // namespace kelvo
