#pragma once

#include "database/TextColumns.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace kelvo {

/// Tracks on their way from the library to the queue, and queue rows on their way to another place, as drags
/// carry them.
inline const QString kTracksMime = QStringLiteral("application/x-kelvo-tracks");
inline const QString kQueueRowMime = QStringLiteral("application/x-kelvo-queue-row");

/// A row of the list of sound bites on its way to a button of the jingles bank.
inline const QString kSoundBiteMime = QStringLiteral("application/x-kelvo-sound-bite");

inline QByteArray TracksToMime(const std::vector<Mref>& tracks) {
  QByteArrayList numbers;
  for (const Mref track : tracks) numbers.append(QByteArray::number(ToInt(track)));
  return numbers.join(' ');
}

inline std::vector<Mref> TracksFromMime(const QByteArray& bytes) {
  std::vector<Mref> tracks;
  const QByteArrayList numbers = bytes.split(' ');
  for (const QByteArray& number : numbers) tracks.push_back(ToMref(number.toInt()));
  return tracks;
}

}  // namespace kelvo
