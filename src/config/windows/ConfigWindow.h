#pragma once

#include "config/Configuration.h"
#include "ui/ToolWindow.h"

#include <vector>

class QLabel;
class QTabWidget;

namespace kelvo {

class ColourPage;
class ConfigPage;
class RestorePage;

/// "Configuration": the settings of the desk on six tabs. What is set is seen on the desk's panels at once
/// where it is a colour, and counts when it is saved. GUI thread.
class ConfigWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit ConfigWindow(Configuration& work);

  void TakeKeys() override;
  [[nodiscard]] Job<bool> MayClose() override { return work_.MayClose(); }

 protected:
  void Enter() override;
  void Leave() override;
  void Refresh() override { work_.Look(); }

 private:
  void AddPage(ConfigPage* page, const QString& words);
  void Show();

  Configuration& work_;
  QTabWidget* tabs_;
  ColourPage* colours_;
  RestorePage* restore_;
  std::vector<ConfigPage*> pages_;
  QLabel* unsaved_;
};

}  // namespace kelvo
