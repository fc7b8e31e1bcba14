#pragma once

#include "console/Console.h"
#include "playlists/GroupEditDesk.h"

namespace kelvo {

/// The desk as the editor of group playlists knows it. Owned by the editor; outlived by the desk.
class DeskOfGroupEdit : public QObject, public GroupEditDesk {
  Q_OBJECT
 public:
  explicit DeskOfGroupEdit(Console& desk);

  [[nodiscard]] bool HoldsGroup() const override;
  [[nodiscard]] int Revision() const override { return queue_.GroupRevision(); }
  [[nodiscard]] QString Name() const override { return queue_.Name(); }
  [[nodiscard]] QString Folder() const override { return queue_.PlaylistFolder(); }
  [[nodiscard]] std::vector<QueuedLine> Lines() const override;
  void SetLines(const std::vector<QueuedLine>& lines) override;
  [[nodiscard]] std::optional<double> Playhead() const override { return run_.Playhead(); }
  void Left() override;

 private:
  PlayQueue& queue_;
  const ConsoleState& state_;
  const GroupPlay& run_;
};

}  // namespace kelvo
