#pragma once

#include "info/InfoCentre.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

#include <array>

class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;

namespace kelvo {

class ElidedLabel;
class NoteEdit;
class PictureView;

/// "Info Centre": the three lists, or what was found, above the text and picture of the chosen title. GUI
/// thread.
class InfoCentreWindow : public ToolWindow {
  Q_OBJECT
 public:
  InfoCentreWindow(EventLoop& loop, InfoCentre& centre);

  void TakeKeys() override;
  [[nodiscard]] Job<bool> MayClose() override { return centre_.MayClose(); }

 protected:
  void Refresh() override { centre_.List(); }
  void Enter() override { centre_.Enter(); }

 private:
  static constexpr std::size_t kLevels = kInfoLevels.size();

  void BuildCommands();
  void BuildLevelCommands(InfoLevel level);
  void BuildFields();
  void BuildLayout();
  [[nodiscard]] QWidget* Levels();
  [[nodiscard]] QWidget* PagePart();
  void Join();
  void Show();
  void ShowLevel(InfoLevel level);
  void ShowPage();
  [[nodiscard]] QString HitsHint() const;
  /// The level whose list has the keyboard, else the last one that had it.
  [[nodiscard]] InfoLevel LevelWithKeys();

  InfoCentre& centre_;
  std::array<RowModel<InfoName>, kLevels> models_;
  RowModel<InfoHit> hitModel_;
  std::array<ListPanel, kLevels> lists_;
  ListPanel hits_;
  InfoLevel level_ = InfoLevel::Category;
  QLineEdit* find_;
  QStackedWidget* pages_;
  ElidedLabel* name_;
  NoteEdit* text_;
  PictureView* picture_;
  QLabel* hint_;
  std::array<QPushButton*, kLevels> new_{};
  std::array<QPushButton*, kLevels> delete_{};
  std::array<QPushButton*, kLevels> rename_{};
  QPushButton* addPicture_ = nullptr;
  QPushButton* removePicture_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* close_ = nullptr;
};

}  // namespace kelvo
