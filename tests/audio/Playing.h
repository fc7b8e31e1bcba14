#pragma once

#include "audio/MediaPlayer.h"

namespace kelvo::testing {

/// Plays the file once it is open; `player` and the job are held by the test.
inline Job<> OpenAndPlay(MediaPlayer& player, QString path) {
  const OpenResult result = co_await player.Open(path);
  if (result.Ok()) player.Play();
}

}  // namespace kelvo::testing
