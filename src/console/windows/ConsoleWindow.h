#pragma once

#include "console/Console.h"
#include "console/desk/DeskMenu.h"
#include "platform/Job.h"
#include "ui/NoticeBar.h"
#include "ui/Pulse.h"

#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <map>

class QAction;
class QLabel;
class QMenu;
class QSplitter;

namespace kelvo {

class AirAlarm;
class ConfirmationView;
class DeckPanel;
class LibraryPanel;
class LoadPanel;
class ProgrammePanels;
class QueuePanel;
class RecordBar;

/// The console on the screen, `frmCons`: it places the panels and lets each show its part of the desk. It
/// holds no rules. Owned by the program's entry; GUI thread.
class ConsoleWindow : public QMainWindow {
  Q_OBJECT
 public:
  explicit ConsoleWindow(Console& console);
  ~ConsoleWindow() override;

  /// Writes what window and desk find again at their next start.
  void SaveSettings();
  /// What the desk tells of the programme that goes out: whether it is silent, and the disks that do not
  /// answer.
  void ShowAir(const DeskStatus& status);

  /// Puts the entry of a window behind what is in the menu. The action stays its maker's.
  void AddWindowCommand(DeskMenu menu, QAction& command);

  /// The music file of the track that the operator points at: that of the deck, of the queue or of the
  /// library that has the keyboard, else the queue's selected row; empty when there is none.
  [[nodiscard]] QString PointedTrack() const;

  /// Opens the request of one track; tells that it takes no more.
  void WantRequest(const std::vector<Mref>& tracks);

  /// Asked before the desk itself is, when the operator closes it: false keeps it open.
  std::function<Job<bool>()> MayClose;

 Q_SIGNALS:
  /// The operator is done: settings are written, the window is gone.
  void Closed();
  /// A button of the console wants the window of this id (WindowId).
  void WindowWanted(const QString& id);
  /// The same, for this file, or for what else the window works on.
  void TrackWindowWanted(const QString& id, const QString& path);
  /// Files and folders of another program were dropped here.
  void FilesDropped(const QStringList& places);

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void BuildMenu();
  /// The selected row of the queue where that has the keyboard, else the library's track.
  void ListenInMonitor();
  void AnswerDrag(QDropEvent& event) const;
  void BuildDesk();
  void ShowStatus();
  void ShowLoad();
  void ShowPanel();
  /// Which panels are enabled: none while the catalogue loads or the screen is locked; the keyboard comes
  /// back to where it was. While the desk asks or a fade runs the lists stay open to look and to type, and
  /// only refuse what changes the queue.
  void EnableSections();
  /// Locked, neither menus nor what lies over the panels take a hand.
  void ShowLocked();
  void ShowTick();
  void PlaceOverlays();
  void PlaceAlarm();
  void ReadPlace();
  /// Colours the panels by the settings; one that is no colour leaves its panels as they are.
  void ApplyColours();
  [[nodiscard]] Job<> AskToClose();

  Console& console_;
  Pulse pulse_;
  QWidget* desk_;
  QSplitter* columns_;
  QWidget* left_;
  LibraryPanel* library_;
  QueuePanel* queue_;
  PerDeck<DeckPanel*> decks_;
  ConfirmationView* confirmation_;
  QAction* quit_ = nullptr;
  QAction* listen_ = nullptr;
  std::map<DeskMenu, QMenu*> menus_;
  LoadPanel* load_ = nullptr;
  QWidget* foot_;
  ProgrammePanels* programme_;
  NoticeBar* notices_;
  QLabel* status_;
  RecordBar* record_;
  AirAlarm* alarm_;
  QStringList silentDisks_;       ///< those that the notices tell of
  QPointer<QWidget> keysBefore_;  ///< had the keyboard when its panel closed
  bool activated_ = false;
  bool closing_ = false;
  Job<> asking_;
};

}  // namespace kelvo
