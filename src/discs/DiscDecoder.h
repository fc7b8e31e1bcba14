#pragma once

#include "audio/engine/OpenDecoder.h"
#include "discs/DiscDrive.h"

#include <vector>

namespace kelvo {

/// A disc as a source of sound: from its first sector to its last, so that its tracks follow each other as
/// they are recorded. Data is silence, and so is what cannot be read. Owned by a feeder; one thread at a
/// time.
class DiscDecoder final : public Decoder {
 public:
  explicit DiscDecoder(std::unique_ptr<DiscDrive> drive);

  void Seek(FrameIndex frame) override;

 protected:
  [[nodiscard]] std::size_t ReadSome(std::span<float> target) override;

 private:
  /// Brings in the sectors around the place; false when nothing more comes.
  [[nodiscard]] bool Bring();

  std::unique_ptr<DiscDrive> drive_;
  DiscToc toc_;
  FrameIndex place_ = 0;
  std::vector<std::int16_t> samples_;
  FrameIndex from_ = 0;  ///< the frame that `samples_` begins with
  int unread_ = 0;       ///< stretches in a row that could not be read
};

/// The name by which a player opens the disc in the drive.
[[nodiscard]] QString DiscSource(const QString& place);
/// Makes these names playable, over the drives.
[[nodiscard]] std::unique_ptr<SourceScheme> ServeDiscs(std::shared_ptr<DiscDrives> drives);

}  // namespace kelvo
