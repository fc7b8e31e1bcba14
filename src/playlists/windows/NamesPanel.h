#pragma once

#include "playlists/PlayEditor.h"
#include "ui/Panel.h"

#include <array>

class QComboBox;
class QListWidget;
class QPushButton;
class QStringListModel;

namespace kelvo {

/// The genres, the artists or the albums of the track, and what can be done to them. Owned by the editor's
/// window; GUI thread.
class NamesPanel : public Panel {
  Q_OBJECT
 public:
  /// `set` is the place of the names in the edit.
  NamesPanel(PlayEditor& editor, std::size_t set, QWidget* parent);

  void Show();
  /// The keyboard goes to its list.
  void TakeKeys();
  /// The names that can be chosen are read anew.
  void ShowKnown();

 private:
  void Add();
  void Move(int step);

  PlayEditor& editor_;
  std::size_t set_;
  QStringListModel* known_;
  QListWidget* list_;
  QComboBox* name_;
  QPushButton* add_;
  QPushButton* remove_;
  QPushButton* up_;
  QPushButton* down_;
};

}  // namespace kelvo
