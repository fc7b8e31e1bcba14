#pragma once

#include "console/queue/PlayQueue.h"
#include "platform/Job.h"
#include "ui/Panel.h"

#include <functional>
#include <optional>

class QBoxLayout;
class QLineEdit;
class QPushButton;

namespace kelvo {

class ListTable;
class QueueModel;
class QueueTimes;

/// "PLAY QUEUE": the list, its name, count and running length, and the commands beside it. Owned by the
/// console window; GUI thread.
class QueuePanel : public Panel {
  Q_OBJECT
 public:
  QueuePanel(PlayQueue& queue, const QueueTimes& times, QWidget* parent = nullptr);

  /// A beat of the clock: the row that is lit (see QueueModel), and the times of all.
  void Beat(int litRow);
  [[nodiscard]] ListTable& List() { return *list_; }
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// A window of the program, by its id.
  void WindowWanted(const QString& id);

 public Q_SLOTS:
  /// What of the queue's commands works may be another by now: automatic play or a fade began or ended.
  void ShowCommands();
  /// Automatic play is at this row; called at its beat. Where the operator looked elsewhere the list goes
  /// back to it after a while, but not under the mouse.
  void ShowPosition(int index);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ShowFacts();
  void ShowSelection();
  void ShowColumns();
  void ShowRow(int index);
  QPushButton* AddCommand(const QString& name, const QString& tooltip, const QString& fixedName = {});

  PlayQueue& queue_;
  QueueModel* model_;
  QBoxLayout* naming_ = nullptr;
  QBoxLayout* commands_ = nullptr;
  QBoxLayout* rowCommands_ = nullptr;
  QLineEdit* name_;
  ListTable* list_;
  QPushButton* up_;
  QPushButton* down_;
  QPushButton* cut_;
  QPushButton* clear_;
  QPushButton* edit_;
  QPushButton* undo_;
  QPushButton* load_;
  QPushButton* save_;
  QPushButton* timings_;
  JobList jobs_;
  bool showingSelection_ = false;
  std::optional<bool> timingsShown_;
  int beatsToPosition_ = 0;
};

}  // namespace kelvo
