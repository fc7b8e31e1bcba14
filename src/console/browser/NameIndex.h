#pragma once

#include "database/TextColumns.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QHash>
#include <QString>

#include <span>
#include <vector>

namespace kelvo {

/// Upper case letter by letter: the length stays, so that names that differ in it stay different.
[[nodiscard]] QString UpperName(const QString& name);

/// The names in the comma-separated lines of one catalogue column, each distinct line taken apart once, each
/// name kept once in upper case. Internal names ("~...") and empty ones are left out. Lines only ever come to
/// a column, so it grows with it; after a new load of the catalogue it is cleared. Owned by the
/// LibraryBrowser; logic thread.
class NameIndex {
 public:
  explicit NameIndex(const PooledTextColumn& column) : column_(column) {}

  void Clear();
  /// Takes apart the lines that came since; yields. May run several times at once.
  [[nodiscard]] Job<> Extend(EventLoop& loop);

  [[nodiscard]] std::size_t Lines() const { return ends_.size(); }
  /// Numbers of the names in a line, in its order. `line` is a text number of the column, below Lines().
  [[nodiscard]] std::span<const std::uint32_t> NamesOf(std::uint32_t line) const;
  [[nodiscard]] std::size_t Names() const { return static_cast<std::size_t>(names_.size()); }
  [[nodiscard]] const QString& Name(std::uint32_t name) const { return names_[name]; }
  /// A mark for each line that holds a name of this length and these letters, in any case.
  [[nodiscard]] std::vector<bool> LinesWith(const QString& name) const;

 private:
  void TakeApart(const QString& line);

  const PooledTextColumn& column_;
  std::vector<std::uint32_t> members_;  ///< the names of all lines, one line behind the other
  std::vector<std::uint32_t> ends_;     ///< where each line ends in them
  QStringList names_;
  QHash<QString, std::uint32_t> known_;
};

}  // namespace kelvo
