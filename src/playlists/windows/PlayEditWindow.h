#pragma once

#include "playlists/PlayEditor.h"
#include "ui/ToolWindow.h"

#include <array>

class QCheckBox;
class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;

namespace kelvo {

class FadePanelView;
class Fader;
class NamesPanel;

/// "Edit Track Data": how a track is played, and the rest of its info file. GUI thread.
class PlayEditWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit PlayEditWindow(PlayEditor& editor);

  void TakeFiles(const QStringList& places) override;
  [[nodiscard]] Job<bool> MayClose() override { return editor_.MayClose(); }

 protected:
  void Leave() override { editor_.Leave(); }

 private:
  [[nodiscard]] QComboBox* AddChoice(const QString& name, const QString& fixedName, const QString& accessible,
                                     const QStringList& choices, QString PlayEdit::*field);
  void AddStyle(const std::array<QRadioButton*, 2>& buttons, bool PlayEdit::*strong);
  [[nodiscard]] QRadioButton* AddOption(const QString& name, const QString& fixedName, const QString& words);
  void BuildCommands();
  void BuildFields();
  [[nodiscard]] QWidget* Facts();
  [[nodiscard]] QWidget* DurationPanel();
  [[nodiscard]] QWidget* Styles();
  void BuildLayout();
  /// All fields are others.
  void Fill();
  void Show();
  void ShowDuration();

  PlayEditor& editor_;
  QLabel* name_;
  QLabel* size_;
  QLabel* notice_;
  std::array<NamesPanel*, kNameSets> names_{};
  QComboBox* year_ = nullptr;
  QComboBox* month_ = nullptr;
  QComboBox* hi_ = nullptr;
  QComboBox* bpm_ = nullptr;
  QLabel* duration_;
  QCheckBox* defaults_;
  std::array<FadePanelView*, 2> fades_{};
  std::array<QRadioButton*, 2> starts_{};  ///< strong, soft
  std::array<QRadioButton*, 2> ends_{};
  QPlainTextEdit* comments_;
  QWidget* durationPanel_ = nullptr;
  QLabel* newDuration_;
  Fader* durationSlider_;
  int shownReread_ = -1;
  QLabel* trialWords_;
  QPushButton* try_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* close_ = nullptr;
  QPushButton* editDuration_ = nullptr;
  QPushButton* import_ = nullptr;
  QPushButton* reread_ = nullptr;
  QPushButton* apply_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

}  // namespace kelvo
