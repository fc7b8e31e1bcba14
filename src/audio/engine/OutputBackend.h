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

  DeviceLink(QString name, std::shared_ptr<OutputMixer> mixer)
      : name_(std::move(name)), mixer_(std::move(mixer)) {}

  /// The device that was asked for; empty for the default one.
  [[nodiscard]] const QString& Name() const { return name_; }

  // The device's side. Deliver is what its callback calls: silence while the link does not run.
  void Deliver(std::span<float> target) noexcept {
    calls_.fetch_add(1, std::memory_order_relaxed);
    if (GetState() == State::Running && !detached_.load(std::memory_order_acquire)) {
      mixer_->Render(target);
    } else {
      std::fill(target.begin(), target.end(), 0.0F);
    }
  }
  /// The device has run out of sound: its callback came too late.
  void TellDropout() noexcept { mixer_->CountDropout(); }
  /// How long the device can go on without a call.
  void SetReserve(Nanoseconds reserve) { reserve_.store(reserve.count(), std::memory_order_relaxed); }
  void SetState(State state) { state_.store(state, std::memory_order_release); }
  [[nodiscard]] bool Detached() const { return detached_.load(std::memory_order_acquire); }

  // The output's side.
  [[nodiscard]] State GetState() const { return state_.load(std::memory_order_acquire); }
  [[nodiscard]] std::uint64_t Calls() const { return calls_.load(std::memory_order_relaxed); }
  [[nodiscard]] Nanoseconds Reserve() const { return Nanoseconds(reserve_.load(std::memory_order_relaxed)); }
  /// The output wants no more of the device: from now on it plays silence and is to be closed.
  void Detach() { detached_.store(true, std::memory_order_release); }

 private:
  const QString name_;
  const std::shared_ptr<OutputMixer> mixer_;
  std::atomic<State> state_{State::Opening};
  std::atomic<bool> detached_{false};
  std::atomic<std::uint64_t> calls_{0};
  std::atomic<std::int64_t> reserve_{0};  ///< nanoseconds
};

/// Where devices come from. Owned by the engine; logic thread. No call waits for a device.
class OutputBackend {
 public:
  virtual ~OutputBackend() = default;

  /// The names of the devices there are, the default one first.
  [[nodiscard]] virtual QStringList Names() const = 0;
  /// Raised when devices will not come back under the names they had.
  [[nodiscard]] virtual int NamesEpoch() const { return 0; }
  /// True when Names is the result of a look, not just the beginning.
  [[nodiscard]] virtual bool HasLooked() const { return true; }
  /// Begins to open the device that `link` names; the link's state tells how it went. A detached link's
  /// device is closed.
  virtual void Open(std::shared_ptr<DeviceLink> link) = 0;
  /// True when its devices are meant to be none: that nothing is heard is no loss then.
  [[nodiscard]] virtual bool MeantSilent() const { return false; }
  /// Whether players decode on threads of their own; false where time is simulated.
  [[nodiscard]] virtual bool Threaded() const { return true; }
};

}  // namespace kelvo
