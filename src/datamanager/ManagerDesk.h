#pragma once

#include <QString>

#include <functional>

namespace kelvo {

/// The desk as the Data Manager knows it: the device on which it plays a track, beside the programme. The
/// join implements it. Logic thread.
class ManagerDesk {
 public:
  virtual ~ManagerDesk() = default;

  /// Why nothing can be played beside the programme, in words; empty when it can.
  [[nodiscard]] virtual QString WhyNoPreview() const = 0;
  /// The device, as players take it.
  [[nodiscard]] virtual QString Output() const = 0;
  /// Hundredths of a decibel, as a player's.
  [[nodiscard]] virtual int Volume() const = 0;
  [[nodiscard]] virtual int Balance() const = 0;
  /// What else plays on the device ends.
  virtual void TakeDevice() = 0;

  /// The device is another or has another level, or something else takes it: `taken`.
  std::function<void(bool taken)> OnDevice;
};

}  // namespace kelvo
