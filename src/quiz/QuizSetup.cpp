#include "quiz/QuizSetup.h"

#include "platform/Words.h"

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

constexpr int kTail = 3;  // seconds

}  // namespace

QStringList QuizSetup::Fields() const {
  return {QString::number(static_cast<int>(from)), QString::number(chainQty), QString::number(seconds), mixer,
          intro};
}

void QuizSetup::Take(const QStringList& fields) {
  if (fields.size() < 2) return;
  const auto number = [&fields](qsizetype place, int fallback, int highest) {
    const double value = Val(fields.value(place));
    return value < kLowest ? fallback : static_cast<int>(std::min<double>(std::nearbyint(value), highest));
  };
  const int source = number(0, static_cast<int>(from), kHighest);
  if (source <= static_cast<int>(SnipFrom::Random)) from = static_cast<SnipFrom>(source);
  chainQty = number(1, chainQty, kHighest);
  seconds = number(2, seconds, kHighest);
  mixer = fields.value(3, mixer);
  intro = fields.value(4, intro);
}

SnippetSpan ChooseSnippet(double duration, const QuizSetup& setup, RandomSource& random) {
  constexpr double kLongest = 1e8;
  const int whole = static_cast<int>(std::lround(std::clamp(duration, 0.0, kLongest)));
  const int latest = whole - setup.seconds - kTail;
  int start = 0;
  switch (setup.from) {
    case SnipFrom::Start:
      break;
    case SnipFrom::Middle:
      start = static_cast<int>(std::nearbyint(whole / 2.0 - setup.seconds));
      break;
    case SnipFrom::End:
      start = latest;
      break;
    case SnipFrom::Random:
      start = whole > 0 ? random.Below(whole) : 0;
      break;
  }
  start = std::max(std::min(start, latest), 0);
  return {start, start + setup.seconds};
}

}  // namespace kelvo
