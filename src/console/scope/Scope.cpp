#include "console/scope/Scope.h"

#include "console/desk/ScopeSettings.h"

#include <algorithm>
#include <cmath>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kSlowInterval = 500ms;

/// Frames of the sound in one of the trace.
constexpr std::size_t kStep = 4;
static_assert(kEngineRate == 11025 * kStep);
constexpr std::size_t kTraceWindow = Scope::kFrames * kStep;

}  // namespace

Scope::Scope(PictureBeat& beat, Services services) : MovingPicture(beat), services_(std::move(services)) {
  ReadChoice();
  const auto choice = [this](const auto&) { ReadChoice(); };
  services_.settings.Listen(setting::ScopeSpectrum, this, choice);
  services_.settings.Listen(setting::ScopeInput, this, choice);
  multiplier_ = services_.settings.Get(setting::SpectralDisplay);
  services_.settings.Listen(setting::SpectralDisplay, this, [this](int multiplier) {
    multiplier_ = multiplier;
    place_.reset();
  });
}

void Scope::ShowSpectrum(bool spectrum) {
  services_.settings.Set(setting::ScopeSpectrum, spectrum);
}

void Scope::ChooseInput(const QString& id) {
  services_.settings.Set(setting::ScopeInput, id);
}

void Scope::ReadChoice() {
  spectrumShown_ = services_.settings.Get(setting::ScopeSpectrum);
  chosen_ = services_.settings.Get(setting::ScopeInput);
  place_.reset();
  spectrum_.Clear();
  if (Watched() && services_.input != nullptr) services_.input->Choose(chosen_);
  Q_EMIT ChoiceChanged();
}

std::vector<SoundInput::Device> Scope::Inputs() const {
  return services_.input != nullptr ? services_.input->Devices() : std::vector<SoundInput::Device>();
}

QString Scope::SourceWords() const {
  if (chosen_.isEmpty()) return tr("Programme");
  for (const SoundInput::Device& each : Inputs()) {
    if (each.id == chosen_) return each.words;
  }
  return tr("%1 (isn't there)").arg(chosen_);
}

void Scope::Begin() {
  if (services_.input != nullptr) services_.input->Choose(chosen_);
}

void Scope::Rest() {
  // Nobody is listened to without being seen.
  if (services_.input != nullptr) services_.input->Choose({});
  tap_ = nullptr;
  place_.reset();
  spectrum_.Clear();
}

std::shared_ptr<const Tap> Scope::Source() const {
  if (chosen_.isEmpty()) return services_.audio.TapOf();
  return services_.input != nullptr ? services_.input->Sound() : nullptr;
}

void Scope::Renew() {
  const Nanoseconds now = services_.loop.Elapsed();
  if (services_.slowed && services_.slowed() && now < lookedAt_ + kSlowInterval) return;
  lookedAt_ = now;
  const auto source = Source();
  if (source != tap_) {
    tap_ = source;
    clock_ = {};
    place_.reset();
    // An input that has come is known by its words.
    Q_EMIT ChoiceChanged();
  }
  const std::optional<FrameIndex> before = place_;
  const bool empty = !Look(now);
  if (empty) {
    place_.reset();
    spectrum_.Clear();
  }
  const bool stays = empty == empty_ && (empty || place_ == before);
  empty_ = empty;
  if (!stays) Q_EMIT Renewed();
}

bool Scope::Look(Nanoseconds now) {
  if (!tap_) return false;
  const std::optional<FrameIndex> heard = clock_.At(*tap_, now);
  const std::size_t frames = spectrumShown_ ? SpectrumAnalyser::kWindow : kTraceWindow;
  if (!heard || *heard < static_cast<FrameIndex>(frames)) return false;
  if (heard == place_) return true;
  sound_.resize(frames * kChannels);
  if (!tap_->Read(*heard - static_cast<FrameIndex>(frames), sound_)) return false;
  if (spectrumShown_) {
    const auto passed = static_cast<double>(*heard - place_.value_or(*heard));
    spectrum_.Take(sound_, passed / kEngineRate);
  } else {
    DrawTraces();
  }
  place_ = heard;
  return true;
}

void Scope::DrawTraces() {
  for (std::size_t side = 0; side < kChannels; ++side) {
    for (std::size_t x = 0; x < kFrames; ++x) {
      const float* const sample = &sound_[x * kStep * kChannels + side];
      float sum = 0;
      for (std::size_t i = 0; i < kStep; ++i) sum += sample[i * kChannels];
      const long value = std::clamp(std::lround(sum / kStep * 128), -128L, 127L);
      traces_[side][x] = static_cast<int>(value) * multiplier_;
    }
  }
}

}  // namespace kelvo
