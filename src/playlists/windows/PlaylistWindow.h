#pragma once

#include "playlists/PlaylistManager.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

#include <QPointer>

class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;

namespace kelvo {

class JobStrip;
class RequestsPanel;

/// "Playlist Manager": categories, their playlists, the entries of one, and what can be done to each. What it
/// does goes on when it is closed. GUI thread.
class PlaylistWindow : public ToolWindow {
  Q_OBJECT
 public:
  PlaylistWindow(EventLoop& loop, PlaylistManager& manager);

  /// The operator wants a list to be generated.
  std::function<void()> OnGenerate;

  void TakeKeys() override;

 protected:
  void Refresh() override;
  void Enter() override;
  void Leave() override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void BuildCommands();
  void BuildCategoryCommands();
  void BuildPlaylistCommands();
  [[nodiscard]] QWidget* Shelves();
  void BuildLayout();
  void ShowRequests(bool shown);
  void RepairOrStop();
  void Show();
  /// Lets the list show what is chosen on the shelf.
  static void ShowChosen(ListPanel& list, const RowStore<ShelfName>& names, const QString& chosen);
  [[nodiscard]] QString EntriesHint() const;

  EventLoop& loop_;
  PlaylistManager& manager_;
  RowModel<ShelfName> categoryModel_;
  RowModel<ShelfName> playlistModel_;
  RowModel<ShelfEntry> entryModel_;
  ListPanel categories_;
  ListPanel playlists_;
  ListPanel entries_;
  QLineEdit* name_;
  QLabel* outlook_;
  QStackedWidget* pages_;
  RequestsPanel* requests_;
  JobStrip* progress_;
  QPushButton* save_ = nullptr;
  QPushButton* load_ = nullptr;
  QPushButton* newCategory_ = nullptr;
  QPushButton* renameCategory_ = nullptr;
  QPushButton* deleteCategory_ = nullptr;
  QPushButton* renamePlaylist_ = nullptr;
  QPushButton* deletePlaylist_ = nullptr;
  QPushButton* deleteEntry_ = nullptr;
  QPushButton* showRequests_ = nullptr;
  QPushButton* repair_ = nullptr;
  QPushButton* generate_ = nullptr;
  QPushButton* import_ = nullptr;
  QPushButton* export_ = nullptr;
  QPushButton* exit_ = nullptr;
  QPointer<QWidget> focus_;  ///< where the focus was when the work under way began
  Timer clock_;
};

}  // namespace kelvo
