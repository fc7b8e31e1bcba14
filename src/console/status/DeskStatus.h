#pragma once

#include "console/desk/DeckTypes.h"
#include "console/status/ClockFace.h"

#include <QString>
#include <QStringList>

namespace kelvo {

/// The indicator of a deck: a field whose fill pattern moves while the deck plays.
struct DeckIndicator {
  int style = 1;         ///< fill pattern 1..5; 1 is at rest
  bool playing = false;  ///< at rest the field is cyan
  QString text;          ///< "Currently Playing: " and the title while this deck is the one that is heard

  bool operator==(const DeckIndicator&) const = default;
};

/// The pattern that follows `style` while a deck plays.
[[nodiscard]] constexpr int NextFillStyle(int style) {
  return style == 4 ? 3 : style == 5 ? 2 : style + 2;
}

/// The word that tells by what rule the desk runs, "AUTOMATIC PLAY" while it runs by hand.
struct ModeWord {
  QString text = QStringLiteral("AUTOMATIC PLAY");
  bool idle = true;  ///< by hand: the word is yellow and blinks
  bool lit = true;   ///< the bright half of the blinking
};

/// The progress of a group playlist.
struct GroupRun {
  int line = 0;     ///< 0 before the first line
  int count = 0;    ///< lines of the list
  QString details;  ///< of the line; empty when there is nothing to tell
};

/// What a desk with a group playlist says of it; empty when there is nothing to say. `playing` and `loaded`
/// tell whether any deck is.
[[nodiscard]] QString GroupStatusLine(const QString& listName, const GroupRun& run, bool playing,
                                      bool loaded);

/// All that the desk shows of itself once a second. A value, owned by the StatusTick.
struct DeskStatus {
  PerDeck<DeckIndicator> indicators;
  PerDeck<bool> lamps;  ///< the warning lamp of a deck is red

  bool airSilent = false;   ///< the programme is silent, and nobody planned it
  bool noDevice = false;    ///< what plays goes to no device: nobody hears it
  QStringList silentDisks;  ///< disks that do not answer at the moment, by name

  bool memoryLow = false;
  int queueCount = 0;
  QString queueTime = QStringLiteral("00:00:00");
  QString windowTitle;
  QString caution = QStringLiteral("CAUTION!");

  bool queueBlinks = false;  ///< the row at queuePosition blinks
  bool queueLit = false;     ///< the bright half of that
  int queuePosition = 0;     ///< the row that the desk is at; 0 none

  QString sessionTime = QStringLiteral("00:00:00");
  ClockHands hands;
  QString date;
  QString time;

  /// Nothing plays and nothing is begun: the menu entries `Pquiz`, `mnuQuit`, `mnuSetting`, `mnuDatamanager`
  /// and `mnuAct` are enabled.
  bool idle = true;
  QString whyBusy;  ///< why it is not idle, in words for the operator; empty while it is
  ModeWord mode;
  QString pauseCaption = QStringLiteral("> ||");
};

}  // namespace kelvo
