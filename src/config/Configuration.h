#pragma once

#include "audio/AudioSystem.h"
#include "audio/cDshow.h"
#include "config/ConfigValues.h"
#include "platform/EventLoop.h"
#include "platform/Prompter.h"

#include <QObject>

#include <functional>
#include <vector>

namespace kelvo {

/// The settings of the desk, changed together: a copy of them is edited, and kept by a save. The desk reads
/// each setting when it uses it or listens to it, so a save acts at once. Owned beside its window; logic
/// thread.
class Configuration : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    AudioSystem& audio;
    ProgramSettings settings;
    QString programFolder;        ///< the warning loop is there, where none is stored
    std::function<bool()> onAir;  ///< whether a sound on the main output would be heard in the programme
  };
  explicit Configuration(Services services);

  /// Takes what is stored. Tells where there is no sound output.
  void Begin();
  /// Gives up what was not saved, and falls silent.
  void End();
  /// Looks anew at the outputs and at the warning loop's file.
  void Look();

  [[nodiscard]] const ConfigValues& Values() const { return values_; }
  void Change(const std::function<void(ConfigValues&)>& change);
  /// Something is not saved.
  [[nodiscard]] bool Dirty() const { return values_ != stored_; }

  /// Asks, checks the encoding presets and writes every setting.
  void Save();
  /// "Save Changes ?" where there are any; false: it is to stay open.
  [[nodiscard]] Job<bool> MayClose();

  /// Sets the rows of ResetRows back to the defaults, here only, after a question.
  void Reset(std::vector<std::size_t> rows);
  /// What the last reset has changed.
  void UndoReset();
  [[nodiscard]] bool CanUndoReset() const { return !resetRows_.empty(); }

  /// The sound outputs as they were last seen, the programme's first.
  [[nodiscard]] const QStringList& Outputs() const { return outputs_; }
  /// Why there are none, in words for the operator.
  [[nodiscard]] const QString& WhyNoOutputs() const { return whyNoOutputs_; }
  /// Why the output can't be the monitor's; empty when it can.
  [[nodiscard]] QString WhyNotForMonitor(qsizetype output) const;
  void ChooseOutput(int output);
  /// The monitor's output, in Outputs; -1 when it is not there.
  [[nodiscard]] qsizetype MonitorOutput() const;
  /// What a person calls its device, there or not; "None" at first.
  [[nodiscard]] QString MonitorName() const;
  /// A device was chosen that can't be heard now.
  [[nodiscard]] bool DeviceMissing() const;

  /// The file of the audio warning.
  [[nodiscard]] QString WarningLoop() const;
  [[nodiscard]] bool LoopMissing() const { return loopMissing_; }
  /// Lets the operator pick another one; it counts at once.
  void PickWarningLoop();
  /// Plays the warning loop on the monitor's device; where there is none on the main output, but never on
  /// air.
  void PlayLoop();
  [[nodiscard]] QString WhyNoLoop() const;
  /// The same on the device that is chosen here, or not at all.
  void TestDevice();
  [[nodiscard]] QString WhyNoTest() const;

 Q_SIGNALS:
  void Changed();
  /// Everything is written.
  void Written();
  /// The operator has saved.
  void Saved();

 private:
  static constexpr double kLongestLoop = 0.75;  ///< seconds

  [[nodiscard]] Job<> RunSave();
  /// Writes what can be written: false, and the operator knows why, when it can't.
  [[nodiscard]] Job<bool> Keep();
  [[nodiscard]] Job<> RunReset(std::vector<std::size_t> rows);
  [[nodiscard]] Job<> RunPick();
  [[nodiscard]] Job<> RunPlay(QString output);
  [[nodiscard]] Job<> RunLook();
  void ReadOutputs(bool tell);
  void FollowDevice();
  /// The id of the chosen device, or its name where it was stored without.
  [[nodiscard]] const QString& MonitorId() const;
  [[nodiscard]] bool MonitorThere() const { return MonitorOutput() > 0; }

  Services services_;
  ConfigValues stored_;
  ConfigValues values_;
  ConfigValues beforeReset_;
  std::vector<std::size_t> resetRows_;  ///< of the last reset
  QStringList outputs_;
  QString whyNoOutputs_;
  bool loopMissing_ = false;
  cDshow player_;
  Timer tick_;
  Job<> question_;
  Job<> pick_;
  Job<> play_;
  Job<> look_;
};

}  // namespace kelvo
