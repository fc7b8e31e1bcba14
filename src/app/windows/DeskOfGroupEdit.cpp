#include "app/windows/DeskOfGroupEdit.h"

namespace kelvo {

DeskOfGroupEdit::DeskOfGroupEdit(Console& desk)
    : queue_(desk.Queue()), state_(desk.State()), run_(desk.Group()) {
  connect(&queue_, &PlayQueue::FactsChanged, this, [this] {
    if (OnChanged) OnChanged();
  });
}

bool DeskOfGroupEdit::HoldsGroup() const {
  return queue_.GroupQueueFlag() && queue_.Count() > 0;
}

std::vector<QueuedLine> DeskOfGroupEdit::Lines() const {
  const QStringList texts = queue_.GroupLines();
  const std::vector<Mref> tracks = queue_.GroupTracks();
  std::vector<QueuedLine> lines;
  for (std::size_t line = 0; line < tracks.size(); ++line)
    lines.push_back({tracks[line], texts[static_cast<qsizetype>(line)]});
  return lines;
}

void DeskOfGroupEdit::SetLines(const std::vector<QueuedLine>& lines) {
  QStringList texts;
  std::vector<Mref> tracks;
  for (const QueuedLine& line : lines) {
    texts.append(line.text);
    tracks.push_back(line.track);
  }
  queue_.ChangeGroup(texts, tracks);
}

void DeskOfGroupEdit::Left() {
  const int last = queue_.LastQueueIndex();
  // Automatic play and a running list go on behind the selected row: it keeps its place.
  if (last >= 1 && last <= queue_.Count() && !state_.PlaysByItself()) queue_.Select(last);
}

}  // namespace kelvo
