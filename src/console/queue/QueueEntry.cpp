#include "console/queue/QueueEntry.h"

#include "platform/Words.h"

namespace kelvo {

namespace {

QString CommentOf(const QueueContent& row) {
  const QString time =
      QString::number(row.statusTime.hour()) + QLatin1Char(':') + Format00(row.statusTime.minute());
  switch (row.status) {
    case RowStatus::Waiting:
      if (row.IsRequest()) return QStringLiteral("Request-") + QString::number(row.requests);
      return row.note;
    case RowStatus::Reset:
      return {};
    case RowStatus::Faded:
      return QStringLiteral("Faded- ") + time;
    case RowStatus::NowPlaying:
      return QStringLiteral("Now Playing ") + time;
    case RowStatus::Stopped:
      return QStringLiteral("Stopped ") + time;
    case RowStatus::Played:
      return QStringLiteral("Played- ") + time;
  }
  return {};
}

}  // namespace

QString QueueContent::Text(QueueColumn column) const {
  switch (column) {
    case TrackColumn:
      return title;
    case CommentColumn:
      return CommentOf(*this);
    case DateColumn:
      return date;
    case HiColumn:
      return hi;
    case BpmColumn:
      return bpm;
    case PlistDataColumn:
      return playlistData;
    case PathColumn:
      return path;
    case ReqdataColumn:
      return requestText;
    case MrefColumn:
      return QString::number(ToInt(track));
    case GenreColumn:
      return genre;
    case QueueColumnCount:
      break;
  }
  return {};
}

}  // namespace kelvo
