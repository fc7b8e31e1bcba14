#pragma once

#include "audio/MediaPlayer.h"
#include "audio/engine/EngineSource.h"
#include "audio/engine/Output.h"
#include "audio/engine/PlayerCore.h"
#include "audio/engine/PlayerHost.h"

#include <atomic>
#include <functional>
#include <memory>
#include <stop_token>

namespace kelvo {

/// The face of one voice for the logic. Each file that it opens has a core of its own: a decoder that hangs
/// on the last one does not delay the next. Made by the engine, which it must not outlive.
class EnginePlayer : public MediaPlayer {
 public:
  EnginePlayer(PlayerHost& engine, std::shared_ptr<Output> output, std::shared_ptr<PlayerCore> core);
  /// What sounds fades out behind it.
  ~EnginePlayer() override;

  [[nodiscard]] Job<OpenResult> Open(QString path) override;
  [[nodiscard]] std::uint64_t OpenSteps() const override;
  void Close() override;
  [[nodiscard]] QString FileName() const override { return file_; }
  [[nodiscard]] double Duration() const override { return duration_; }
  [[nodiscard]] bool HasSound() const override { return hasSound_; }
  [[nodiscard]] double CurrentPosition() const override;
  void SetCurrentPosition(double seconds) override;
  [[nodiscard]] PlayState State() const override { return state_; }
  void Play() override;
  void Stop() override;
  [[nodiscard]] std::optional<FrameIndex> OnAirFrom() const override;
  [[nodiscard]] Nanoseconds DataLateFor() const override { return dataLateFor_; }
  void SetVolume(int hundredthsOfDecibel) override;
  [[nodiscard]] int Volume() const override { return volume_; }
  void SetBalance(int hundredthsOfDecibel) override;
  [[nodiscard]] int Balance() const override { return balance_; }
  void SetRate(double rate) override;
  [[nodiscard]] double Rate() const override { return rate_; }

  /// Delivers what has come about meanwhile: a file that is open, an end of stream. Called by the engine from
  /// the loop; the player may be gone when it returns.
  void Poll();

 private:
  struct OpenRequest;

  void Supersede();
  void Install(const QString& path, std::unique_ptr<EngineSource> source);
  void GoTo(FrameIndex frame, std::unique_ptr<EngineSource> source);
  void RenewCore();
  void WatchData();
  void ApplyState(PlayState state);
  void ApplyGains();
  [[nodiscard]] bool PlayedOut() const { return endDelivered_ && !file_.isEmpty(); }

  PlayerHost& engine_;
  std::shared_ptr<Output> output_;
  std::shared_ptr<PlayerCore> core_;
  std::shared_ptr<OpenRequest> opening_;
  QString file_;
  double duration_ = 0;
  bool hasSound_ = false;
  PlayState state_ = PlayState::Stopped;
  int volume_ = 0;
  int balance_ = 0;
  double rate_ = 1;
  Generation generation_ = 1;
  double target_ = 0;          ///< where the present generation starts, in seconds
  bool endDelivered_ = false;  ///< for the present generation
  bool endAgain_ = false;      ///< Play was asked for behind the end
  std::uint64_t reads_ = 0;    ///< of the feeder, as last seen
  Nanoseconds readsMovedAt_{0};
  Nanoseconds dataLateFor_{0};
};

}  // namespace kelvo
