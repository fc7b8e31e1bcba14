#pragma once

#include "database/TextColumns.h"

#include <QString>

#include <functional>
#include <vector>

namespace kelvo {

/// A command of the Data Manager whose work is done elsewhere: the join hands it in, and the window has a
/// place for its button. Without the tool there is no button. A value.
struct ManagerTool {
  using Run = std::function<void(const std::vector<Mref>& picked)>;
  using WhyOff = std::function<QString(const std::vector<Mref>& picked)>;

  QString id;       ///< fixed name of its control, "Command8"; tells the button's place
  QString words;    ///< on the button
  QString tooltip;  ///< what it does
  /// `picked`: the tracks of the selected rows, in their order, each as often as it is selected. Empty while
  /// jingles are listed: those are asked for by DataManager::PickedFiles.
  Run run = {};
  /// Why it can't be given now, in words for the operator; empty when it can. Asked when the selection, the
  /// list, or what is chosen beside it changes, and each second.
  WhyOff whyOff = {};
};

}  // namespace kelvo
