#pragma once

#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QString>

namespace kelvo {

/// Decodes an MP3 file into a WAV file with the `lame` tool, `tool` by name or path. The file gets its name
/// when it is whole. Gives in words why it failed; empty: it is there. Dropping the job ends the tool;
/// nothing is left then but a hidden file that the next decoding of that name replaces.
[[nodiscard]] Job<QString> DecodeWithTool(EventLoop& loop, QString tool, QString mp3File, QString wavFile);

}  // namespace kelvo
