#pragma once

#include <QAbstractItemView>
#include <QItemSelectionModel>

#include <algorithm>
#include <vector>

namespace kelvo {

/// The selected rows of a list, from the first. By ranges: 100,000 rows are one.
[[nodiscard]] inline std::vector<int> PickedRows(const QAbstractItemView& list) {
  std::vector<int> rows;
  for (const QItemSelectionRange& range : list.selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

}  // namespace kelvo
