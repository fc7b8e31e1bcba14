#pragma once

#include "audio/engine/Decoder.h"

#include <memory>

namespace kelvo {

/// Opens `path` with the decoder that its content asks for, whatever its name, and makes sure that some sound
/// comes out of it. Throws Failure with one sentence that names the file and the cause. It reads MPEG files
/// whole; off the logic's thread.
[[nodiscard]] std::unique_ptr<Decoder> OpenDecoder(const QString& path, OpeningPtr opening = {});

/// Throws as OpenDecoder does, after a look at the start of the file alone: damage behind it does not show.
void LookForSound(const QString& path);

}  // namespace kelvo
