// How the audience's requests come into the queue.

#include "console/queue/PlayQueue.h"
#include "console/queue/RequestText.h"
#include "database/KeptTracks.h"

namespace kelvo {
namespace {

/// A line of its own between the words of two requests for one track.
const QString kNextRequest = QStringLiteral("\r\n--------------------------\r\n");

}  // namespace

QString JoinRequests(const QString& words, const QString& more) {
  if (words.isEmpty() || more.isEmpty()) return words + more;
  return words + kNextRequest + more;
}

Job<PlayQueue::Requested> PlayQueue::AddRequest(Mref track, QString words) {
  if (state_.GroupPlayOn || !catalogue_.IsTrack(track)) co_return Requested();
  const KeptTracks kept(catalogue_, {track});
  if (Count() > 0 && groupQueueFlag_) {
    Prompt question;
    question.text =
        QStringLiteral("You Can't Add Std Tracks To A Group Playlist !\r\nClear Group Playlist ") + name_ +
        QStringLiteral(" ?");
    question.buttons = Buttons::YesNo;
    question.icon = PromptIcon::Question;
    const Answer answer = co_await prompter_.Ask(question);
    // The desk went on while the question was open.
    if (answer != Answer::Yes || state_.GroupPlayOn || kept[0] == Mref::None) co_return Requested();
    Remember();
    Empty();
    NoteOutcome();
    Q_EMIT SelectionChanged();
  }
  Requested requested;
  int index = FindTrack(kept[0]);
  requested.added = index == 0;
  if (requested.added) index = InsertRow(EntryOf(kept[0]), SecondsOf(kept[0]));
  QueueEntry& row = rows_[static_cast<std::size_t>(index - 1)];
  // A row that was played is one like any other by now: it waits again, for this request.
  const bool stacked = row.status == RowStatus::Waiting && row.IsRequest();
  // A start of automatic play makes requests rows like all others, but their words wait to be read.
  row.requestText = JoinRequests(row.requestText, words);
  row.requests = stacked ? row.requests + 1 : 1;
  row.status = RowStatus::Waiting;
  requested.row = row.id;
  requested.count = row.requests;
  if (requested.added) {
    TellRowsChanged();
  } else {
    Q_EMIT RowChanged(index);
  }
  Q_EMIT RowShown(index);
  co_return requested;
}

}  // namespace kelvo
