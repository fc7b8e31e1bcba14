#pragma once

#include "platform/Prompter.h"

#include <QString>

namespace kelvo {

/// The name with each character that a file of the database must not hold ("*,/:<>?\|#) replaced by "_",
/// trimmed.
[[nodiscard]] QString CleanFileName(const QString& name);

/// Whether the trimmed name has none of the characters "*,/:<>?\| ; tells the operator of the first it has.
/// "#" passes. An empty name passes.
[[nodiscard]] bool CheckName(Prompter& prompter, const QString& name);

/// Whether the text is a date as the database keeps it: eight characters, a year of four digits, "-", three
/// more.
[[nodiscard]] bool IsDate(const QString& text);
/// The same; tells the operator when it is not.
[[nodiscard]] bool CheckDate(Prompter& prompter, const QString& text);

/// Whether the file can be played: it exists, is MP3 or WAV by its extension, and a WAV has at least 10240
/// bytes. Blocks for the disk; any thread.
[[nodiscard]] bool CheckMediaFile(const QString& path);

}  // namespace kelvo
