#pragma once

#include "app/WindowLine.h"
#include "app/windows/HostedWindow.h"
#include "datamanager/ManagerTool.h"

#include <QPointer>
#include <QStringList>

#include <memory>
#include <vector>

namespace kelvo {

class Console;
class DataManager;
class PreviewPlayer;
class TapCounter;
class VolumeUnify;

/// What the Data Manager and the two windows know of one another. Shared by what makes them.
struct UnifyParts {
  QPointer<VolumeUnify> unify;  ///< once its window was made
  QPointer<TapCounter> taps;
  QPointer<PreviewPlayer> preview;  ///< of the Data Manager
  QStringList files;                ///< to be listed when it is made
  QString track;                    ///< to be counted when it is made
};
using UnifyPartsPtr = std::shared_ptr<UnifyParts>;

/// The windows "Unify Volume" and "Count Beats".
[[nodiscard]] std::vector<WindowLine> UnifyLines(Console& desk, const WindowHost& host,
                                                 const UnifyPartsPtr& parts);

/// The commands of the Data Manager that lead there. `open` opens a window by its id.
[[nodiscard]] std::vector<ManagerTool> UnifyTools(DataManager& manager, const UnifyPartsPtr& parts,
                                                  const std::function<void(const QString& id)>& open);

}  // namespace kelvo
