#pragma once

#include "console/session/SessionRecorder.h"
#include "platform/RowStore.h"

#include <QObject>
#include <QString>

namespace kelvo {

class Catalogue;

/// A row of a session: what was done to a deck. A value.
struct SessionEvent {
  QString Description;
  double Time = 0;  ///< seconds, by the session clock; of an earlier session since the day's midnight
  Mref Track = Mref::None;
  QString Path;  ///< of the track's file
  Deck OnDeck = Deck::One;
  TransitionKind FadeType = TransitionKind::None;
  QString Arguments = {};  ///< what a playlist is to keep of it; empty until one is made
  int Speed = -1;          ///< of a fade, at least 1; else -1
  SessionCode Code = SessionCode::Loaded;
  double Pos = -1;
  int Length = 0;  ///< whole seconds of the deck's track

  // Their words in a list.
  [[nodiscard]] QString TimeWords() const;
  [[nodiscard]] QString TrackWords() const;
  [[nodiscard]] QString DeckWords() const;
  [[nodiscard]] QString FadeWords() const;
  [[nodiscard]] QString FadeNumber() const;
  [[nodiscard]] QString SpeedWords() const;
  [[nodiscard]] QString CodeWords() const;
  [[nodiscard]] QString PosWords() const;
  [[nodiscard]] QString LengthWords() const;
};

/// The words for what happened; `track` names the track of a load.
[[nodiscard]] QString SessionDescription(SessionCode code, const QString& track);

/// Whether an end of this kind moves the event right before it to its own time: the start that it belongs to
/// is missing there.
[[nodiscard]] bool PullsForward(SessionCode end, SessionCode before);

/// Rows of a session that stay true to the catalogue: they follow their tracks by the paths of the files.
/// Owned by who fills them; logic thread.
class SessionRows : public QObject {
  Q_OBJECT
 public:
  explicit SessionRows(const Catalogue& catalogue);

  [[nodiscard]] const RowStore<SessionEvent>& Rows() const { return rows_; }
  [[nodiscard]] const std::vector<SessionEvent>& Events() const { return rows_.All(); }
  void Append(SessionEvent event) { rows_.Append({std::move(event)}); }
  void Replace(std::vector<SessionEvent> events) { rows_.Replace(std::move(events)); }
  void Clear() { rows_.TakeAll(); }
  void SetTime(int row, double seconds);
  void SetArguments(int row, const QString& text);
  /// Looks for the tracks of all rows anew.
  void FindTracks();

 private:
  template <typename Change>
  void AlterAll(Change change);

  const Catalogue& catalogue_;
  RowStore<SessionEvent> rows_;
};

}  // namespace kelvo
