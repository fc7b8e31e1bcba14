#pragma once

#include "platform/Job.h"
#include "ui/WindowPlace.h"

#include <QStringList>
#include <QWidget>

#include <memory>

namespace kelvo {

/// A window beside the console. All of them obey the same keys: Enter works the control that has the focus
/// (see ControlKeys), Escape closes the window (an open box, a menu or the edited cell takes it first), F5
/// refreshes, F1 asks for its help, Tab goes through it as it is read. It is kept when it closes. Owned by
/// who opens it, beside the work that it shows: the window goes first. GUI thread.
class ToolWindow : public QWidget {
  Q_OBJECT
 public:
  struct Look {
    QString name;            ///< its object name
    QString fixedName = {};  ///< see SetNames
    QString title;
    int letters = 110;  ///< its width at first, in letters of its font
    int lines = 26;     ///< its height at first, in lines
  };
  explicit ToolWindow(const Look& look);
  ~ToolWindow() override;

  /// Puts the window where it was, and keeps its place from now on.
  void KeepPlace(SettingsStore& settings, const PlaceKeys& keys);
  /// The operator asked for the window: the keyboard goes to where its work begins.
  virtual void TakeKeys() {}
  /// Files and folders were dropped for it.
  virtual void TakeFiles(const QStringList& /*places*/) {}
  /// Whether it may close; may ask first.
  [[nodiscard]] virtual Job<bool> MayClose() { co_return true; }

 Q_SIGNALS:
  /// It went off the screen.
  void Left();
  /// F1.
  void HelpWanted();

 protected:
  /// F5.
  virtual void Refresh() {}
  /// It came on the screen.
  virtual void Enter() { Refresh(); }
  /// It went off the screen.
  virtual void Leave() {}
  /// Comes to the front of the console and of nothing else: no question, no menu and no window that is being
  /// worked in is covered.
  void StayOnTop();

  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  [[nodiscard]] Job<> AskAndClose();

  std::unique_ptr<WindowPlace> place_;
  Job<> closing_;
};

}  // namespace kelvo
