#pragma once

#include "playlists/RequestedTracks.h"
#include "ui/ListPanel.h"

#include <functional>

class QPushButton;

namespace kelvo {

class PlaylistManager;

/// The most requested tracks, shown in the place of the playlists. Owned by the PlaylistWindow; GUI thread.
class RequestsPanel : public QWidget {
  Q_OBJECT
 public:
  RequestsPanel(PlaylistManager& manager, QWidget* parent);

  void TakeKeys();
  void Show();

 Q_SIGNALS:
  void Closed();

 private:
  PlaylistManager& manager_;
  RowModel<RequestedTrack> model_;
  ListPanel tracks_;
  QPushButton* selectAll_;
  QPushButton* add_;
  QPushButton* delete_;
  QPushButton* close_;
};

}  // namespace kelvo
