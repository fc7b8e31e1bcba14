#pragma once

#include "console/desk/DeckTypes.h"
#include "console/queue/LoadRequest.h"
#include "database/TextColumns.h"
#include "database/TrackPlaySettings.h"

#include <QString>

namespace kelvo {

/// A loss of level as the desk's sliders keep it: 0 full, 2000 the end of the slider, 40 dB down.
inline constexpr int kMostLoss = 2000;
/// A deck that plays with less loss than this is heard: it is live, also while the operator speaks over it.
inline constexpr int kLiveLoss = 200;

/// The state of a deck. A value, owned by the DeckEngine.
struct DeckRecord {
  DeckState State = DeckState::Empty;
  double Duration = 0;               ///< seconds; the catalogue's where it has one, else the player's
  double Position = 0;               ///< seconds, as last read from the player
  int RemainSeconds = 0;             ///< whole seconds left, never below 0
  Mref CatalogueIndex = Mref::None;  ///< also the reference by which the queue's rows are found
  QString Title;                     ///< base name of the file in proper case
  QString Info;                      ///< one line: how it starts and ends, or a mode word, or "Bad File "
  QString FilePath;
  QString TrackInfoText;  ///< all that is known of the track
  TrackPlaySettings Play;  ///< what the track says of its own start and end

  int Loss = 0;             ///< 0..2000; the player's volume is minus twice this
  int Level = 0;            ///< the same apart from the operator's voice: where it comes back to
  bool PlayedOut = false;   ///< the progress bar is amber
  bool LoadFailed = false;  ///< "Load Fail" is shown
  bool Loading = false;     ///< a load is on its way: no further load or start
  RowId Row = RowId::None;  ///< the queue's row that the track came from

  [[nodiscard]] bool Live() const { return State == DeckState::Playing && Level < kLiveLoss; }
  [[nodiscard]] int ProgressMaximum() const { return static_cast<int>(Duration + 1); }
  [[nodiscard]] int ProgressValue() const { return static_cast<int>(Position); }
};

}  // namespace kelvo
