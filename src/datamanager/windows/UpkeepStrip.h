#pragma once

#include <QWidget>

class QPushButton;

namespace kelvo {

class EventLoop;
class JobStrip;
class LibraryChanges;

/// What a change of the library is at, with a stop, and the undo of the last one. GUI thread.
class UpkeepStrip : public QWidget {
  Q_OBJECT
 public:
  UpkeepStrip(EventLoop& loop, LibraryChanges& changes, QWidget* parent);

 private:
  void Show();

  LibraryChanges& changes_;
  JobStrip* strip_;
  QPushButton* undo_;
};

}  // namespace kelvo
