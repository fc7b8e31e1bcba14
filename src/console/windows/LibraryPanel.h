#pragma once

#include "console/PlayQueue.h"
#include "console/TrackFilter.h"
#include "ui/Panel.h"

class QLineEdit;
class QPushButton;

namespace kelvo {

class Catalogue;
class LibraryModel;
class ListTable;

/// "TRACKS": the whole catalogue as one list, a box that narrows it as one types, and the way into the queue.
/// Owned by the console window; GUI thread.
class LibraryPanel : public Panel {
  Q_OBJECT
 public:
  LibraryPanel(const Catalogue& catalogue, const TrackFilter& filter, PlayQueue& queue,
               QWidget* parent = nullptr);

  /// The catalogue was loaded anew.
  void Reload();
  [[nodiscard]] ListTable& List() { return *list_; }
  /// The filter box takes the keyboard.
  void BeginFilter();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AddSelected();
  void ShowMatches();

  const Catalogue& catalogue_;
  const TrackFilter& filter_;
  PlayQueue& queue_;
  LibraryModel* model_;
  QLineEdit* words_;
  ListTable* list_;
  QPushButton* add_;
  QPushButton* selectAll_;
  JobList jobs_;
};

}  // namespace kelvo
