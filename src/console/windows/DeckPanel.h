#pragma once

#include "console/automatic/AutoPlay.h"
#include "console/monitor/Monitor.h"
#include "console/status/StatusTick.h"
#include "console/transitions/DeckCommands.h"
#include "console/transitions/PressToSpeak.h"
#include "console/transitions/Transitions.h"
#include "ui/Panel.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QToolButton;

namespace kelvo {

class DeckTally;
class Fader;
class PlayIndicator;
class ProgressStrip;
class TimeDisplay;

/// One deck: what is in it, how long it still plays, its commands and its transitions. Shows the DeckRecord
/// and turns clicks into commands of the DeckEngine. Owned by the console window; GUI thread.
class DeckPanel : public Panel {
  Q_OBJECT
 public:
  /// What the panel shows and commands. All outlive it.
  struct Parts {
    DeckEngine& decks;
    Transitions& fades;
    PressToSpeak& speak;
    Monitor& monitor;
    AutoPlay& automatic;
    StatusTick& status;
    const ConsoleState& state;
  };
  DeckPanel(const Parts& parts, Deck deck, QWidget* parent = nullptr);

 Q_SIGNALS:
  /// How the deck's track is played is to be edited; its music file.
  void EditWanted(const QString& path);

 public Q_SLOTS:
  /// The beat that warnings blink to.
  void SetLit(bool lit);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Build();
  void Connect();
  void Show();
  void ShowTime(const DeckRecord& record);
  void ShowLevel(const DeckRecord& record);
  void ShowCommands(const DeckRecord& record);
  /// The deck's number is put behind each `name`.
  QPushButton* AddCommand(const QString& name, const QString& fixedName, const QString& text,
                          const QString& tooltip, const QKeySequence& key);
  QPushButton* AddTransition(TransitionKind kind, const QString& name, const QString& fixedName,
                             const QString& text, const QString& key);
  void ShowTransitions();
  QToolButton* AddMove(FastMove move, const QString& name, const QString& tooltip);

  Parts desk_;
  DeckEngine& decks_;
  DeckCommands commands_;
  Deck deck_;
  DeckTally* tally_;
  PlayIndicator* indicator_;
  QLabel* title_;
  TimeDisplay* remaining_;
  ProgressStrip* progress_;
  QLabel* info_;
  QLabel* loadFail_;
  QPlainTextEdit* text_;
  Fader* level_;
  QLabel* levelWords_;
  QPushButton* load_;
  QPushButton* start_;
  QPushButton* stop_;
  std::vector<std::pair<FastMove, QToolButton*>> moves_;
  QPushButton* pan_;
  QPushButton* partFade_;
  QPushButton* dub_;
  QPushButton* cancelStart_;
  QPushButton* edit_ = nullptr;
};

}  // namespace kelvo
