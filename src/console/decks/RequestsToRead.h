#pragma once

#include "console/decks/DeckEngine.h"
#include "console/queue/PlayQueue.h"

#include <QObject>

#include <map>
#include <vector>

namespace kelvo {

/// "Requests To Read": the words of the requests whose track is on air. The queue drops them when a track is
/// started, so they are kept here from the moment at which a row has them until its track is through or the
/// operator has read them; also those of a request that came when the track was in a deck already. Owned by
/// the Console; logic thread.
class RequestsToRead : public QObject {
  Q_OBJECT

 public:
  struct Request {
    QString title;
    QString words;  ///< several lines
    bool operator==(const Request&) const = default;
  };
  RequestsToRead(const PlayQueue& queue, const DeckEngine& decks);

  /// What is to be read now, a request for each deck that plays one.
  [[nodiscard]] const std::vector<Request>& OnAir() const { return onAir_; }
  /// They were read: they are shown no more.
  void Done();

 Q_SIGNALS:
  void Changed();

 private:
  void TakeRows();
  void TakeRow(int index);
  void Work();
  /// By its file too: the queue marks the first row of a track, whichever of its rows was loaded.
  struct Known {
    QString path;
    QString started;  ///< words that the queue has dropped, for the track was started
    QString waiting;  ///< words that the row has
    [[nodiscard]] QString Words() const;
  };
  [[nodiscard]] bool InDeck(Deck deck, DeckState state, RowId row, const Known& known) const;
  [[nodiscard]] bool Plays(RowId row, const Known& known) const;

  const PlayQueue& queue_;
  const DeckEngine& decks_;
  std::map<RowId, Known> known_;
  std::vector<Request> onAir_;
};

}  // namespace kelvo
