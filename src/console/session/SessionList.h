#pragma once

#include "console/session/SessionRows.h"

#include <functional>

namespace kelvo {

/// What the list asks of the desk at the moment of an event.
struct SessionFacts {
  double sessionClock = 0;  ///< seconds since the session began
  int fadeSpeed = 25;       ///< position of the fade speed slider
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

  [[nodiscard]] SessionRows& Rows() { return rows_; }
  [[nodiscard]] const std::vector<SessionEvent>& Events() const { return rows_.Events(); }
  /// "Listed Element 3 Of 200", or that the list has started over.
  [[nodiscard]] const QString& Label() const { return label_; }

  /// Every event, also the one that starts the list over.
  std::function<void(const SessionEvent&)> OnRecorded;

 Q_SIGNALS:
  void Changed();

 private:
  const Catalogue& catalogue_;
  std::function<SessionFacts(Deck)> facts_;
  SessionRows rows_;
  QString label_;
};

}  // namespace kelvo
