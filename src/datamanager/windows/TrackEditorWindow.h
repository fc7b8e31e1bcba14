#pragma once

#include "datamanager/TrackEditor.h"
#include "ui/ToolWindow.h"

#include <array>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;

namespace kelvo {

class ElidedLabel;

/// "Edit File": one track or jingle, its facts, its name, and its end. GUI thread.
class TrackEditorWindow : public ToolWindow {
  Q_OBJECT
 public:
  TrackEditorWindow(EventLoop& loop, TrackEditor& editor);

  /// The operator wants the file as MP3.
  std::function<void(const QString& path)> OnConvert;

  void TakeFiles(const QStringList& places) override;
  void TakeKeys() override;
  [[nodiscard]] Job<bool> MayClose() override { return editor_.MayClose(); }

 protected:
  void Leave() override { editor_.Leave(); }
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] QLineEdit* AddLine(const QString& name, const QString& fixedName, const QString& accessible,
                                   QString TrackFacts::*field);
  [[nodiscard]] QComboBox* AddChoice(const QString& name, const QString& fixedName, const QString& accessible,
                                     const QStringList& choices, QString TrackFacts::*field);
  [[nodiscard]] std::array<QRadioButton*, 2> AddStyle(const std::array<QString, 2>& names, int fixedNumber,
                                                      const QString& accessible, bool TrackFacts::*strong);
  void BuildFields();
  void BuildCommands();
  [[nodiscard]] QWidget* FactsPanel();
  [[nodiscard]] QWidget* NamePanel();
  void BuildLayout();
  /// All fields are others.
  void Fill();
  void Show();

  EventLoop& loop_;
  TrackEditor& editor_;
  ElidedLabel* name_;
  QLabel* jingle_;
  QComboBox* year_ = nullptr;
  QComboBox* month_ = nullptr;
  QLineEdit* hi_ = nullptr;
  QLineEdit* bpm_ = nullptr;
  std::array<QRadioButton*, 2> starts_{};  ///< strong, soft
  std::array<QRadioButton*, 2> ends_{};
  QPlainTextEdit* comments_;
  QLineEdit* newName_;
  QWidget* facts_ = nullptr;
  QPushButton* rename_ = nullptr;
  QPushButton* delete_ = nullptr;
  QPushButton* convert_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* close_ = nullptr;
  Timer onTop_;
};

}  // namespace kelvo
