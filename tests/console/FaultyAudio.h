#pragma once

#include "audio/ClockAudio.h"
#include "audio/engine/Tap.h"

#include <utility>
#include <vector>

namespace kelvo::testing {

/// A player whose disk can die under it.
class FaultyPlayer : public MediaPlayer {
 public:
  explicit FaultyPlayer(std::unique_ptr<MediaPlayer> player) : player_(std::move(player)) {
    player_->OnEndOfStream = [this] {
      DiskIsBack();
      if (OnEndOfStream) OnEndOfStream();
    };
  }

  /// It says that it plays, and its position moves no more, until it is stopped or opened anew.
  void StandStill() {
    player_->Stop();
    stands_ = true;
  }
  /// The data ends at the present position.
  void BreakOff() {
    Stop();
    if (OnEndOfStream) OnEndOfStream();
  }

  Job<OpenResult> Open(QString path) override {
    OpenResult result = co_await player_->Open(std::move(path));
    if (result.Ok()) {
      DiskIsBack();
      stands_ = false;
    }
    co_return result;
  }
  /// Its disk owes data since now, and sound is left for `left`; then it stops.
  void LoseDisk(EventLoop& loop, Nanoseconds left) {
    lateSince_ = loop.Elapsed();
    loop_ = &loop;
    runsDry_ = loop.After(left, [this] { StandStill(); });
  }
  [[nodiscard]] std::uint64_t OpenSteps() const override { return player_->OpenSteps(); }
  [[nodiscard]] Nanoseconds DataLateFor() const override {
    return lateSince_ ? loop_->Elapsed() - *lateSince_ : Nanoseconds(0);
  }
  void Close() override {
    DiskIsBack();
    stands_ = false;
    player_->Close();
  }
  [[nodiscard]] QString FileName() const override { return player_->FileName(); }
  [[nodiscard]] double Duration() const override { return player_->Duration(); }
  [[nodiscard]] bool HasSound() const override { return player_->HasSound(); }
  [[nodiscard]] double CurrentPosition() const override { return player_->CurrentPosition(); }
  void SetCurrentPosition(double seconds) override { player_->SetCurrentPosition(seconds); }
  [[nodiscard]] PlayState State() const override { return stands_ ? PlayState::Playing : player_->State(); }
  void Play() override {
    if (!stands_) player_->Play();
  }
  void Stop() override {
    DiskIsBack();
    stands_ = false;
    player_->Stop();
  }
  void SetVolume(int hundredths) override { player_->SetVolume(hundredths); }
  [[nodiscard]] int Volume() const override { return player_->Volume(); }
  void SetBalance(int hundredths) override { player_->SetBalance(hundredths); }
  [[nodiscard]] int Balance() const override { return player_->Balance(); }
  void SetRate(double rate) override { player_->SetRate(rate); }
  [[nodiscard]] double Rate() const override { return player_->Rate(); }

 private:
  void DiskIsBack() {
    lateSince_.reset();
    runsDry_.Stop();
  }

  std::unique_ptr<MediaPlayer> player_;
  bool stands_ = false;
  EventLoop* loop_ = nullptr;
  std::optional<Nanoseconds> lateSince_;
  Timer runsDry_;
};

/// ClockAudio whose streams can stop or break off.
class FaultyAudio : public ClockAudio {
 public:
  using ClockAudio::ClockAudio;
  [[nodiscard]] std::unique_ptr<MediaPlayer> MakePlayer(const QString& output = {}) override {
    auto player = std::make_unique<FaultyPlayer>(ClockAudio::MakePlayer(output));
    players.push_back(player.get());
    outputs.push_back(output);
    return player;
  }
  std::vector<FaultyPlayer*> players;  ///< all that were made, also those of a desk that is gone
  std::vector<QString> outputs;        ///< what each was made on

  /// What is heard, for meters and scope: a test plays into it.
  std::shared_ptr<Tap> tap;
  double reduction = 0;
  [[nodiscard]] std::shared_ptr<const Tap> TapOf(const QString& /*output*/) const override { return tap; }
  [[nodiscard]] double GainReduction(const QString& /*output*/) const override { return reduction; }

  [[nodiscard]] static FaultyPlayer& Of(MediaPlayer& player) { return dynamic_cast<FaultyPlayer&>(player); }
};

}  // namespace kelvo::testing
