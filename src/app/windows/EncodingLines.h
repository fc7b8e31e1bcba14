#pragma once

#include "app/WindowLine.h"
#include "app/windows/HostedWindow.h"
#include "datamanager/ManagerTool.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace kelvo {

class Console;
class DataManager;

/// Opens the windows of encoder and burner with files of other windows. A value: all copies are one.
class EncodingDoor {
 public:
  /// `open` opens a window by its id.
  explicit EncodingDoor(std::function<void(const QString& id)> open);

  /// The files come on the list of the encoder, in the place of those that are there.
  void Encode(const QStringList& files) const;
  /// The files come on the list of the burner.
  void Burn(const QStringList& files) const;

  /// The lines of both windows.
  [[nodiscard]] std::vector<WindowLine> Lines(Console& desk, const WindowHost& host) const;
  /// The commands of the Data Manager that send the selected files, tracks or jingles, there.
  [[nodiscard]] std::vector<ManagerTool> Tools(DataManager& manager) const;

 private:
  struct Rooms;
  std::shared_ptr<Rooms> rooms_;
  std::function<void(const QString& id)> open_;
};

}  // namespace kelvo
