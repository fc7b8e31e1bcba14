#pragma once

#include "console/browser/LibraryBrowser.h"
#include "ui/Panel.h"

#include <array>

class QLabel;
class QListWidget;

namespace kelvo {

/// Title, genres, start and end of a track, over the library while one asks for them. Owned by the library's
/// panel; GUI thread.
class TrackInfoPanel : public Panel {
  Q_OBJECT
 public:
  TrackInfoPanel(LibraryBrowser& browser, QWidget* parent);

  /// Shows what the browser tells, beside `spot` of the parent, or hides.
  void ShowAt(const QPoint& spot);
  /// The list of genres takes the keyboard.
  void TakeKeys();

 private:
  LibraryBrowser& browser_;
  std::array<QLabel*, 3> lines_;
  QListWidget* genres_;
};

}  // namespace kelvo
