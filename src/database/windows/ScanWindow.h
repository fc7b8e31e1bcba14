#pragma once

#include "database/ScanImport.h"
#include "ui/WindowPlace.h"

#include <QWidget>

#include <memory>

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace kelvo {

class DriveBox;
class ListTable;
class Panel;
class ProgressStrip;
class ScanModel;

/// `frmCDview`: finds music on a drive, lets it be named, and copies it to the utility folder. A search or an
/// import goes on when the window is closed. Owned by who opens it; GUI thread.
class ScanWindow : public QWidget {
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
  explicit ScanWindow(const Services& services);
  ~ScanWindow() override;

  /// Whether it is at work, and its stop.
  [[nodiscard]] ScanImport& Work() { return scan_; }

 protected:
  void showEvent(QShowEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  QPushButton* AddCommand(const QString& name, const QString& text, const QString& tooltip,
                          const QKeySequence& key = {});
  QLineEdit* AddField(const QString& name, const QString& label);
  void BuildLayout();
  [[nodiscard]] QHBoxLayout* BuildDriveLine();
  [[nodiscard]] QVBoxLayout* BuildNaming();
  [[nodiscard]] QHBoxLayout* BuildImportLine();
  void Connect();
  void Command11_Click();
  void Command10_Click();
  void Insert_Click();
  void Show();
  void ShowRow();

  ScanImport scan_;
  ScanModel* model_;
  Panel* panel_;
  ListTable* list_;
  DriveBox* drives_;
  QPushButton* browse_;
  QPushButton* map_;
  QPushButton* search_;
  QPushButton* extract_;
  QPushButton* fromFolder_;
  QPushButton* inFront_;
  QPushButton* rename_;
  QPushButton* separator_;
  QLabel* separatorWords_;
  QComboBox* insertColumn_;
  QLineEdit* insertText_;
  QPushButton* insert_;
  QLineEdit* existingArtist_;
  QLineEdit* newArtist_;
  QPushButton* replace_;
  QCheckBox* delete_;
  QPushButton* clear_;
  QPushButton* selectAll_;
  QPushButton* import_;
  QLabel* rowWords_;
  ProgressStrip* progress_;
  std::unique_ptr<WindowPlace> place_;
};

}  // namespace kelvo
