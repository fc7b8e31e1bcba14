#pragma once

#include "audio/engine/Decoder.h"

#include <functional>
#include <memory>

namespace kelvo {

/// Makes names that are no files playable: as long as it lives, what begins with the scheme and a colon
/// ("cdda:/dev/sr0") is opened by `opener`, which gets what stands behind the colon. It is called on threads
/// that open files. Any thread; a later one takes the place of an earlier.
class SourceScheme {
 public:
  using Opener = std::function<std::unique_ptr<Decoder>(const QString& place, const OpeningPtr& opening)>;
  SourceScheme(QString scheme, Opener opener);
  ~SourceScheme();
  SourceScheme(const SourceScheme&) = delete;
  SourceScheme& operator=(const SourceScheme&) = delete;

 private:
  QString scheme_;
};

/// Opens `path` with the decoder that its content asks for, whatever its name, and makes sure that some sound
/// comes out of it. Throws Failure with one sentence that names the file and the cause. It reads MPEG files
/// whole; off the logic's thread.
[[nodiscard]] std::unique_ptr<Decoder> OpenDecoder(const QString& path, OpeningPtr opening = {});

/// Throws as OpenDecoder does, after a look at the start of the file alone: damage behind it does not show.
void LookForSound(const QString& path);

}  // namespace kelvo
