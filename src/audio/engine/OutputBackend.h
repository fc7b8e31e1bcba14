#pragma once

#include "audio/engine/OutputMixer.h"
#include "platform/EventLoop.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>
#include <span>

namespace kelvo {

/// Between an output and the device that plays it. Shared by the output, on the logic's thread, and whatever
/// thread the device calls from; either may let go of it first.
class DeviceLink {
 public:
  enum class State { Opening, Running, Gone };
  /// How much an order matters at once: a level can wait for a period of the device, a start or a stop can't.
  enum class Hurry { None, Level, Start };

  DeviceLink(QString name, std::shared_ptr<OutputMixer> mixer)
      : name_(std::move(name)), mixer_(std::move(mixer)) {}

  /// The device that was asked for; empty for the default one.
  [[nodiscard]] const QString& Name() const { return name_; }

  // The device's side. Deliver is what its callback calls: silence while the link does not run. A device that
  // queues may take back up to `revocable` of the frames that have been delivered then; `unheard` of them
  // wait on their way to the loudspeaker.
  void Deliver(std::span<float> target, FrameIndex revocable = 0, FrameIndex unheard = 0) noexcept {
    calls_.fetch_add(1, std::memory_order_relaxed);
    if (Runs() && mixer_->Render(target, revocable, unheard)) {
      inOneGo_ += static_cast<FrameIndex>(target.size() / kChannels);
    } else {
      std::fill(target.begin(), target.end(), 0.0F);
      inOneGo_ = 0;
    }
  }
  /// Takes back up to `most` of the frames delivered last; what is delivered next takes their place. Returns
  /// how many. On the thread that delivers.
  [[nodiscard]] FrameIndex TakeBack(FrameIndex most) noexcept {
    const FrameIndex back = Runs() ? mixer_->TakeBack(std::min(most, inOneGo_)) : 0;
    inOneGo_ -= back;
    return back;
  }
  /// True when a player that is to play had no data at the last delivery: it is worth while to take that back
  /// soon.
  [[nodiscard]] bool Waits() const { return mixer_->Waits(); }
  /// The device queues sound that it can take back: it wants to be told of orders.
  void SetTakesBack() { takesBack_.store(true, std::memory_order_relaxed); }
  /// What has been asked for since the last TakeHurry.
  [[nodiscard]] Hurry Asked() const { return hurry_.load(std::memory_order_relaxed); }
  /// To be called before the sound is taken back.
  void TakeHurry() { hurry_.exchange(Hurry::None, std::memory_order_acquire); }
  /// The device has run out of sound: its callback came too late.
  void TellDropout() noexcept { mixer_->CountDropout(); }
  /// How long the device can go on without a call.
  void SetReserve(Nanoseconds reserve) { reserve_.store(reserve.count(), std::memory_order_relaxed); }
  void SetState(State state) { state_.store(state, std::memory_order_release); }
  [[nodiscard]] bool Detached() const { return detached_.load(std::memory_order_acquire); }

  // The output's side.
  [[nodiscard]] bool TakesBack() const { return takesBack_.load(std::memory_order_relaxed); }
  /// There are orders for what has been delivered and not heard.
  void Ask(Hurry hurry) {
    Hurry before = Asked();
    while (before < hurry && !hurry_.compare_exchange_weak(before, hurry, std::memory_order_release)) {
    }
  }
  [[nodiscard]] State GetState() const { return state_.load(std::memory_order_acquire); }
  [[nodiscard]] std::uint64_t Calls() const { return calls_.load(std::memory_order_relaxed); }
  [[nodiscard]] Nanoseconds Reserve() const { return Nanoseconds(reserve_.load(std::memory_order_relaxed)); }
  /// The output wants no more of the device: from now on it plays silence and is to be closed.
  void Detach() { detached_.store(true, std::memory_order_release); }

 private:
  [[nodiscard]] bool Runs() const { return GetState() == State::Running && !Detached(); }

  const QString name_;
  const std::shared_ptr<OutputMixer> mixer_;
  std::atomic<State> state_{State::Opening};
  std::atomic<bool> detached_{false};
  std::atomic<std::uint64_t> calls_{0};
  std::atomic<std::int64_t> reserve_{0};  ///< nanoseconds
  std::atomic<bool> takesBack_{false};
  std::atomic<Hurry> hurry_{Hurry::None};
  FrameIndex inOneGo_ = 0;  ///< delivered without a hole; the device's thread alone
};

/// Where devices come from. Owned by the engine; logic thread. No call waits for a device.
class OutputBackend {
 public:
  virtual ~OutputBackend() = default;

  /// The names of the devices there are, the default one first.
  [[nodiscard]] virtual QStringList Names() const = 0;
  /// What the device of that name is known by from one run to the next; Open takes it too. And the way back:
  /// empty when no such device is there.
  [[nodiscard]] virtual QString IdOf(const QString& name) const { return name; }
  [[nodiscard]] virtual QString NameOf(const QString& id) const {
    return Names().contains(id) ? id : QString();
  }
  /// Raised when devices will not come back under the names they had.
  [[nodiscard]] virtual int NamesEpoch() const { return 0; }
  /// True when Names is the result of a look, not just the beginning.
  [[nodiscard]] virtual bool HasLooked() const { return true; }
  /// Begins to open the device that `link` names; the link's state tells how it went. A detached link's
  /// device is closed.
  virtual void Open(std::shared_ptr<DeviceLink> link) = 0;
  /// A link that takes back has been asked to: its device's thread is to look at once.
  virtual void Wake() {}
  /// True when its devices are meant to be none: that nothing is heard is no loss then.
  [[nodiscard]] virtual bool MeantSilent() const { return false; }
  /// Whether players decode on threads of their own; false where time is simulated.
  [[nodiscard]] virtual bool Threaded() const { return true; }
  /// Where time is simulated: decoders have threads all the same, which whoever mixes waits for. What comes
  /// out is the same.
  [[nodiscard]] virtual bool DecodesAhead() const { return false; }
};

}  // namespace kelvo
