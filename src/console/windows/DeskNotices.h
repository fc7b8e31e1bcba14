#pragma once

#include <QObject>

namespace kelvo {

class Console;
class NoticeBar;

/// Puts into the console's line of notices what the desk tells of its sound: the device that is lost, the
/// reserve that has grown or is small again, and what the recorder warns of. Owned by the line; GUI thread.
class DeskNotices : public QObject {
  Q_OBJECT
 public:
  DeskNotices(Console& console, NoticeBar& bar);

 private:
  void ShowSound();
  void ShowRecorder();

  Console& console_;
  NoticeBar& bar_;
};

}  // namespace kelvo
