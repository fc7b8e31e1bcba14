#include "console/windows/QueueModel.h"

#include "console/QueueTimes.h"
#include "console/windows/TrackMime.h"

#include <QColor>
#include <QMimeData>

namespace kelvo {
namespace {

QVariant ColourOf(const QueueEntry& row) {
  const QColor white(0xFF, 0xFF, 0xFF);
  switch (row.status) {
    case RowStatus::Waiting:
      if (row.IsRequest()) return QColor(0xFF, 0xFF, 0x00);
      return row.soundBite ? QVariant(white) : QVariant();
    case RowStatus::Reset:
      return QColor(0x00, 0xFF, 0xFF);
    case RowStatus::NowPlaying:
      return QColor(0xFF, 0x6A, 0xFF);
    case RowStatus::Faded:
      return white;
    case RowStatus::Stopped:
    case RowStatus::Played:
      return QColor(0x3C, 0xE6, 0x3C);
  }
  return {};
}

}  // namespace

QueueModel::QueueModel(PlayQueue& queue, const QueueTimes* times, QObject* parent)
    : QAbstractTableModel(parent), queue_(queue), times_(times) {
  connect(&queue_, &PlayQueue::RowsChanged, this, [this] {
    beginResetModel();
    endResetModel();
  });
  connect(&queue_, &PlayQueue::RowChanged, this,
          [this](int row) { Q_EMIT dataChanged(index(row - 1, 0), index(row - 1, kColumns - 1)); });
  connect(&queue_, &PlayQueue::FactsChanged, this,
          [this] { Q_EMIT headerDataChanged(Qt::Horizontal, 0, kColumns - 1); });
}

void QueueModel::SetLitRow(int row) {
  if (row == litRow_) return;
  const int before = std::exchange(litRow_, row);
  for (const int changed : {before, row}) {
    if (changed < 1 || changed > queue_.Count()) continue;
    Q_EMIT dataChanged(index(changed - 1, 0), index(changed - 1, kColumns - 1), {Qt::BackgroundRole});
  }
}

void QueueModel::TellTimes() {
  if (times_ == nullptr || queue_.Count() == 0) return;
  Q_EMIT dataChanged(index(0, kPlaysIn), index(queue_.Count() - 1, kLastPlayed), {Qt::DisplayRole});
}

QString QueueModel::Text(int row, int column) const {
  if (column < QueueColumnCount) return queue_.Row(row).Text(static_cast<QueueColumn>(column));
  if (times_ == nullptr) return {};
  return column == kPlaysIn ? times_->PlaysIn(row) : times_->LastPlayed(row);
}

QString QueueModel::Tooltip(int row) const {
  const QueueEntry& entry = queue_.Row(row);
  QStringList lines{entry.title};
  const auto add = [&lines](const QString& text, const QString& words) {
    if (!text.isEmpty()) lines.append(words.arg(text));
  };
  add(entry.Text(CommentColumn), QStringLiteral("%1"));
  add(Text(row, kPlaysIn), tr("Plays in about %1"));
  add(Text(row, kLastPlayed), tr("Last played in this session at %1"));
  add(entry.requestText, QStringLiteral("\n%1"));
  return lines.join(QLatin1Char('\n'));
}

int QueueModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : queue_.Count();
}
int QueueModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant QueueModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= queue_.Count()) return {};
  const QueueEntry& row = queue_.Row(index.row() + 1);
  switch (role) {
    case Qt::DisplayRole:
      return Text(index.row() + 1, index.column());
    case Qt::ToolTipRole:
      return Tooltip(index.row() + 1);
    case Qt::ForegroundRole:
      return ColourOf(row);
    case Qt::BackgroundRole:
      if (index.row() + 1 == litRow_) return QColor(0x1E, 0x5A, 0x46);
      return {};
    default:
      return {};
  }
}

QVariant QueueModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  // The tooltip tells a heading that is cut whole, and why a click on it does nothing.
  if (role == Qt::ToolTipRole)
    return QStringList{Heading(section), queue_.WhyNoSort()}.join(QLatin1Char('\n')).trimmed();
  return role == Qt::DisplayRole ? Heading(section) : QVariant();
}

QString QueueModel::Heading(int section) const {
  switch (section) {
    case TrackColumn:
      return queue_.TrackHead();
    case CommentColumn:
      return QStringLiteral("Comment");
    case DateColumn:
      return QStringLiteral("Date");
    case HiColumn:
      return QStringLiteral("Hi");
    case BpmColumn:
      return QStringLiteral("Bpm");
    case PlistDataColumn:
      return QStringLiteral("Plist Data");
    case PathColumn:
      return QStringLiteral("path");
    case ReqdataColumn:
      return QStringLiteral("Reqdata");
    case MrefColumn:
      return QStringLiteral("Mref");
    case GenreColumn:
      return queue_.GenreHead();
    case kPlaysIn:
      return tr("Plays In");
    case kLastPlayed:
      return tr("Last Played");
    default:
      return {};
  }
}

Qt::ItemFlags QueueModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags base = QAbstractTableModel::flags(index);
  return index.isValid() ? base | Qt::ItemIsDragEnabled : base | Qt::ItemIsDropEnabled;
}

QStringList QueueModel::mimeTypes() const {
  return {kQueueRowMime, kTracksMime};
}

QMimeData* QueueModel::mimeData(const QModelIndexList& indexes) const {
  if (indexes.isEmpty()) return nullptr;
  auto data = std::make_unique<QMimeData>();
  data->setData(kQueueRowMime, QByteArray::number(indexes.first().row() + 1));
  return data.release();
}

bool QueueModel::canDropMimeData(const QMimeData* data, Qt::DropAction /*action*/, int /*row*/,
                                 int /*column*/, const QModelIndex& /*parent*/) const {
  return data->hasFormat(kQueueRowMime) || data->hasFormat(kTracksMime);
}

bool QueueModel::dropMimeData(const QMimeData* data, Qt::DropAction /*action*/, int row, int /*column*/,
                              const QModelIndex& parent) {
  if (data->hasFormat(kTracksMime)) {
    Q_EMIT TracksDropped(TracksFromMime(data->data(kTracksMime)));
    return true;
  }
  if (!data->hasFormat(kQueueRowMime)) return false;
  const int from = data->data(kQueueRowMime).toInt();
  // A drop between two rows names the row below the gap; taking the row out from above closes one place.
  const int gap = row >= 0 ? row + 1 : parent.isValid() ? parent.row() + 1 : queue_.Count() + 1;
  Q_EMIT RowMoved(from, gap > from ? gap - 1 : gap);
  // The move is done by the queue itself: the view must not take the row away.
  return false;
}

}  // namespace kelvo
