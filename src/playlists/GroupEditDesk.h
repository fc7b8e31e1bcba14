#pragma once

#include "database/TextColumns.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace kelvo {

/// A line of the group playlist in the play queue.
struct QueuedLine {
  Mref track = Mref::None;  ///< that its row has today; None when it has left the catalogue or the queue
  QString text;             ///< with this number
};

/// What the editor of group playlists needs of the desk. Owned by the editor; outlived by the desk.
class GroupEditDesk {
 public:
  virtual ~GroupEditDesk() = default;

  [[nodiscard]] virtual bool HoldsGroup() const = 0;
  /// Changes when another list comes into the queue, or its lines become others.
  [[nodiscard]] virtual int Revision() const = 0;
  [[nodiscard]] virtual QString Name() const = 0;
  /// The playlist's folder; empty: it has none.
  [[nodiscard]] virtual QString Folder() const = 0;
  [[nodiscard]] virtual std::vector<QueuedLine> Lines() const = 0;
  /// What the desk runs from the next start on.
  virtual void SetLines(const std::vector<QueuedLine>& lines) = 0;
  /// Called when what the others say may have changed.
  std::function<void()> OnChanged;

  /// Where the run is, in seconds as the elements have them; none while the list does not run.
  [[nodiscard]] virtual std::optional<double> Playhead() const = 0;

  /// The editor is through with the list.
  virtual void Left() = 0;
};

}  // namespace kelvo
