#pragma once

#include "datamanager/TrackList.h"
#include "ui/RowModel.h"

namespace kelvo {

/// The rows of the Data Manager's track list. Nothing is copied of them: texts are made as they are painted.
/// Owned by the window; GUI thread.
class ManagerModel final : public RowModelBase {
  Q_OBJECT
 public:
  explicit ManagerModel(TrackList& list);

  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                                      Qt::MatchFlags flags) const override;

 protected:
  [[nodiscard]] QString Text(int row, int column) const override;
  [[nodiscard]] QString EditText(int row, int column) const override { return Text(row, column); }
  [[nodiscard]] bool Editable(int) const override { return false; }
  bool SetText(int, int, const QString&) override { return false; }
  [[nodiscard]] QVariant Other(int row, int column, int role) const override;

 private:
  void Reorder(const std::vector<int>& rowNow);

  TrackList& list_;
};

}  // namespace kelvo
