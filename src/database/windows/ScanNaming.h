#pragma once

#include "database/ScanRows.h"

#include <QWidget>

#include <functional>

class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kelvo {

class ListPanel;

/// The commands of the import window by which the rows that are picked are named. Owned by that window; GUI
/// thread.
class ScanNaming : public QWidget {
  Q_OBJECT
 public:
  ScanNaming(ScanRows& rows, ListPanel& found, QWidget* parent);

 private:
  void BuildCommands();
  [[nodiscard]] QLineEdit* AddField(const QString& name, const QString& label);
  [[nodiscard]] QHBoxLayout* InsertLine();
  [[nodiscard]] QHBoxLayout* ReplaceLine();
  void RenameTitle();
  void Insert();
  void Show();

  ScanRows& rows_;
  ListPanel& found_;
  QPushButton* extract_ = nullptr;
  QPushButton* fromFolder_ = nullptr;
  QPushButton* inFront_ = nullptr;
  QPushButton* rename_ = nullptr;
  QPushButton* separator_ = nullptr;
  QPushButton* insert_ = nullptr;
  QPushButton* replace_ = nullptr;
  QLabel* separatorWords_;
  QComboBox* insertColumn_;
  QLineEdit* insertText_;
  QLineEdit* existingArtist_;
  QLineEdit* newArtist_;
};

}  // namespace kelvo
