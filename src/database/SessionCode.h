#pragma once

namespace kelvo {

/// What happened on a deck. The numbers are those of the session list, of the day's files of sessions and of
/// group playlists.
enum class SessionCode : int {
  Loaded = 1,
  TrackStarted = 3,
  DubStarted = 5,
  DubEnded = 7,
  FadeStarted = 9,
  FadeEnded = 11,
  TrackStopped = 13,
  PositionChangedDeckOne = 15,
  PositionChangedDeckTwo = 17,
  EndOfTrack = 19,
  Repeat = 21,  ///< the mark of a group playlist that repeats; nothing on a deck
};

}  // namespace kelvo
