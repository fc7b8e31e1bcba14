#pragma once

#include "demo_library/Composer.h"
#include "demo_library/MusicFile.h"

#include <cstddef>
#include <span>

namespace kelvo::demo {

/// A track of the demo library: who plays it, what its info file says, and how it's composed. Text is UTF-8;
/// several names are joined by ",".
struct Piece {
  const char* artist;  ///< as in the file name
  const char* title;
  const char* artists;  ///< as references
  const char* categories;
  const char* albums;
  const char* date;
  const char* highest;  ///< chart position
  const char* playMode;
  const char* fadePosition;
  const char* fadeSpeed;
  Coding coding;
  StyleName style;
  Key key;
  int bpm;
  double seconds;
  bool strongStart;
  bool strongEnd;
  const char* comments;  ///< lines joined by "\n"
};

/// All tracks; the first ones show the most variety, for a library of only a few.
[[nodiscard]] std::span<const Piece> AllPieces();

/// A playlist of the demo music, as indices of AllPieces.
struct DemoPlaylist {
  const char* category;
  const char* name;
  std::span<const std::size_t> pieces;
};
[[nodiscard]] std::span<const DemoPlaylist> AllPlaylists();

}  // namespace kelvo::demo
