// What of the queue's commands the operator can give at the moment.

#include "console/queue/PlayQueue.h"

namespace kelvo {

QString PlayQueue::WhyNoRow() const {
  const QString held = WhyHeld ? WhyHeld() : QString();
  if (!held.isEmpty()) return held;
  if (rows_.empty()) return tr("The queue is empty");
  if (selected_ == 0) return tr("No row is selected");
  return state_.TransitionActive ? tr("A fade runs") : QString();
}

QString PlayQueue::WhyNoAdd() const {
  const QString held = WhyHeld ? WhyHeld() : QString();
  if (!held.isEmpty()) return held;
  return state_.GroupPlayOn ? tr("A group playlist runs") : QString();
}

QString PlayQueue::WhyNoMove(int step) const {
  const QString none = WhyNoRow();
  if (!none.isEmpty()) return none;
  if (Row(selected_).Locked()) return tr("The row belongs to a group playlist");
  if (selected_ + step < 1) return tr("It is the first row");
  return selected_ + step > Count() ? tr("It is the last row") : QString();
}

QString PlayQueue::WhyNoCut() const {
  const QString why = WhyNoClear();
  if (!why.isEmpty()) return why;
  return Row(selected_).Locked() ? tr("The row belongs to a group playlist") : QString();
}

QString PlayQueue::WhyNoClear() const {
  return state_.AutoPlayOn ? tr("Automatic play runs") : WhyNoRow();
}

QString PlayQueue::WhyNoEdit() const {
  return WhyNoRow();
}

QString PlayQueue::WhyNoSort() const {
  const QString held = WhyHeld ? WhyHeld() : QString();
  if (!held.isEmpty()) return held;
  if (state_.AutoPlayOn) return tr("Automatic play runs");
  return groupQueueFlag_ ? tr("A group playlist keeps its order") : QString();
}

}  // namespace kelvo
