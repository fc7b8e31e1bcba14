#pragma once

#include "config/windows/ConfigPage.h"

class QListWidget;

namespace kelvo {

/// "PFL Device Setting": the sound outputs, of which one is the monitor's.
class DevicePage : public ConfigPage {
  Q_OBJECT
 public:
  explicit DevicePage(Configuration& work);

 private:
  void ShowOutputs(QListWidget& list);
};

/// "Restore Defaults".
class RestorePage : public ConfigPage {
  Q_OBJECT
 public:
  explicit RestorePage(Configuration& work);

  void ClearTicks();

 private:
  [[nodiscard]] std::vector<std::size_t> Ticked() const;

  std::vector<QCheckBox*> rows_;
};

}  // namespace kelvo
