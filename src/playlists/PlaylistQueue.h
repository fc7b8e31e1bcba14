#pragma once

#include "database/TextColumns.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace kelvo {

/// The play queue as playlists see it. Implemented by the desk; logic thread.
class PlaylistQueue {
 public:
  /// A row to be saved.
  struct Row {
    QString title;
    QString path;
    Mref track = Mref::None;
    QStringList lines = {};  ///< what is known of its group playlist: none, or one for each time it is played
  };
  /// A row to be added.
  struct Addition {
    Mref track = Mref::None;
    QString title;
    QString path;
    QString note;
    QString line = {};  ///< of a group playlist
  };
  /// A playlist that takes its place in the queue.
  struct Load {
    QString name = {};    ///< empty: the queue keeps its own
    QString folder = {};  ///< of the playlist; empty: it has none
    bool group = false;   ///< a row that is there already gets another line only
    bool clearFirst = false;
    std::vector<Addition> rows;
  };

  virtual ~PlaylistQueue() = default;

  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual QString Name() const = 0;
  [[nodiscard]] virtual bool HoldsGroup() const = 0;
  /// A group playlist runs: the rows must stay.
  [[nodiscard]] virtual bool Closed() const = 0;
  [[nodiscard]] virtual bool Holds(Mref track) const = 0;
  [[nodiscard]] virtual std::vector<Row> Rows() const = 0;

  /// What is asked before it gives up a group playlist; `cannot` as the caller spells it.
  [[nodiscard]] virtual QString GroupQuestion(const QString& cannot) const = 0;

  virtual void SetName(const QString& name) = 0;
  /// In one go, which can be undone.
  virtual void Take(const Load& load) = 0;
};

}  // namespace kelvo
