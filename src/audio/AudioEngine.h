#pragma once

#include "audio/AudioSystem.h"
#include "audio/engine/EnginePlayer.h"
#include "audio/engine/Output.h"
#include "audio/engine/OutputBackend.h"
#include "audio/engine/PlayerHost.h"
#include "audio/engine/ThreadYard.h"
#include "platform/EventLoop.h"

#include <functional>
#include <memory>
#include <vector>

namespace kelvo {

/// The sound of the program. Owned by its entry; logic thread. With PulseBackend or SdlBackend it plays on
/// real devices, with NoDeviceBackend into nothing on time, and with SimulatedBackend it renders a simulated
/// clock's frames.
class AudioEngine : public AudioSystem, private PlayerHost {
 public:
  AudioEngine(EventLoop& loop, std::unique_ptr<OutputBackend> backend);
  /// Closes the devices and waits for the threads, but for those that hang on a disk.
  ~AudioEngine() override;

  [[nodiscard]] std::unique_ptr<MediaPlayer> MakePlayer(const QString& output = {}) override;
  [[nodiscard]] QStringList OutputNames() const override { return backend_->Names(); }
  [[nodiscard]] QString OutputId(const QString& name) const override { return backend_->IdOf(name); }
  [[nodiscard]] QString OutputNamed(const QString& id) const override { return backend_->NameOf(id); }
  [[nodiscard]] Job<> OutputsKnown() override;
  [[nodiscard]] Job<double> DurationOf(QString path) override;
  [[nodiscard]] OutputStatus DefaultOutputStatus() const override { return defaultStatus_; }

  /// Stretches in which a playing voice of `output` (empty: the default one) had no data; 0 when nobody plays
  /// there.
  [[nodiscard]] std::uint64_t Underruns(const QString& output = {}) const;
  /// How often the device of `output` ran dry, as far as devices tell it.
  [[nodiscard]] std::uint64_t Dropouts(const QString& output = {}) const override;
  /// What `output` plays, for meters, scope and recorder. The default output's lasts as long as the engine;
  /// that of another as long as players are on it, and null when none is.
  [[nodiscard]] std::shared_ptr<const Tap> TapOf(const QString& output = {}) const override;
  /// How much sound waits in front of the device of `output`: what was queued too little is told by Dropouts,
  /// and makes it larger.
  [[nodiscard]] Nanoseconds ReserveOf(const QString& output = {}) const override;
  /// By how many decibels the limiter of `output` turns it down now; 0 when it has nothing to do. A peak
  /// shows for 50 ms at least.
  [[nodiscard]] double GainReduction(const QString& output = {}) const override;
  /// The state of the output named `output`, while a player is on it; nothing otherwise.
  [[nodiscard]] std::optional<OutputStatus> StatusOf(const QString& output) const;

 private:
  struct Retired {
    std::shared_ptr<Output> output;
    std::shared_ptr<PlayerCore> core;
    Nanoseconds deadline;
    std::optional<std::uint64_t> mark;  ///< set once it is out of the mixer
  };
  struct FeederThread {
    const PlayerCore* core;
    std::stop_source stop;
  };

  [[nodiscard]] EventLoop& Loop() override { return loop_; }
  void OpenApart(std::function<void()> work) override;
  void PollSoon() override;
  [[nodiscard]] std::shared_ptr<PlayerCore> MakeCore(Output& output) override;
  void Retire(std::shared_ptr<Output> output, std::shared_ptr<PlayerCore> core) override;
  void Forget(EnginePlayer& player) override { std::erase(players_, &player); }

  void Tick();
  void PollPlayers();
  void FreeRetired();
  [[nodiscard]] std::shared_ptr<Output> FindOutput(const QString& name) const;

  EventLoop& loop_;
  ThreadYard yard_;
  std::unique_ptr<OutputBackend> backend_;
  std::vector<std::shared_ptr<Output>> outputs_;  ///< the default one first
  std::vector<EnginePlayer*> players_;
  std::vector<FeederThread> feeders_;
  std::vector<Retired> retired_;
  OutputStatus defaultStatus_;
  std::uint64_t toldUnderruns_ = 0;
  std::uint64_t toldDropouts_ = 0;
  Timer tick_;
  Timer soon_;
};

}  // namespace kelvo
