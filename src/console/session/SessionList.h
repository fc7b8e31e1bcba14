#pragma once

#include "console/session/SessionRecorder.h"

#include <QObject>
#include <QString>

#include <functional>
#include <vector>

namespace kelvo {

class Catalogue;

/// A row of the session list.
struct SessionEvent {
  QString Description;
  double Time = 0;  ///< the session clock, seconds
  Mref Track = Mref::None;
  QString Path;  ///< of the track's file
  Deck OnDeck = Deck::One;
  TransitionKind FadeType = TransitionKind::None;
  int Speed = -1;  ///< of a fade, at least 1; else -1
  SessionCode Code = SessionCode::Loaded;
  double Pos = -1;
  int Length = 0;  ///< whole seconds of the deck's track
};

/// What the list asks of the desk at the moment of an event.
struct SessionFacts {
  double sessionClock = 0;  ///< seconds since the session began
  int fadeSpeed = 25;  ///< position of the fade speed slider
  double trackSeconds = 0;
};

/// The live table of what was done to the decks, with exact times. Two hundred rows are the most: the next
/// event starts the list over. Owned by the Console; logic thread.
class SessionList : public QObject, public SessionRecorder {
  Q_OBJECT

 public:
  SessionList(const Catalogue& catalogue, std::function<SessionFacts(Deck)> facts);

  void RecordSessionEvent(const SessionEntry& entry) override;
  void Clear();

  [[nodiscard]] const std::vector<SessionEvent>& Events() const { return events_; }
  /// "Listed Element 3 Of 200", or that the list has started over.
  [[nodiscard]] const QString& Label() const { return label_; }

 Q_SIGNALS:
  void Changed();

 private:
  void FollowCatalogue();

  const Catalogue& catalogue_;
  std::function<SessionFacts(Deck)> facts_;
  std::vector<SessionEvent> events_;
  QString label_;
};

}  // namespace kelvo
