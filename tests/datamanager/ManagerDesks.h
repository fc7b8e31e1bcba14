#pragma once

#include "audio/ClockAudio.h"
#include "datamanager/DataManager.h"
#include "datamanager/ManagerFixture.h"
#include "platform/SettingsStore.h"

namespace kelvo::testing {

/// A desk without a monitor.
class NoMonitor : public ManagerDesk {
 public:
  [[nodiscard]] QString WhyNoPreview() const override { return u"none"_s; }
  [[nodiscard]] QString Output() const override { return u"None"_s; }
  [[nodiscard]] int Volume() const override { return 0; }
  [[nodiscard]] int Balance() const override { return 0; }
  void TakeDevice() override {}
};

/// A whole Data Manager without its window.
class WholeManagerTest : public ManagerTest {
 protected:
  void Open(std::vector<ManagerTool> tools) {
    DataManager::Services services{
        .loop = loop_,
        .disks = disks_,
        .prompter = prompter_,
        .audio = audio_,
        .catalogue = catalogue_,
        .words = words_,
        .paths = database_.paths,
        .settings = settings_,
        .desk = std::make_shared<NoMonitor>(),
        .changes = std::make_shared<LibraryChanges>(LibraryChanges::Services{
            .loop = loop_, .prompter = prompter_, .catalogue = catalogue_, .paths = database_.paths}),
        .openTransfer = [this] { transfers_++; },
        .tools = {}};
    services.tools = [tools](DataManager&) { return tools; };
    manager_.emplace(std::move(services));
  }

  ClockAudio audio_{loop_};
  SettingsStore store_{loop_, database_.tree.Path(u"settings.ini"_s)};
  ProgramSettings settings_{store_, u"Kelvo"_s};
  std::optional<DataManager> manager_;
  int transfers_ = 0;
};

}  // namespace kelvo::testing
