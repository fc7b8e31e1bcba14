#pragma once

#include "audio/AudioSystem.h"
#include "audio/SoundInput.h"
#include "audio/SpectrumAnalyser.h"
#include "console/scope/HeardClock.h"
#include "console/scope/MovingPicture.h"
#include "platform/Setting.h"

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace kelvo {

/// What the operator sees of the sound: two traces, one a side, or the spectrum. Of what is heard on air, or
/// of a sound input where one is chosen; what is missing is an empty picture. Owned by the Console; logic
/// thread.
class Scope : public MovingPicture {
  Q_OBJECT
 public:
  /// A trace is 256 frames of a coarse picture of the sound: 11025 a second, in 8 bits.
  static constexpr int kFrames = 256;
  /// The height of a trace's picture, in the units of its values: with the multiplier 5 full scale fills it.
  static constexpr int kPictureHeight = 256 * 5;
  /// Values times the multiplier, above the zero line in the middle of the picture; they may go beyond it.
  using Trace = std::array<int, kFrames>;

  struct Services {
    EventLoop& loop;
    AudioSystem& audio;
    SoundInput* input = nullptr;  ///< none: there is only what goes on air
    ProgramSettings settings;
    /// A fade has the machine to itself: then two pictures a second have to do.
    std::function<bool()> slowed = {};
  };
  Scope(PictureBeat& beat, Services services);

  [[nodiscard]] bool ShowsSpectrum() const { return spectrumShown_; }
  void ShowSpectrum(bool spectrum);
  /// The chosen input, by its id; empty: what goes on air.
  [[nodiscard]] const QString& Input() const { return chosen_; }
  void ChooseInput(const QString& id);
  /// The inputs to choose from; the first call may find none yet.
  [[nodiscard]] std::vector<SoundInput::Device> Inputs() const;
  /// What the chosen source is called.
  [[nodiscard]] QString SourceWords() const;

  /// There is no sound to be shown: no device, or it is lost.
  [[nodiscard]] bool Empty() const { return empty_; }
  /// The picture `index`: 0 is the left side, 1 the right one.
  [[nodiscard]] const Trace& TraceOf(std::size_t index) const { return traces_[index]; }
  [[nodiscard]] const SpectrumAnalyser::Levels& Spectrum() const { return spectrum_.Now(); }

 Q_SIGNALS:
  /// Source or kind of the picture, or the source has come or gone.
  void ChoiceChanged();

 protected:
  void Renew() override;
  void Begin() override;
  void Rest() override;

 private:
  void ReadChoice();
  [[nodiscard]] std::shared_ptr<const Tap> Source() const;
  /// Returns false where there is nothing to be shown.
  [[nodiscard]] bool Look(Nanoseconds now);
  void DrawTraces();

  Services services_;
  bool spectrumShown_ = false;
  QString chosen_;
  int multiplier_ = 0;
  std::shared_ptr<const Tap> tap_;
  HeardClock clock_;
  std::optional<FrameIndex> place_;  ///< of the last picture
  Nanoseconds lookedAt_{0};
  std::vector<float> sound_;
  bool empty_ = true;
  std::array<Trace, kChannels> traces_{};
  SpectrumAnalyser spectrum_;
};

}  // namespace kelvo
