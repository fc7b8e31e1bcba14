#pragma once

#include "datamanager/TrackList.h"
#include "platform/Prompter.h"

#include <QObject>

#include <vector>

namespace kelvo {

/// The command "Find": it asks for a text, selects all rows whose names hold it, and leads from one to the
/// next. When the rows become others it begins anew. Owned by the DataManager; logic thread.
class FindText : public QObject {
  Q_OBJECT

 public:
  FindText(Prompter& prompter, const TrackList& list);

  /// "Find", or "Show 2 Of 7" while there are hits to go through.
  [[nodiscard]] QString Caption() const;
  /// The button: asks and looks, or goes on to the next hit; behind the last one it is "Find" again.
  void Press();

 Q_SIGNALS:
  void Changed();
  /// A search begins: nothing is to be selected, here and in the filter.
  void ClearSelections();
  /// These rows, in their order, are the hits: they are to be selected.
  void Found(const std::vector<int>& rows);
  /// The keyboard goes to this row, which is brought into sight with some around it.
  void Reached(int row);

 private:
  [[nodiscard]] Job<> Search();
  void Reach(std::size_t hit);
  /// The hits of rows that are no more are forgotten.
  void Begin();

  Prompter& prompter_;
  const TrackList& list_;
  std::vector<int> hits_;
  std::size_t hit_ = 0;  ///< the one that is shown
  Job<> search_;
};

}  // namespace kelvo
