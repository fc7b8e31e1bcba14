#pragma once

#include "console/recorder/ProgrammeRecorder.h"
#include "platform/RowStore.h"

namespace kelvo {

/// The recordings in the recorder's folder, for its window: the latest first, and the one that grows with its
/// present length. One that a kill ended has the length of what can be read. Owned beside its window; logic
/// thread.
class RecordingList : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    ProgrammeRecorder& recorder;
  };
  explicit RecordingList(Services services);

  [[nodiscard]] const RowStore<KeptRecording>& Rows() const { return rows_; }
  [[nodiscard]] ProgrammeRecorder& Recorder() { return services_.recorder; }
  /// Lists the folder anew.
  void List();
  [[nodiscard]] bool Listing() const { return list_.Running(); }
  /// Why the folder could not be listed; empty when it could.
  [[nodiscard]] const QString& Trouble() const { return trouble_; }

  /// The window is on the screen: the list and the free space are kept true.
  void SetShown(bool shown);

 Q_SIGNALS:
  /// Listing or its trouble changed.
  void Changed();

 private:
  [[nodiscard]] Job<> RunList();
  /// The row of the recording that runs follows it.
  void ShowGrowing();

  Services services_;
  RowStore<KeptRecording> rows_;
  QString trouble_;
  bool shown_ = false;
  Timer space_;
  Job<> list_;
};

}  // namespace kelvo
