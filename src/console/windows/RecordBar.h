#pragma once

#include <QWidget>

class QAction;

namespace kelvo {

class CommandButton;
class ProgrammeRecorder;
class ScreenLock;

/// The command "Record" at the end of the menu bar. While it records it shows how long, how much, and the
/// space that is left; red, and amber when that is running out or the disk hangs. A locked screen goes on
/// showing it. As wide as its longest words: a menu bar lays its end out only once. Owned by the console
/// window; GUI thread.
class RecordBar : public QWidget {
  Q_OBJECT
 public:
  RecordBar(ProgrammeRecorder& recorder, ScreenLock& lock, QWidget* parent);

  /// The same command for a menu, with its key.
  [[nodiscard]] QAction& Command() { return *command_; }

  [[nodiscard]] QSize sizeHint() const override;

 private:
  void Show();
  [[nodiscard]] QString Words() const;
  void SetColours(const QColor& ground, const QColor& edge);

  ProgrammeRecorder& recorder_;
  ScreenLock& lock_;
  QAction* command_;
  CommandButton* button_;
  int width_;
};

}  // namespace kelvo
