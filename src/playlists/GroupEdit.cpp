#include "playlists/GroupEdit.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <tuple>

namespace kelvo {
namespace {

constexpr int kMostSpeed = 50;
constexpr double kStepSeconds = 0.0034;
/// No step comes later: an element's time has room for it.
constexpr int kLatest = 9'999 * 3600;

constexpr int StepsOf(TransitionKind kind) {
  return kind == TransitionKind::PartFade ? 55 : 111;
}

}  // namespace

int FadeSeconds(int position, TransitionKind kind) {
  return static_cast<int>(position * kStepSeconds * StepsOf(kind));
}

int SpeedOfFade(int seconds, TransitionKind kind) {
  int best = kMostSpeed;
  for (int speed = kMostSpeed; speed >= 1; --speed) {
    const auto distance = [&](int each) { return std::abs(FadeSeconds(kMostSpeed - each, kind) - seconds); };
    if (distance(speed) < distance(best)) best = speed;
  }
  return best;
}

GroupEdit::GroupEdit(const QStringList& lines) {
  for (int place = 0; place < lines.size(); ++place) {
    if (const auto elements = ParseGroupLine(lines[place])) {
      for (const GroupElement& element : *elements) rows_.push_back({element, place});
    } else {
      strange_.push_back({place, lines[place]});
    }
  }
  const auto order = [](const GroupRow& row) {
    const GroupElement& element = row.element;
    return std::tuple(element.code == SessionCode::Repeat, element.seconds, ToInt(element.track),
                      element.index);
  };
  std::stable_sort(rows_.begin(), rows_.end(), [&order](const GroupRow& left, const GroupRow& right) {
    return order(left) < order(right);
  });
}

std::vector<GroupEdit::Line> GroupEdit::Lines() const {
  std::vector<Line> lines;
  std::vector<std::vector<GroupElement>> elements;
  for (const GroupRow& row : rows_) {
    auto line =
        std::find_if(lines.begin(), lines.end(), [&row](const Line& each) { return each.place == row.line; });
    if (line == lines.end()) {
      elements.emplace_back();
      line = lines.insert(lines.end(), {row.line, {}});
    }
    elements[static_cast<std::size_t>(line - lines.begin())].push_back(row.element);
  }
  for (std::size_t line = 0; line < lines.size(); ++line) {
    // Its load is first, whatever the times of a line say that was not made here.
    const auto load = std::find_if(elements[line].begin(), elements[line].end(),
                                   [](const GroupElement& each) { return each.code == SessionCode::Loaded; });
    std::rotate(elements[line].begin(), load, load + 1);
    lines[line].text = PrintGroupLine(elements[line]);
  }
  for (const Strange& each : strange_) lines.push_back({each.place, each.text});
  return lines;
}

bool GroupEdit::Repeats() const {
  return !rows_.empty() && rows_.back().element.code == SessionCode::Repeat;
}

void GroupEdit::SetRepeats(bool repeats) {
  if (repeats == Repeats() || rows_.empty()) return;
  if (repeats) {
    GroupRow mark = rows_.back();
    mark.element.index = 0;
    mark.element.code = SessionCode::Repeat;
    rows_.push_back(mark);
  } else {
    std::erase_if(rows_, [](const GroupRow& row) { return row.element.code == SessionCode::Repeat; });
  }
}

void GroupEdit::Renumber(const std::function<Mref(int line, Mref before)>& track) {
  for (GroupRow& row : rows_) row.element.track = track(row.line, row.element.track);
}

GroupEdit::Kind GroupEdit::KindOf(int row) const {
  if (row < 1 || row >= Count()) return Kind::Fixed;
  switch (At(row).code) {
    case SessionCode::DubStarted:
    case SessionCode::DubEnded:
      return Kind::Dub;
    case SessionCode::FadeStarted:
      return Kind::FadeStart;
    case SessionCode::FadeEnded:
      return FadeStartOf(row) ? Kind::FadeEnd : Kind::Time;
    case SessionCode::Repeat:
      return Kind::Fixed;
    default:
      return Kind::Time;
  }
}

std::optional<int> GroupEdit::FadeStartOf(int row) const {
  for (int above = row - 1; above >= 0; --above) {
    if (At(above).deck != At(row).deck) continue;
    if (At(above).code == SessionCode::FadeStarted) return above;
    if (At(above).code == SessionCode::FadeEnded) break;
  }
  return std::nullopt;
}

std::optional<int> GroupEdit::FadeEndOf(int row) const {
  for (int below = row + 1; below < Count(); ++below) {
    if (At(below).deck != At(row).deck) continue;
    if (At(below).code == SessionCode::FadeEnded) return below;
    if (At(below).code == SessionCode::FadeStarted) break;
  }
  return std::nullopt;
}

StepEdit GroupEdit::Begin(int row) const {
  const Kind kind = KindOf(row);
  const GroupElement& fade = kind == Kind::FadeEnd ? At(*FadeStartOf(row)) : At(row);
  StepEdit edit{.row = row, .seconds = At(row).seconds, .fade = fade.fade, .speed = fade.speed};
  if (kind == Kind::Dub) edit.fade = TransitionKind::Dub;
  edit.endSeconds = edit.seconds;
  if (kind == Kind::FadeStart || kind == Kind::FadeEnd)
    edit.endSeconds = fade.seconds + FadeSeconds(kMostSpeed - std::max(fade.speed, 1), fade.fade);
  return edit;
}

void GroupEdit::Follow(StepEdit& edit) const {
  const Kind kind = KindOf(edit.row);
  if (kind == Kind::FadeEnd) {
    const int start = At(*FadeStartOf(edit.row)).seconds;
    if (!edit.byHand) edit.speed = SpeedOfFade(edit.seconds - start, edit.fade);
    edit.endSeconds = start + FadeSeconds(kMostSpeed - std::max(edit.speed, 1), edit.fade);
  } else if (kind == Kind::FadeStart) {
    edit.endSeconds = edit.seconds + FadeSeconds(kMostSpeed - std::max(edit.speed, 1), edit.fade);
  } else {
    edit.endSeconds = edit.seconds;
  }
}

void GroupEdit::SetSeconds(StepEdit& edit, int seconds) const {
  const Kind kind = KindOf(edit.row);
  const int now = At(edit.row).seconds;
  if (kind == Kind::Fixed || seconds == edit.seconds) return;
  int lowest = At(edit.row - 1).seconds;
  if (kind == Kind::FadeEnd) lowest = std::max(lowest, At(*FadeStartOf(edit.row)).seconds + 1);
  const int highest = std::max(now, kLatest - (rows_.back().element.seconds - now));
  edit.seconds = std::clamp(seconds, std::min(lowest, now), highest);
  Follow(edit);
}

void GroupEdit::SetEnd(StepEdit& edit, int seconds) const {
  if (KindOf(edit.row) != Kind::FadeStart || edit.byHand) return;
  const int longest = FadeSeconds(kMostSpeed - 1, edit.fade);
  const int span = std::clamp(seconds - edit.seconds, 1, longest);
  edit.speed = SpeedOfFade(span, edit.fade);
  edit.endSeconds = edit.seconds + span;
}

void GroupEdit::SetFade(StepEdit& edit, TransitionKind fade) const {
  const Kind kind = KindOf(edit.row);
  if ((kind != Kind::FadeStart && kind != Kind::FadeEnd) || !IsFade(fade)) return;
  edit.fade = fade;
  Follow(edit);
}

void GroupEdit::SetSpeed(StepEdit& edit, int speed) const {
  const Kind kind = KindOf(edit.row);
  if ((kind != Kind::FadeStart && kind != Kind::FadeEnd) || !edit.byHand) return;
  edit.speed = std::clamp(speed, 1, kMostSpeed);
  Follow(edit);
}

void GroupEdit::Shift(int first, int seconds) {
  for (int row = first; row < Count(); ++row) Element(row).seconds += seconds;
}

void GroupEdit::Apply(const StepEdit& edit) {
  const Kind kind = KindOf(edit.row);
  if (kind == Kind::Fixed) return;
  const StepEdit before = Begin(edit.row);
  Shift(edit.row, edit.seconds - before.seconds);
  if (kind != Kind::FadeStart && kind != Kind::FadeEnd) return;
  const std::optional<int> other = kind == Kind::FadeStart ? FadeEndOf(edit.row) : FadeStartOf(edit.row);
  for (const std::optional<int> row : {std::optional(edit.row), other}) {
    if (!row || (edit.fade == before.fade && edit.speed == before.speed)) continue;
    Element(*row).fade = edit.fade;
    Element(*row).speed = edit.speed;
  }
  // A fade that takes another time ends at another time; what comes behind its end moves along.
  const bool longer = edit.endSeconds - edit.seconds != before.endSeconds - before.seconds;
  if (kind != Kind::FadeStart || !other || edit.byHand || !longer) return;
  Shift(*other, std::max(edit.endSeconds, At(*other - 1).seconds) - At(*other).seconds);
}

void GroupEdit::Move(int row, int seconds) {
  if (KindOf(row) == Kind::Fixed) return;
  StepEdit edit = Begin(row);
  SetSeconds(edit, seconds);
  Apply(edit);
}

}  // namespace kelvo
