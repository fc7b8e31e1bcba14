#pragma once

#include "demo_library/Sound.h"

#include <QByteArray>

namespace kelvo::demo {

enum class Coding { Wave16, Mp3Constant192, Mp3Variable2 };

/// The sound as the bytes of a file. MP3 is joint stereo with its length in the first frame, so that decoding
/// gives the source's frames, not one more. Throws Failure when the encoder can't be had.
[[nodiscard]] QByteArray Encode(const StereoSound& sound, Coding coding);

}  // namespace kelvo::demo
