#pragma once

#include "datamanager/DataManager.h"

#include <QWidget>

#include <array>

class QListWidget;

namespace kelvo {

class Panel;
class ToolButtons;

/// The genres, artists and albums of the selected track, each with its "Delete" where that was handed in.
/// Owned by the window; GUI thread.
class TrackNamesPanel : public QWidget {
  Q_OBJECT
 public:
  TrackNamesPanel(DataManager& manager, ToolButtons& tools, QWidget* parent);

  void Show();

 private:
  struct Part {
    Panel* panel;
    QListWidget* list;
  };
  DataManager& manager_;
  std::array<Part, ReferenceChoice::kTrackSets.size()> parts_{};
};

}  // namespace kelvo
