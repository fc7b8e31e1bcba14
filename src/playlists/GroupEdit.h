#pragma once

#include "database/GroupElement.h"

#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace kelvo {

/// Seconds that a fade takes whose slider is at `position` (50 - its speed).
[[nodiscard]] int FadeSeconds(int position, TransitionKind kind);
/// The speed of a fade that takes about so many seconds, 1 to 50.
[[nodiscard]] int SpeedOfFade(int seconds, TransitionKind kind);

/// A step of the list, as its editor has it.
struct GroupRow {
  GroupElement element;
  int line = 0;  ///< the place of the line that it is of
  bool operator==(const GroupRow&) const = default;
};

/// What the editor's panel makes of a step. A value.
struct StepEdit {
  int row = 0;
  int seconds = 0;     ///< the step's time
  int endSeconds = 0;  ///< of a fade: when it is over, by its kind and speed
  TransitionKind fade = TransitionKind::None;
  int speed = -1;
  bool byHand = false;  ///< the fade's speed is set for itself: otherwise it follows from the fade's times
  bool operator==(const StepEdit&) const = default;
};

/// A group playlist as one line of time: the steps of all its lines, by their times. Whoever moves a step
/// moves all that come later with it, so the order never changes. A value.
class GroupEdit {
 public:
  GroupEdit() = default;
  /// The lines of the playlist. One that can't be read is kept as it is.
  explicit GroupEdit(const QStringList& lines);

  [[nodiscard]] const std::vector<GroupRow>& Rows() const { return rows_; }
  [[nodiscard]] int Count() const { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const GroupElement& At(int row) const { return rows_[static_cast<std::size_t>(row)].element; }
  /// How many lines could not be read.
  [[nodiscard]] int StrangeLines() const { return static_cast<int>(strange_.size()); }

  /// A line with its place among those that the edit began with.
  struct Line {
    int place = 0;
    QString text;
  };
  /// In the order of their loads; those that could not be read come last.
  [[nodiscard]] std::vector<Line> Lines() const;

  /// The list begins again at its end.
  [[nodiscard]] bool Repeats() const;
  void SetRepeats(bool repeats);

  /// The tracks have other numbers now: `track` tells that of a line.
  void Renumber(const std::function<Mref(int line, Mref before)>& track);

  // Changes of a step.
  enum class Kind { Fixed, Time, Dub, FadeStart, FadeEnd };
  /// What of a row can be changed: nothing of the first one and of the repeat mark.
  [[nodiscard]] Kind KindOf(int row) const;
  /// The change of a row, as it is before anything is changed.
  [[nodiscard]] StepEdit Begin(int row) const;
  // They take the nearest value that can be.
  void SetSeconds(StepEdit& edit, int seconds) const;
  void SetEnd(StepEdit& edit, int seconds) const;
  void SetFade(StepEdit& edit, TransitionKind fade) const;
  void SetSpeed(StepEdit& edit, int speed) const;
  void Apply(const StepEdit& edit);
  /// The same for its time alone.
  void Move(int row, int seconds);

  /// The start of the fade that ends in this row, and the end of the one that starts; none: there is none.
  [[nodiscard]] std::optional<int> FadeStartOf(int row) const;
  [[nodiscard]] std::optional<int> FadeEndOf(int row) const;

  bool operator==(const GroupEdit&) const = default;

 private:
  struct Strange {
    int place;
    QString text;
    bool operator==(const Strange&) const = default;
  };
  [[nodiscard]] GroupElement& Element(int row) { return rows_[static_cast<std::size_t>(row)].element; }
  void Shift(int first, int seconds);
  /// What follows of a fade's times for the rest of the change.
  void Follow(StepEdit& edit) const;

  std::vector<GroupRow> rows_;
  std::vector<Strange> strange_;
};

}  // namespace kelvo
