#pragma once

#include "console/Console.h"
#include "datamanager/ManagerDesk.h"

#include <QObject>

namespace kelvo {

/// The desk as the Data Manager knows it: it listens on the monitor's device, which the monitor itself takes
/// back when it is opened. Owned by the Data Manager; outlived by the desk.
class DeskOfManager : public ManagerDesk {
 public:
  explicit DeskOfManager(Console& desk);

  [[nodiscard]] QString WhyNoPreview() const override { return desk_.Pfl().WhyNotApart(); }
  [[nodiscard]] QString Output() const override { return desk_.Pfl().Output(); }
  [[nodiscard]] int Volume() const override;
  [[nodiscard]] int Balance() const override { return desk_.Pfl().Balance(); }
  void TakeDevice() override { desk_.Pfl().Close(); }

 private:
  Console& desk_;
  QString output_;
  QObject listener_;
};

}  // namespace kelvo
