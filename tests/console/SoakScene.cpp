#include "console/SoakScene.h"

#include <algorithm>

namespace kelvo::testing {
namespace {

constexpr int kMostViolations = 20;

}  // namespace

void SoakExcuses::Add(const QString& reason, double from, double to, std::initializer_list<Touch> touches) {
  windows_.push_back({reason, from, to, touches});
}

QString SoakExcuses::For(Touch touch, double from, double to) const {
  const auto found = std::find_if(windows_.begin(), windows_.end(), [&](const Window& each) {
    const bool touched = std::find(each.touches.begin(), each.touches.end(), touch) != each.touches.end();
    return touched && each.from <= to && each.to >= from;
  });
  return found == windows_.end() ? QString() : found->reason;
}

void SoakExcuses::Forget(double before) {
  std::erase_if(windows_, [before](const Window& each) { return each.to < before; });
}

void SoakScene::Violate(const QString& what) {
  ++result.violationCount;
  if (result.violations.size() < kMostViolations)
    result.violations.append(QStringLiteral("second %1: %2").arg(desk.Now(), 0, 'f', 1).arg(what));
}

double SoakResult::ExcusedSeconds() const {
  double sum = 0;
  for (const auto& [reason, seconds] : silences) sum += seconds;
  return sum;
}

}  // namespace kelvo::testing
