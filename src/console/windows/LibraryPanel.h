#pragma once

#include "console/browser/LibraryBrowser.h"
#include "ui/Panel.h"

#include <array>

class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSplitter;

namespace kelvo {

class LibraryModel;
class ListTable;
class ListingPanel;
class NameColumn;
class TrackInfoPanel;

/// "LIBRARY": the three lists of names, the tracks that they choose, a box that narrows them as one types,
/// and the way into the queue. Owned by the console window; GUI thread.
class LibraryPanel : public Panel {
  Q_OBJECT
 public:
  LibraryPanel(LibraryBrowser& browser, const Catalogue& catalogue, EventLoop& loop,
               QWidget* parent = nullptr);

  [[nodiscard]] ListTable& Names(Stage stage);
  /// The filter box takes the keyboard.
  void BeginFilter();
  /// The list of tracks does, with a row selected.
  void GoToTracks();
  [[nodiscard]] QSize minimumSizeHint() const override;
  /// The track that the cursor of the list is on, or the first one while words are typed; none when there is
  /// none.
  [[nodiscard]] Mref CurrentTrack() const;
  /// Closes the track's details, stops a listing or empties the filter box, the first of these that there is.
  void Escape();
  /// What works may be another by now: a listing, a question or a fade began or ended.
  void ShowCommands();

 Q_SIGNALS:
  void SearchWanted();
  /// "Add As Request" for these tracks.
  void RequestWanted(const std::vector<kelvo::Mref>& tracks);
  void ImportWanted();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// The least width of the commands below the tracks, with the words of the request or with its sign alone.
  [[nodiscard]] int CommandsWidth(bool words) const;
  [[nodiscard]] QWidget* NamesPart();
  [[nodiscard]] QWidget* TracksPart();
  void JoinParts();
  void ShowFacts();
  /// The way in of an empty library.
  void ShowImport();
  void ShowListing();
  void AddSelected();
  /// From the line of words: the first track that has them goes to the queue, once they were looked up.
  void AddFirst();
  void AddFirstFound();
  void WantRequest();
  void Deselect(const std::vector<Mref>& tracks);
  void OpenInfo(const QPoint& spot);

  LibraryBrowser& browser_;
  const Catalogue& catalogue_;
  EventLoop& loop_;
  LibraryModel* model_;
  std::array<NameColumn*, kStages.size()> names_;
  QLabel* summary_;
  QLabel* count_;
  QLineEdit* words_;
  ListTable* list_;
  QPushButton* search_;
  QPushButton* allArtists_;
  QPushButton* allAlbums_;
  QPushButton* add_;
  QPushButton* request_;
  QHBoxLayout* commands_ = nullptr;
  QPushButton* selectAll_;
  QPushButton* import_;
  ListingPanel* listing_;
  TrackInfoPanel* info_;
  QPoint infoSpot_;
  Timer listingLasts_;
  bool addsFirst_ = false;  ///< of what is being looked up
};

}  // namespace kelvo
