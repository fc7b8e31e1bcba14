#pragma once

#include "audio/engine/Tap.h"

#include <QString>

#include <memory>
#include <vector>

namespace kelvo {

/// The sound inputs of the machine, of which one at a time is captured. Owned by the program's entry; logic
/// thread. No call waits for a device.
class SoundInput {
 public:
  struct Device {
    QString id;     ///< stays with the device
    QString words;  ///< what a person calls it
    bool operator==(const Device&) const = default;
  };
  virtual ~SoundInput() = default;

  /// The inputs there are. They are looked for from the first call on, so that may find none.
  [[nodiscard]] virtual std::vector<Device> Devices() = 0;
  /// Captures from the device `id`, now or when it comes (back); empty: from none.
  virtual void Choose(const QString& id) = 0;
  /// What is captured, as far as it goes; null while the device isn't there. After a loss it is another one.
  [[nodiscard]] virtual std::shared_ptr<const Tap> Sound() const = 0;
};

}  // namespace kelvo
