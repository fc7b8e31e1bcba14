#include "audio/cDshow.h"

#include "audio/AudioSystem.h"

namespace kelvo {

namespace {

constexpr int kMutedVolume = -10000;

QString OutputOf(const QString& device) {
  return device == QLatin1StringView("Default WaveOut Device") ? QString() : device;
}

}  // namespace

cDshow::cDshow(AudioSystem& audio) : audio_(audio) {}
cDshow::~cDshow() = default;

void cDshow::SetOutPutDevice(const QString& name) {
  device_ = name.isEmpty() ? QStringLiteral("Default WaveOut Device") : name;
}

bool cDshow::DeviceMissing() const {
  const QString output = OutputOf(device_);
  return !output.isEmpty() && audio_.OutputNamed(output).isEmpty() && !audio_.OutputNames().contains(output);
}

Job<OpenResult> cDshow::SetGraphFile(QString path) {
  const QString output = OutputOf(device_);
  if (!player_ || playerDevice_ != output) {
    player_ = audio_.MakePlayer(output);
    playerDevice_ = output;
    ApplyLevels();
  }
  paused_ = false;
  return player_->Open(std::move(path));
}

QString cDshow::GraphFile() const {
  return player_ ? player_->FileName() : QString();
}
double cDshow::GraphDuration() const {
  return player_ ? player_->Duration() : 0;
}
double cDshow::GraphPosition() const {
  return player_ ? player_->CurrentPosition() : 0;
}

void cDshow::SetGraphPosition(double seconds) {
  if (player_) player_->SetCurrentPosition(seconds);
}

void cDshow::SetGraphVolume(int hundredthsOfDecibel) {
  volume_ = hundredthsOfDecibel;
  ApplyLevels();
}

void cDshow::SetGraphBalance(int hundredthsOfDecibel) {
  balance_ = hundredthsOfDecibel;
  ApplyLevels();
}

void cDshow::SetGraphRate(double rate) {
  rate_ = rate;
  ApplyLevels();
}

void cDshow::GraphMute(bool mute) {
  muted_ = mute;
  ApplyLevels();
}

void cDshow::ApplyLevels() {
  if (!player_) return;
  player_->SetVolume(muted_ ? kMutedVolume : volume_);
  player_->SetBalance(balance_);
  player_->SetRate(rate_);
}

cDshow::State cDshow::GraphPlayState() const {
  if (!player_ || player_->FileName().isEmpty()) return State::Stopped;
  if (player_->State() == PlayState::Playing) return State::Running;
  return paused_ ? State::Paused : State::Stopped;
}

void cDshow::GraphPlay() {
  paused_ = false;
  if (player_) player_->Play();
}

void cDshow::GraphPause() {
  paused_ = true;
  if (player_) player_->Stop();
}

void cDshow::GraphStop() {
  paused_ = false;
  if (player_) player_->Stop();
}

}  // namespace kelvo
