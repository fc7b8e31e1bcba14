#pragma once

#include "playlists/PlaylistGenerator.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

#include <QPointer>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class QTabBar;

namespace kelvo {

class JobStrip;
class OutlinePanel;
class RulesLine;

/// "Generate Play List": genres, the outline of the tempo, the wanted length, and what was made of them. What
/// it does goes on when it is closed. GUI thread.
class GeneratorWindow : public ToolWindow {
  Q_OBJECT
 public:
  GeneratorWindow(EventLoop& loop, PlaylistGenerator& generator);

  void TakeKeys() override;

 protected:
  void Refresh() override;
  void Enter() override;
  void Leave() override;

 private:
  void BuildCommands();
  void BuildSave();
  void BuildLayout();
  [[nodiscard]] QLayout* GenresLayout();
  void JoinGenerator();
  void MoveChosen(int step);
  /// The tracks that are picked on the page that is shown; all of it when none is.
  [[nodiscard]] std::vector<Mref> Tracks() const;
  void ShowPage(int page);
  void Show();
  void ShowCommands();
  void ShowCategories();

  PlaylistGenerator& generator_;
  RowModel<GenreName> genreModel_;
  RowModel<GenreName> chosenModel_;
  RowModel<GeneratedRow> listModel_;
  RowModel<SequenceRow> sequenceModel_;
  ListPanel genres_;
  ListPanel chosen_;
  ListPanel list_;
  ListPanel sequence_;
  OutlinePanel* outline_;
  RulesLine* rules_;
  QLabel* total_;
  QLabel* facts_;
  QTabBar* tabs_;
  QStackedWidget* pages_;
  QLineEdit* name_;
  QComboBox* category_;
  JobStrip* progress_;
  QPushButton* choose_ = nullptr;
  QPushButton* giveBack_ = nullptr;
  QPushButton* up_ = nullptr;
  QPushButton* down_ = nullptr;
  QPushButton* generate_ = nullptr;
  QPushButton* fit_ = nullptr;
  QPushButton* add_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* exit_ = nullptr;
  QPointer<QWidget> focus_;  ///< where the focus was when the work under way began
  QString kept_;             ///< the name of the last save that is known
};

}  // namespace kelvo
