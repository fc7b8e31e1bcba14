#pragma once

#include <QString>

#include <cstdint>

namespace kelvo::demo {

/// Makes the first sounds of the quiz, three mixers and an introduction, in their folders below
/// `programFolder`; a folder that holds a file already stays as it is. Returns whether anything was made.
/// Throws Failure.
bool MakeQuizSounds(const QString& programFolder, std::uint32_t seed);

}  // namespace kelvo::demo
