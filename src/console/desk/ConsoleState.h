#pragma once

namespace kelvo {

/// The flags that take the place of locks between the parts of the desk. Owned by the Console; logic thread.
struct ConsoleState {
  bool AutoPlayOn = false;        ///< automatic play runs from the queue or as a preview
  bool GroupPlayOn = false;       ///< a group playlist runs
  bool PreviewOn = false;         ///< decks take random tracks, not queue rows
  bool TransitionActive = false;  ///< a fade runs
  bool NextTrackDue = false;      ///< a deck is through: a new track should be brought in
  int CrossPan = 0;               ///< -200 Deck 1 alone .. 200 Deck 2 alone

  [[nodiscard]] bool PlaysByItself() const { return AutoPlayOn || GroupPlayOn; }
};

}  // namespace kelvo
