#include "console/browser/NameIndex.h"

#include "database/ReferenceLine.h"

#include <QStringList>

#include <algorithm>

namespace kelvo {

QString UpperName(const QString& name) {
  const auto small = std::find_if(name.begin(), name.end(), [](QChar c) { return c.toUpper() != c; });
  if (small == name.end()) return name;
  QString upper = name;
  const qsizetype first = small - name.begin();
  std::transform(small, name.end(), upper.begin() + first, [](QChar c) { return c.toUpper(); });
  return upper;
}

void NameIndex::Clear() {
  members_.clear();
  ends_.clear();
  names_.clear();
  known_.clear();
}

Job<> NameIndex::Extend(EventLoop& loop) {
  Turn turn(loop);
  while (Lines() < column_.Distinct()) {
    TakeApart(column_.Text(static_cast<std::uint32_t>(Lines())));
    co_await turn.Yield();
  }
}

void NameIndex::TakeApart(const QString& line) {
  for (const QStringView part : ShownItems(line)) {
    const QString name = UpperName(part.toString());
    const auto next = static_cast<std::uint32_t>(names_.size());
    const auto known = known_.constFind(name);
    if (known == known_.cend()) {
      known_.insert(name, next);
      names_.append(name);
    }
    members_.push_back(known == known_.cend() ? next : *known);
  }
  ends_.push_back(static_cast<std::uint32_t>(members_.size()));
}

std::span<const std::uint32_t> NameIndex::NamesOf(std::uint32_t line) const {
  const std::uint32_t start = line == 0 ? 0 : ends_[line - 1];
  return std::span(members_).subspan(start, ends_[line] - start);
}

std::vector<bool> NameIndex::LinesWith(const QString& name) const {
  std::vector<bool> holds(Lines(), false);
  const auto known = known_.constFind(UpperName(name));
  if (known == known_.cend()) return holds;
  for (std::uint32_t line = 0; line < Lines(); ++line) {
    const auto names = NamesOf(line);
    holds[line] = std::find(names.begin(), names.end(), *known) != names.end();
  }
  return holds;
}

}  // namespace kelvo
