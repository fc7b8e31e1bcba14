#pragma once

#include "playlists/TempoOutline.h"

#include <QStringList>

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelvo {

/// A track that a list may be made of.
struct FitTrack {
  int seconds = 0;            ///< above 0
  double bpm = 0;             ///< 0: unknown
  std::string name;           ///< "Artist - Title", UTF-8
  std::uint32_t artists = 0;  ///< which of FitQuestion::artistLines
};

/// What a list of a wanted length is to be like.
struct FitQuestion {
  std::vector<FitTrack> tracks;  ///< each is taken once at most
  /// The artists of tracks, joined by ","; a line without any means the one that the track's name begins
  /// with.
  QStringList artistLines;
  int seconds = 3600;
  bool followTempo = true;
  TempoOutline outline = {};
  int tempoWithin = 8;     ///< beats per minute beside the outline
  int artistApart = 0;     ///< seconds from the end of one track to the start of the next by the same artist
  std::uint64_t seed = 0;  ///< of the choice between tracks that are as good
};

/// A track of the list, and the rules that had to be broken for it.
struct FitPick {
  std::size_t track = 0;  ///< its place among those of the question
  int start = 0;          ///< seconds from the beginning
  double wantedBpm = 0;   ///< the outline in the middle of the track
  bool tempo = false;     ///< it is beside the outline, or its tempo is not known
  bool artist = false;    ///< one of its artists ended too short a time before
  bool title = false;     ///< a track before it has the same title

  [[nodiscard]] bool BreaksRule() const { return tempo || artist || title; }
};

/// How far the work is, and its stop. Shared by two threads.
struct FitControl {
  std::atomic<bool> stop = false;
  std::atomic<int> permille = 0;
};

/// Chooses a sequence of tracks that lasts as long as is wanted: to the second where any choice of the tracks
/// does, else as near as any does. That comes before the rules; then as few rules are broken as can be found:
/// rather the tempo than the artist's distance, rather that than a second track of the same title. No track
/// comes twice. None when it was stopped. Blocks: off the logic's thread.
[[nodiscard]] std::optional<std::vector<FitPick>> FitToTime(const FitQuestion& question, FitControl& control);

/// The title by which tracks are told to be the same: behind the artist, without what stands in brackets,
/// accents and case folded.
[[nodiscard]] QString ComparedTitle(const QString& trackName);

}  // namespace kelvo
