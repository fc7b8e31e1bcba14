#pragma once

#include "database/TextColumns.h"
#include "platform/EventLoop.h"

#include <QObject>
#include <QString>

#include <optional>
#include <vector>

namespace kelvo {

class Catalogue;

/// When each track was started last since the program began, by hand or by the desk itself. It follows the
/// catalogue. Owned by the Console; logic thread.
class PlayedTracks : public QObject {
  Q_OBJECT

 public:
  PlayedTracks(EventLoop& loop, const Catalogue& catalogue);

  /// A deck was started with this track. None counts nothing.
  void Note(Mref track);
  /// Those that were started within this time, up to now.
  [[nodiscard]] std::vector<Mref> Within(Nanoseconds time) const;
  /// When the track was started last; none when it was not.
  [[nodiscard]] std::optional<QDateTime> LastStart(Mref track) const;

 private:
  struct Start {
    Mref track;
    QString path;
    Nanoseconds at;
  };
  EventLoop& loop_;
  const Catalogue& catalogue_;
  std::vector<Start> starts_;
};

}  // namespace kelvo
