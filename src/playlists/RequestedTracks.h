#pragma once

#include "database/LinkResolver.h"
#include "platform/RowStore.h"
#include "playlists/PlaylistServices.h"

#include <QObject>

namespace kelvo {

/// A track that was asked for, and how often.
struct RequestedTrack {
  QString file;  ///< its link's name in the folder
  QString name;
  QString count;
  QString path;
  Mref track = Mref::None;
};

/// The list of the most requested tracks. Owned by the PlaylistManager; logic thread.
class RequestedTracks : public QObject {
  Q_OBJECT

 public:
  explicit RequestedTracks(const PlaylistServices& services);

  [[nodiscard]] const RowStore<RequestedTrack>& Rows() const { return rows_; }
  [[nodiscard]] QString Folder() const;
  /// "Compiling Request List (40%)"; empty while it is not compiled.
  [[nodiscard]] const QString& Words() const { return words_; }

  /// Reads the folder; tells the operator when it holds nothing.
  [[nodiscard]] Job<> Compile();
  /// The rows go into the queue, unless they are there.
  [[nodiscard]] Job<> AddToQueue(std::vector<int> rows);
  /// Asks, deletes the links of the rows, and compiles anew.
  [[nodiscard]] Job<> Delete(std::vector<int> rows);

 Q_SIGNALS:
  void Changed();

 private:
  void Say(const QString& words);

  PlaylistServices services_;
  RowStore<RequestedTrack> rows_;
  QString words_;
};

}  // namespace kelvo
